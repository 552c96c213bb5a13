#include "checkdigit/methods.h"
#include "checkdigit/shared_variants.h"

namespace velmora {

// Modulus 11, weights 2 to 10; ten becomes zero.
constexpr Weights weights_10 = weights_from(P9, 2, 3, 4, 5, 6, 7, 8, 9, 10);
CheckResult method_10(const char* account) {
    return check_mod11_ten_is_zero(account, P10, weights_10);
}

// Method 10, but ten becomes nine.
CheckResult method_11(const char* account) {
    const int check_digit = mod11_check_digit(account, weights_10);
    return expect_digit(account, P10, check_digit == 10 ? 9 : check_digit);
}

// Modulus 10 with digit sums over the stem in positions 2 to 7, check digit in position 8. The sub-account 00
// behind it may have been left off; then everything stands two places further right.
static CheckResult without_sub_account_13(const char* account) {
    return starts_with(account, "00") ? check_six_digit_stem(account) : account_invalid;
}
CheckResult method_13(const char* account) {
    return first_not_invalid(account, check_stem, without_sub_account_13);
}

// Modulus 11, weights 2 to 7 on positions 9 to 4; no check digit 10.
CheckResult method_14(const char* account) {
    return check_mod11_tail(account, 0, 0, 0);
}

// Modulus 11, weights 2 to 5 on positions 9 to 6; ten becomes zero.
constexpr Weights weights_15 = weights_from(P9, 2, 3, 4, 5);
CheckResult method_15(const char* account) {
    return check_mod11_ten_is_zero(account, P10, weights_15);
}

// Modulus 11, weights 2 to 7 and 2 to 4. Where ten would be the check digit, the last two digits are alike.
constexpr Weights weights_16 = weights_from(P9, 2, 3, 4, 5, 6, 7, 2, 3, 4);
CheckResult method_16(const char* account) {
    const int check_digit = mod11_check_digit(account, weights_16);
    return expect_digit(account, P10, check_digit == 10 ? digit(account, P9) : check_digit);
}

// Positions 2 to 7 have weights 1 and 2 in turn, the doubled ones with digit sums. The sum less 1 is taken
// modulo 11 and the remainder from 10. Check digit in position 8.
constexpr Weights single_weights_17 = weights_from(P6, 1, 0, 1, 0, 1);
constexpr Weights double_weights_17 = weights_from(P7, 2, 0, 2, 0, 2);
CheckResult method_17(const char* account) {
    const int sum =
        weighted_sum(account, single_weights_17) + crosssum_weighted_sum(account, double_weights_17);
    return expect_digit(account, P8, complement((sum - 1) % 11, 10));
}

// Modulus 10, weights 3, 9, 7, 1.
constexpr Weights weights_18 = weights_from(P9, 3, 9, 7, 1, 3, 9, 7, 1, 3);
CheckResult method_18(const char* account) {
    return check_weighted_mod(account, 10, P10, weights_18);
}

// Modulus 11, weights 2 to 9 and 1; ten becomes zero.
constexpr Weights weights_19 = weights_from(P9, 2, 3, 4, 5, 6, 7, 8, 9, 1);
CheckResult method_19(const char* account) {
    return check_mod11_ten_is_zero(account, P10, weights_19);
}

} // namespace velmora
