#include "checkdigit/methods.h"
#include "checkdigit/shared_variants.h"

namespace velmora {

// Modulus 11, weights 6 down to 1 on positions 2 to 7, check digit at the end; ten becomes one.
constexpr Weights weights_71 = weights_from(P7, 1, 2, 3, 4, 5, 6);
CheckResult method_71(const char* account) {
    const int check_digit = mod11_check_digit(account, weights_71);
    return expect_digit(account, P10, check_digit == 10 ? 1 : check_digit);
}

// Digit sums over six and over five digits, modulus 10 and 7. Ledger accounts apart.
static CheckResult five_digits_73(const char* account) {
    return check_crosssum_weighted(account, 10, P10, five_digit_stem_weights);
}
static CheckResult five_digits_mod7_73(const char* account) {
    return check_crosssum_weighted(account, 7, P10, five_digit_stem_weights);
}
CheckResult method_73(const char* account) {
    if (digit(account, P3) == 9) return check_ledger_account(account);
    return first_not_invalid(account, check_six_digit_stem, five_digits_73, five_digits_mod7_73);
}

// Method 00, where for accounts of six digits the sum may also be filled up to the next number that ends in
// 5; then method 04.
static CheckResult half_decade_74(const char* account) {
    if (significant_digits(account) != 6) return account_invalid;
    const int remainder = crosssum_weighted_sum(account, weights_00) % 10;
    return expect_digit(account, P10, (15 - remainder) % 10);
}
CheckResult method_74(const char* account) {
    return first_not_invalid(account, method_00, half_decade_74, method_04);
}

// Five-digit stem, weights 2 and 1 in turn with digit sums, followed by its check digit. Where the stem
// begins depends on the length; accounts of eight, ten or fewer than six digits are invalid.
constexpr Weights weights_before_8_75 = weights_from(P7, 2, 1, 2, 1, 2);
constexpr Weights weights_before_7_75 = weights_from(P6, 2, 1, 2, 1, 2);
CheckResult method_75(const char* account) {
    switch (significant_digits(account)) {
    case 9:
        if (digit(account, P2) == 9) return check_crosssum_weighted(account, 10, P8, weights_before_8_75);
        return check_crosssum_weighted(account, 10, P7, weights_before_7_75);
    case 7:
    case 6:
        return check_crosssum_weighted(account, 10, P10, five_digit_stem_weights);
    default:
        return account_invalid;
    }
}

// Modulus 11, weights 2 to 7 on positions 7 to 2; the remainder itself is the check digit, in position 8. The
// same two places further right when the sub-account was left off. Remainder 10 is not checkable in either
// reading. The first digit names the kind of account. Deliberate: three zeros in positions 2 to 4 are invalid
// in both readings, so a stem alone is, too (callers rely on it).
constexpr Weights weights_76 = weights_from(P7, 2, 3, 4, 5, 6, 7);
CheckResult method_76(const char* account) {
    if (!is_one_of(digit(account, P1), 0, 4, 6, 7, 8, 9)) return account_invalid;
    if (std::string_view(account + P2, 3) == "000") return account_invalid;
    const int remainder = weighted_sum(account, weights_76) % 11;
    if (remainder == 10) return account_not_checkable;
    if (digit(account, P8) == remainder) return account_valid;
    const int shifted_remainder = weighted_sum(account, six_ascending_weights) % 11;
    if (shifted_remainder == 10) return account_not_checkable;
    return digit(account, P10) == shifted_remainder ? account_valid_shifted : account_invalid;
}

// Method 00; accounts of eight digits have no check digit.
CheckResult method_78(const char* account) {
    return significant_digits(account) == 8 ? account_not_checkable : method_00(account);
}

} // namespace velmora
