#include "checkdigit/methods.h"
#include "checkdigit/shared_variants.h"

namespace velmora {

// Modulus 11, weights 2 to 9 and 3; ten becomes zero.
constexpr Weights weights_20 = weights_from(P9, 2, 3, 4, 5, 6, 7, 8, 9, 3);
CheckResult method_20(const char* account) {
    return check_mod11_ten_is_zero(account, P10, weights_20);
}

// The sum of method 00, of which digit sums are taken until one digit is left; that is taken from 10.
CheckResult method_21(const char* account) {
    int sum = crosssum_weighted_sum(account, weights_00);
    while (sum > 9)
        sum = cross_sum(sum);
    return expect_digit(account, P10, complement(sum, 10));
}

// Modulus 10, weights 3 and 1 in turn. Only the units of the products count, and so only those of the sum.
constexpr Weights weights_22 = weights_from(P9, 3, 1, 3, 1, 3, 1, 3, 1, 3);
CheckResult method_22(const char* account) {
    return check_weighted_mod(account, 10, P10, weights_22);
}

// Method 16 over positions 1 to 6, check digit in position 7.
constexpr Weights weights_23 = weights_from(P6, 2, 3, 4, 5, 6, 7);
CheckResult method_23(const char* account) {
    const int check_digit = mod11_check_digit(account, weights_23);
    return expect_digit(account, P7, check_digit == 10 ? digit(account, P6) : check_digit);
}

// Weights 1, 2, 3 from the first digit other than 0 rightwards; each product plus its weight is taken modulo
// 11, and the units digit of the sum is the check digit. A first digit 3 to 6 is passed over, a first digit 9
// together with the two digits behind it.
static int first_position_24(const char* account) {
    const int kind = digit(account, P1);
    return is_one_of(kind, 3, 4, 5, 6) ? P2 : kind == 9 ? P4 : P1;
}
CheckResult method_24(const char* account) {
    int position = first_position_24(account);
    while (position < P10 && digit(account, position) == 0)
        ++position;
    int sum = 0;
    for (int weight = 1; position < P10; ++position, weight = weight % 3 + 1)
        sum += (digit(account, position) * weight + weight) % 11;
    return expect_digit(account, P10, sum % 10);
}

// Modulus 11, weights 2 to 9 on positions 9 to 2. Ten becomes zero, but only for accounts with an 8 or 9 in
// position 2.
constexpr Weights weights_25 = weights_from(P9, 2, 3, 4, 5, 6, 7, 8, 9);
CheckResult method_25(const char* account) {
    const int check_digit = mod11_check_digit(account, weights_25);
    if (check_digit != 10) return expect_digit(account, P10, check_digit);
    return is_one_of(digit(account, P2), 8, 9) ? expect_digit(account, P10, 0) : account_invalid;
}

// Modulus 11, weights 2 to 7 and 2, check digit in position 8; ten becomes zero. An account that begins with
// two zeros lacks its sub-account 00: everything stands two places further right.
constexpr Weights weights_26 = weights_from(P7, 2, 3, 4, 5, 6, 7, 2);
constexpr Weights weights_without_sub_account_26 = weights_from(P9, 2, 3, 4, 5, 6, 7, 2);
CheckResult method_26(const char* account) {
    if (starts_with(account, "00"))
        return check_mod11_ten_is_zero(account, P10, weights_without_sub_account_26);
    return check_mod11_ten_is_zero(account, P8, weights_26);
}

// Method 00 up to account 999999999, method 29 from there on.
CheckResult method_27(const char* account) {
    return digit(account, P1) == 0 ? method_00(account) : method_29(account);
}

// Modulus 11, weights 2 to 8, check digit in position 8; ten becomes zero. The sub-account does not count.
constexpr Weights weights_28 = weights_from(P7, 2, 3, 4, 5, 6, 7, 8);
CheckResult method_28(const char* account) {
    return check_mod11_ten_is_zero(account, P8, weights_28);
}

// Iterated transformation (M10H): every digit is replaced through one of four rows, which take turns from
// position 9 leftwards; modulus 10 over the new digits.
constexpr int transformation_29[4][10] = {
    {0, 1, 5, 9, 3, 7, 4, 8, 2, 6},
    {0, 1, 7, 6, 9, 8, 3, 2, 5, 4},
    {0, 1, 8, 4, 6, 2, 9, 5, 7, 3},
    {0, 1, 2, 3, 4, 5, 6, 7, 8, 9},
};
CheckResult method_29(const char* account) {
    int sum = 0;
    for (int position = P9; position >= P1; --position) {
        const int replaced = digit(account, position);
        if (replaced < 0 || replaced > 9) return account_invalid;
        sum += transformation_29[(P9 - position) % 4][replaced];
    }
    return expect_digit(account, P10, complement(sum % 10, 10));
}

} // namespace velmora
