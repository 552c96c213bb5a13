#include "checkdigit/methods.h"
#include "checkdigit/shared_variants.h"

namespace velmora {

// Six variants for ordinary accounts, a seventh for ledger accounts, those with a 9 in position 3.
static CheckResult mod9_90(const char* account) {
    return check_weighted_mod(account, 9, P10, five_ascending_weights);
}
static CheckResult mod7_six_digits_90(const char* account) {
    return check_weighted_mod(account, 7, P10, six_digit_stem_weights);
}
CheckResult method_90(const char* account) {
    if (digit(account, P3) == 9) return check_mod11_seven_digits(account);
    return first_not_invalid(account, method_32, method_33, check_mod7_five_digits, mod9_90,
                             check_mod10_five_digits, mod7_six_digits_90);
}

// Modulus 11 by four rows of weights, check digit in position 7; ten becomes zero.
constexpr Weights ascending_weights_91 = weights_from(P6, 2, 3, 4, 5, 6, 7);
constexpr Weights descending_weights_91 = weights_from(P6, 7, 6, 5, 4, 3, 2);
constexpr Weights all_weights_91 = weights_from(P10, 2, 3, 4, 0, 5, 6, 7, 8, 9, 10);
constexpr Weights power_weights_91 = weights_from(P6, 2, 4, 8, 5, 10, 9);
static CheckResult ascending_91(const char* account) {
    return check_mod11_ten_is_zero(account, P7, ascending_weights_91);
}
static CheckResult descending_91(const char* account) {
    return check_mod11_ten_is_zero(account, P7, descending_weights_91);
}
static CheckResult all_positions_91(const char* account) {
    return check_mod11_ten_is_zero(account, P7, all_weights_91);
}
static CheckResult powers_91(const char* account) {
    return check_mod11_ten_is_zero(account, P7, power_weights_91);
}
CheckResult method_91(const char* account) {
    return first_not_invalid(account, ascending_91, descending_91, all_positions_91, powers_91);
}

// Modulus 10, weights 3, 7, 1 on positions 9 to 4.
constexpr Weights weights_92 = weights_from(P9, 3, 7, 1, 3, 7, 1);
CheckResult method_92(const char* account) {
    return check_weighted_mod(account, 10, P10, weights_92);
}

// Five digits by modulus 11, then by modulus 7. They stand at the front; behind four zeros, at the end.
constexpr Weights front_weights_93 = weights_from(P5, 2, 3, 4, 5, 6);
static CheckResult front_mod11_93(const char* account) {
    return check_mod11_ten_is_zero(account, P6, front_weights_93);
}
static CheckResult front_mod7_93(const char* account) {
    return check_weighted_mod(account, 7, P6, front_weights_93);
}
CheckResult method_93(const char* account) {
    if (starts_with(account, "0000")) return first_not_invalid(account, method_33, check_mod7_five_digits);
    return first_not_invalid(account, front_mod11_93, front_mod7_93);
}

// Method 00 with the weights 1 and 2 exchanged.
constexpr Weights weights_94 = weights_from(P9, 1, 2, 1, 2, 1, 2, 1, 2, 1);
CheckResult method_94(const char* account) {
    return check_crosssum_weighted(account, 10, P10, weights_94);
}

// Method 06 outside of five ranges. Deliberate: accounts in the ranges are valid, not "not checkable" as
// elsewhere (callers rely on it).
constexpr NumberRange valid_ranges_95[] = {
    {1, 1999999}, {9000000, 25999999}, {396000000, 499999999}, {700000000, 799999999}, {910000000, 989999999},
};
CheckResult method_95(const char* account) {
    const std::int64_t value = number(account);
    for (const NumberRange& range : valid_ranges_95)
        if (range.contains(value)) return account_valid;
    return method_06(account);
}

// Method 19, then method 00; an account of the range that fits neither is not checkable.
constexpr NumberRange unchecked_range_96 = {1300000, 99399999};
CheckResult method_96(const char* account) {
    const CheckResult result = first_not_invalid(account, method_19, method_00);
    if (result == account_invalid && unchecked_range_96.contains(number(account)))
        return account_not_checkable;
    return result;
}

// Modulus 10, weights 3, 1, 7 on positions 9 to 3; then method 32.
constexpr Weights weights_98 = weights_from(P9, 3, 1, 7, 3, 1, 7, 3);
static CheckResult mod10_98(const char* account) {
    return check_weighted_mod(account, 10, P10, weights_98);
}
CheckResult method_98(const char* account) {
    return first_not_invalid(account, mod10_98, method_32);
}

// Method 06; accounts of the range have no check digit.
constexpr NumberRange unchecked_range_99 = {396000000, 499999999};
CheckResult method_99(const char* account) {
    return unchecked_range_99.contains(number(account)) ? account_not_checkable : method_06(account);
}

} // namespace velmora
