#include "checkdigit/methods.h"
#include "checkdigit/shared_variants.h"

namespace velmora {

// Methods 05, 01 and 00.
CheckResult method_B1(const char* account) {
    return first_not_invalid(account, method_05, method_01, method_00);
}

// Method 02 for accounts with 0 to 7 in position 1, method 00 for 8 and 9.
CheckResult method_B2(const char* account) {
    return digit(account, P1) < 8 ? method_02(account) : method_00(account);
}

// Method 32 for accounts with 0 to 8 in position 1, method 06 for 9.
CheckResult method_B3(const char* account) {
    return digit(account, P1) < 9 ? method_32(account) : method_06(account);
}

// Method 05, then method 00, which is closed to accounts with an 8 or 9 in position 1.
static CheckResult second_B5(const char* account) {
    return is_one_of(digit(account, P1), 8, 9) ? account_invalid : method_00(account);
}
CheckResult method_B5(const char* account) {
    return first_not_invalid(account, method_05, second_B5);
}

// Method 20 for ten-digit accounts and those from 269100000 to 269999999, method 53 for all others.
CheckResult method_B6(const char* account, const char* bank_code) {
    const bool special_range = starts_with(account, "0269") && digit(account, P5) > 0;
    if (digit(account, P1) > 0 || special_range) return method_20(account);
    return method_53(account, bank_code);
}

// Method 01 in two ranges; other accounts have no check digit.
constexpr NumberRange checked_ranges_B7[] = {{1000000, 5999999}, {700000000, 899999999}};
CheckResult method_B7(const char* account) {
    const std::int64_t value = number(account);
    for (const NumberRange& range : checked_ranges_B7)
        if (range.contains(value)) return method_01(account);
    return account_not_checkable;
}

// Method 20, then method 29; an account of the two ranges, given by the first three of ten digits, that fits
// neither is not checkable.
constexpr NumberRange unchecked_ranges_B8[] = {{510, 599}, {901, 910}};
CheckResult method_B8(const char* account) {
    const CheckResult result = first_not_invalid(account, method_20, method_29);
    if (result != account_invalid) return result;
    const std::int64_t first_three = number(account, P1, P3);
    for (const NumberRange& range : unchecked_ranges_B8)
        if (range.contains(first_three)) return account_not_checkable;
    return account_invalid;
}

// Accounts of eight digits: weights 1, 2, 3 on positions 3 to 9, each product plus its weight taken modulo
// 11; the sum modulo 10 is the check digit. Accounts of seven digits: weights 1 to 6 on positions 9 to 4; the
// sum modulo 11 is the check digit. In both, a check digit 5 higher is right, too, without its tens.
constexpr int eight_digit_weights_B9[] = {1, 2, 3, 1, 2, 3, 1};
constexpr Weights seven_digit_weights_B9 = weights_from(P9, 1, 2, 3, 4, 5, 6);
static int check_digit_of_eight_B9(const char* account) {
    int sum = 0;
    for (int position = P3; position <= P9; ++position) {
        const int weight = eight_digit_weights_B9[position - P3];
        sum += (digit(account, position) * weight + weight) % 11;
    }
    return sum % 10;
}
CheckResult method_B9(const char* account) {
    const int length = significant_digits(account);
    if (length != 8 && length != 7) return account_invalid;
    const int check_digit =
        length == 8 ? check_digit_of_eight_B9(account) : weighted_sum(account, seven_digit_weights_B9) % 11;
    const int last_digit = digit(account, P10);
    return last_digit == check_digit || last_digit == (check_digit + 5) % 10 ? account_valid
                                                                             : account_invalid;
}

} // namespace velmora
