#include "checkdigit/methods.h"
#include "checkdigit/shared_variants.h"

namespace velmora {

// Method 52 for accounts of eight digits; if that fails, and for all others, method 20.
CheckResult method_C0(const char* account, const char* bank_code) {
    if (significant_digits(account) == 8) {
        const CheckResult result = method_52(account, bank_code);
        if (result != account_invalid) return result;
    }
    return method_20(account);
}

// Method 17; accounts with a 5 in position 1 by its arithmetic over positions 1 to 9, check digit at the end.
constexpr Weights single_weights_C1 = weights_from(P9, 1, 0, 1, 0, 1, 0, 1, 0, 1);
constexpr Weights double_weights_C1 = weights_from(P8, 2, 0, 2, 0, 2, 0, 2);
CheckResult method_C1(const char* account) {
    if (digit(account, P1) != 5) return method_17(account);
    const int sum =
        weighted_sum(account, single_weights_C1) + crosssum_weighted_sum(account, double_weights_C1);
    return expect_digit(account, P10, complement((sum - 1) % 11, 10));
}

// Methods 22, 00 and 04.
CheckResult method_C2(const char* account) {
    return first_not_invalid(account, method_22, method_00, method_04);
}

// Method 58 for accounts with a 9 in position 1, method 00 for all others.
CheckResult method_C3(const char* account) {
    return digit(account, P1) == 9 ? check_mod11_five_digits(account) : method_00(account);
}

// Method 58 for accounts with a 9 in position 1, method 15 for all others.
CheckResult method_C4(const char* account) {
    return digit(account, P1) == 9 ? check_mod11_five_digits(account) : method_15(account);
}

// The length and the first digits select the computation: the five-digit stems of method 75, method 29 or
// method 00; some ranges have no check digit, all that is left is invalid.
constexpr Weights stem_weights_C5 = weights_from(P6, 2, 1, 2, 1, 2);
constexpr NumberRange stem_digits_C5 = {1, 8}; // first digit of a stem
constexpr NumberRange unchecked_digits_C5 = {3,
                                             5}; // first digit of an eight-digit account without check digit
static CheckResult ten_digits_C5(const char* account) {
    const int kind = digit(account, P1);
    if (is_one_of(kind, 1, 4, 5, 6, 9)) return method_29(account);
    if (kind == 3) return method_00(account);
    const bool unchecked = starts_with(account, "70") || starts_with(account, "85");
    return unchecked ? account_not_checkable : account_invalid;
}
CheckResult method_C5(const char* account) {
    switch (significant_digits(account)) {
    case 10:
        return ten_digits_C5(account);
    case 9:
        if (!stem_digits_C5.contains(digit(account, P2))) return account_invalid;
        return check_crosssum_weighted(account, 10, P7, stem_weights_C5);
    case 8:
        return unchecked_digits_C5.contains(digit(account, P3)) ? account_not_checkable : account_invalid;
    case 6:
        if (!stem_digits_C5.contains(digit(account, P5))) return account_invalid;
        return check_crosssum_weighted(account, 10, P10, five_digit_stem_weights);
    default:
        return account_invalid;
    }
}

// Method 00 over seven digits, which the first digit selects, and positions 2 to 9.
constexpr char prefixes_C6[10][8] = {"4451970", "4451981", "4451992", "4451993", "4344992", // 0 to 4
                                     "4344990", "4344991", "5499570", "4451994", "5499579"};
constexpr PrefixSums prefix_sums_C6(prefixes_C6);
CheckResult method_C6(const char* account) {
    return check_prefixed(account, prefix_sums_C6);
}

// Method 63, then method 06.
CheckResult method_C7(const char* account) {
    return first_not_invalid(account, method_63, method_06);
}

// Methods 00, 04 and 07.
CheckResult method_C8(const char* account) {
    return first_not_invalid(account, method_00, method_04, method_07);
}

// Method 00, then method 07.
CheckResult method_C9(const char* account) {
    return first_not_invalid(account, method_00, method_07);
}

} // namespace velmora
