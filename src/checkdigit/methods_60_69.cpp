#include "checkdigit/methods.h"
#include "checkdigit/shared_variants.h"

namespace velmora {

// Modulus 10 with digit sums over positions 9 to 3.
constexpr Weights weights_60 = weights_from(P9, 2, 1, 2, 1, 2, 1, 2);
CheckResult method_60(const char* account) {
    return check_crosssum_weighted(account, 10, P10, weights_60);
}

// Modulus 10 with digit sums over positions 7 to 1, check digit in position 8. With an 8 in position 9 the
// last two positions count, too.
constexpr Weights weights_61 = weights_from(P7, 2, 1, 2, 1, 2, 1, 2);
constexpr Weights all_weights_61 = weights_from(P10, 2, 1, 0, 2, 1, 2, 1, 2, 1, 2);
CheckResult method_61(const char* account) {
    if (digit(account, P9) == 8) return check_crosssum_weighted(account, 10, P8, all_weights_61);
    return check_crosssum_weighted(account, 10, P8, weights_61);
}

// Accounts of up to nine digits: a stem in positions 2 to 7 with its check digit in position 8, and a
// sub-account 00 that may have been left off.
static CheckResult without_sub_account_63(const char* account) {
    return starts_with(account, "000") ? check_six_digit_stem(account) : account_invalid;
}
CheckResult method_63(const char* account) {
    if (digit(account, P1) != 0) return account_invalid;
    return first_not_invalid(account, check_stem, without_sub_account_63);
}

// Modulus 11, weights 9, 10, 5, 8, 4, 2 on positions 1 to 6, check digit in position 7; ten becomes zero.
constexpr Weights weights_64 = weights_from(P6, 2, 4, 8, 5, 10, 9);
CheckResult method_64(const char* account) {
    return check_mod11_ten_is_zero(account, P7, weights_64);
}

// Method 61 with a 9 in position 9 for the special case.
CheckResult method_65(const char* account) {
    if (digit(account, P9) == 9) return check_crosssum_weighted(account, 10, P8, all_weights_61);
    return check_crosssum_weighted(account, 10, P8, weights_61);
}

// Accounts of up to nine digits. Modulus 11, weights 2 to 6 on positions 9 to 5 and 7 on position 2;
// remainder 1 gives check digit 0, remainder 0 gives 1. With a 9 in position 2 there is no check digit.
constexpr Weights weights_66 = weights_from(P9, 2, 3, 4, 5, 6, 0, 0, 7);
CheckResult method_66(const char* account) {
    if (digit(account, P1) != 0) return account_invalid;
    if (digit(account, P2) == 9) return account_not_checkable;
    const int remainder = weighted_sum(account, weights_66) % 11;
    if (remainder == 0) return expect_digit(account, P10, 1);
    if (remainder == 1) return expect_digit(account, P10, 0);
    return expect_digit(account, P10, 11 - remainder);
}

// Modulus 10 with digit sums over positions 7 to 1, check digit in position 8.
CheckResult method_67(const char* account) {
    return check_crosssum_weighted(account, 10, P8, weights_61);
}

// Modulus 10 with digit sums. Ten digits: a 9 in position 4, and only the digits from there on count. Six to
// nine digits: over all of them or without positions 3 and 4. 400000000 to 499999999 have no check digit.
constexpr Weights weights_68 = weights_from(P9, 2, 1, 2, 1, 2, 1, 2, 1);
constexpr Weights weights_without_3_4_68 = weights_from(P9, 2, 1, 2, 1, 2, 0, 0, 1);
static CheckResult all_positions_68(const char* account) {
    return check_crosssum_weighted(account, 10, P10, weights_68);
}
static CheckResult without_positions_3_4_68(const char* account) {
    return check_crosssum_weighted(account, 10, P10, weights_without_3_4_68);
}
CheckResult method_68(const char* account) {
    const int length = significant_digits(account);
    if (length == 10) return digit(account, P4) == 9 ? check_six_digit_stem(account) : account_invalid;
    if (starts_with(account, "04")) return account_not_checkable;
    if (length < 6) return account_invalid;
    return first_not_invalid(account, all_positions_68, without_positions_3_4_68);
}

} // namespace velmora
