#include "checkdigit/methods.h"
#include "checkdigit/shared_variants.h"

namespace velmora {

// Modulus 10, digit sums of the products, weights 2 and 1 in turn.
CheckResult method_00(const char* account) {
    return check_crosssum_weighted(account, 10, P10, weights_00);
}

// Modulus 10, weights 3, 7, 1.
constexpr Weights weights_01 = weights_from(P9, 3, 7, 1, 3, 7, 1, 3, 7, 1);
CheckResult method_01(const char* account) {
    return check_weighted_mod(account, 10, P10, weights_01);
}

// Modulus 11, weights 2 to 9 and 2 again; an account that would need the check digit 10 does not exist.
constexpr Weights weights_02 = weights_from(P9, 2, 3, 4, 5, 6, 7, 8, 9, 2);
CheckResult method_02(const char* account) {
    return check_mod11_ten_is_invalid(account, P10, weights_02);
}

// Method 00 without digit sums.
CheckResult method_03(const char* account) {
    return check_weighted_mod(account, 10, P10, weights_00);
}

// Modulus 11, weights 2 to 7 and 2 to 4; no check digit 10.
CheckResult method_04(const char* account) {
    return check_mod11_tail(account, 2, 3, 4);
}

// Modulus 10, weights 7, 3, 1.
constexpr Weights weights_05 = weights_from(P9, 7, 3, 1, 7, 3, 1, 7, 3, 1);
CheckResult method_05(const char* account) {
    return check_weighted_mod(account, 10, P10, weights_05);
}

// Modulus 11, weights 2 to 7 and 2 to 4; ten becomes zero.
constexpr Weights weights_06 = weights_from(P9, 2, 3, 4, 5, 6, 7, 2, 3, 4);
CheckResult method_06(const char* account) {
    return check_mod11_ten_is_zero(account, P10, weights_06);
}

// Modulus 11, weights 2 to 10; no check digit 10.
constexpr Weights weights_07 = weights_from(P9, 2, 3, 4, 5, 6, 7, 8, 9, 10);
CheckResult method_07(const char* account) {
    return check_mod11_ten_is_invalid(account, P10, weights_07);
}

// Method 00 from account 60000 on; smaller ones have no check digit.
constexpr std::int64_t first_checked_08 = 60000;
CheckResult method_08(const char* account) {
    return number(account) < first_checked_08 ? account_not_checkable : method_00(account);
}

// No check digit.
CheckResult method_09(const char*) {
    return account_not_checkable;
}

} // namespace velmora
