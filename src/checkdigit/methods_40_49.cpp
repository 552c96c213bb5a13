#include "checkdigit/methods.h"
#include "checkdigit/shared_variants.h"

namespace velmora {

// Modulus 11, the weights powers of 2 modulo 11; ten becomes zero.
constexpr Weights weights_40 = weights_from(P9, 2, 4, 8, 5, 10, 9, 7, 3, 6);
CheckResult method_40(const char* account) {
    return check_mod11_ten_is_zero(account, P10, weights_40);
}

// Method 00; with a 9 in position 4 positions 1 to 3 do not count.
CheckResult method_41(const char* account) {
    return digit(account, P4) == 9 ? check_six_digit_stem(account) : method_00(account);
}

// Modulus 11, weights 2 to 9 on positions 9 to 2; ten becomes zero.
constexpr Weights weights_42 = weights_from(P9, 2, 3, 4, 5, 6, 7, 8, 9);
CheckResult method_42(const char* account) {
    return check_mod11_ten_is_zero(account, P10, weights_42);
}

// Modulus 10, weights 1 to 9.
constexpr Weights weights_43 = weights_from(P9, 1, 2, 3, 4, 5, 6, 7, 8, 9);
CheckResult method_43(const char* account) {
    return check_weighted_mod(account, 10, P10, weights_43);
}

// Modulus 11, the weights powers of 2 modulo 11 on positions 9 to 5; ten becomes zero.
constexpr Weights weights_44 = weights_from(P9, 2, 4, 8, 5, 10);
CheckResult method_44(const char* account) {
    return check_mod11_ten_is_zero(account, P10, weights_44);
}

// Method 00. Accounts with a 0 in position 1, a 1 in position 5 or 48 at the beginning have no check digit.
CheckResult method_45(const char* account) {
    if (digit(account, P1) == 0 || digit(account, P5) == 1 || starts_with(account, "48"))
        return account_not_checkable;
    return method_00(account);
}

// Modulus 11, weights 2 to 6 on positions 7 to 3, check digit in position 8; ten becomes zero.
constexpr Weights weights_46 = weights_from(P7, 2, 3, 4, 5, 6);
CheckResult method_46(const char* account) {
    return check_mod11_ten_is_zero(account, P8, weights_46);
}

// Modulus 11, weights 2 to 6 on positions 8 to 4, check digit in position 9; ten becomes zero.
constexpr Weights weights_47 = weights_from(P8, 2, 3, 4, 5, 6);
CheckResult method_47(const char* account) {
    return check_mod11_ten_is_zero(account, P9, weights_47);
}

// Modulus 11, weights 2 to 7 on positions 8 to 3, check digit in position 9; ten becomes zero.
constexpr Weights weights_48 = weights_from(P8, 2, 3, 4, 5, 6, 7);
CheckResult method_48(const char* account) {
    return check_mod11_ten_is_zero(account, P9, weights_48);
}

// Method 00, then method 01.
CheckResult method_49(const char* account) {
    return first_not_invalid(account, method_00, method_01);
}

} // namespace velmora
