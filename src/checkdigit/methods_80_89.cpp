#include "checkdigit/methods.h"
#include "checkdigit/shared_variants.h"

namespace velmora {

// Method 32. Ledger accounts apart.
CheckResult method_81(const char* account) {
    return digit(account, P3) == 9 ? check_ledger_account(account) : method_32(account);
}

// Five digits by modulus 11, 7 and 10. Ledger accounts apart.
CheckResult method_84(const char* account) {
    if (digit(account, P3) == 9) return check_ledger_account(account);
    return first_not_invalid(account, method_33, check_mod7_five_digits, check_mod10_five_digits);
}

// Modulus 11 over six and five digits, modulus 7 over five. Ledger accounts, here those with 99 in positions
// 3 and 4, by modulus 11 over seven digits without a check digit 10.
CheckResult method_85(const char* account) {
    if (digit(account, P3) == 9 && digit(account, P4) == 9) return check_mod11_tail(account, 8, 0, 0);
    return first_not_invalid(account, method_32, method_33, check_mod7_five_digits);
}

// Variant A of method 87: digits 4 to 9 are added and subtracted by rules of their parity, the sum modulo 5
// selects the check digit from one of two tables.
constexpr int replaced_digits_87[10] = {5, 6, 2, 3, 4, 10, 1, 7, 8, 9};
constexpr int check_digits_87[2][5] = {{0, 4, 3, 2, 6}, {7, 1, 5, 9, 8}};
static CheckResult alternating_87(const char* account) {
    int position = P4;
    while (position < P10 && digit(account, position) == 0)
        ++position;
    int column = (position + 1) % 2, table = 0, sum = 0;
    for (; position < P10; ++position, column = 1 - column) {
        const int value = digit(account, position);
        const int replaced = value >= 0 && value <= 9 ? replaced_digits_87[value] : value;
        const int counted = replaced > 5 && column == 0 ? 12 - replaced : replaced;
        sum += column == table ? counted : -counted;
        if (replaced > 5) table = 1 - table;
    }
    const int check_digit = check_digits_87[table][(sum % 5 + 5) % 5];
    const CheckResult result = expect_digit(account, P10, check_digit);
    if (result == account_invalid && digit(account, P4) == 0)
        return expect_digit(account, P10, (check_digit + 5) % 10);
    return result;
}

// The variant above, modulus 11 and 7 over five digits, modulus 11 over six. Ledger accounts apart.
CheckResult method_87(const char* account) {
    if (digit(account, P3) == 9) return check_ledger_account(account);
    return first_not_invalid(account, alternating_87, method_33, check_mod7_five_digits, method_32);
}

// Method 32, with a 9 in position 3 over that position, too.
CheckResult method_88(const char* account) {
    return digit(account, P3) == 9 ? check_mod11_seven_digits(account) : method_32(account);
}

} // namespace velmora
