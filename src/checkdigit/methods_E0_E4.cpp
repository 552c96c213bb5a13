#include "checkdigit/methods.h"
#include "checkdigit/shared_variants.h"

namespace velmora {

// Method 00 with 7 added to the sum.
constexpr int addend_E0 = 7;
CheckResult method_E0(const char* account) {
    const int remainder = (crosssum_weighted_sum(account, weights_00) + addend_E0) % 10;
    return expect_digit(account, P10, complement(remainder, 10));
}

// Modulus 11, weights 1 to 6, 11, 10, 9. Each digit counts as its ASCII code, 48 to 57; the remainder itself
// is the check digit, and it is never 10.
constexpr Weights weights_E1 = weights_from(P9, 1, 2, 3, 4, 5, 6, 11, 10, 9);
constexpr int zeros_E1 = '0' * (1 + 2 + 3 + 4 + 5 + 6 + 11 + 10 + 9);
CheckResult method_E1(const char* account) {
    const int remainder = (weighted_sum(account, weights_E1) + zeros_E1) % 11;
    return remainder == 10 ? account_invalid : expect_digit(account, P10, remainder);
}

// Method 00 over seven digits, which the first digit selects, and positions 2 to 9. Accounts begin with 0
// to 5.
constexpr char prefixes_E2[10][8] = {"4383200", "4383201", "4383202", "4383203", "4383204", // 0 to 4
                                     "4383205", "",        "",        "",        ""};
constexpr PrefixSums prefix_sums_E2(prefixes_E2);
CheckResult method_E2(const char* account) {
    return check_prefixed(account, prefix_sums_E2);
}

// Method 00, then method 21.
CheckResult method_E3(const char* account) {
    return first_not_invalid(account, method_00, method_21);
}

// Method 02, then method 00; only the latter takes digit sums.
CheckResult method_E4(const char* account) {
    return first_not_invalid(account, method_02, method_00);
}

} // namespace velmora
