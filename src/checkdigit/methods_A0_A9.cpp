#include "checkdigit/methods.h"
#include "checkdigit/shared_variants.h"

namespace velmora {

// Modulus 10 with digit sums over positions 9 to 3; accounts have eight or ten digits.
constexpr Weights weights_A1 = weights_from(P9, 2, 1, 2, 1, 2, 1, 2);
CheckResult method_A1(const char* account) {
    const int length = significant_digits(account);
    if (length != 8 && length != 10) return account_invalid;
    return check_crosssum_weighted(account, 10, P10, weights_A1);
}

// Method 00, then method 04.
CheckResult method_A2(const char* account) {
    return first_not_invalid(account, method_00, method_04);
}

// Method 00, then method 10.
CheckResult method_A3(const char* account) {
    return first_not_invalid(account, method_00, method_10);
}

// Modulus 11 and 7 over six digits, then method 93; with 99 in positions 3 and 4, modulus 11 over five
// digits, then method 93.
CheckResult method_A4(const char* account) {
    if (digit(account, P3) == 9 && digit(account, P4) == 9)
        return first_not_invalid(account, method_33, method_93);
    return first_not_invalid(account, method_32, check_mod7_six_digits, method_93);
}

// Method 00, then method 10, which is closed to accounts with a 9 in position 1.
static CheckResult second_A5(const char* account) {
    return digit(account, P1) == 9 ? account_invalid : method_10(account);
}
CheckResult method_A5(const char* account) {
    return first_not_invalid(account, method_00, second_A5);
}

// Method 00 for accounts with an 8 in position 2, method 01 for all others.
CheckResult method_A6(const char* account) {
    return digit(account, P2) == 8 ? method_00(account) : method_01(account);
}

// Method 00, then method 03.
CheckResult method_A7(const char* account) {
    return first_not_invalid(account, method_00, method_03);
}

// Six digits by modulus 11, then by modulus 10 with digit sums. Ledger accounts apart.
CheckResult method_A8(const char* account) {
    if (digit(account, P3) == 9) return check_ledger_account(account);
    return first_not_invalid(account, method_32, check_six_digit_stem);
}

// Method 01, then method 06.
CheckResult method_A9(const char* account) {
    return first_not_invalid(account, method_01, method_06);
}

} // namespace velmora
