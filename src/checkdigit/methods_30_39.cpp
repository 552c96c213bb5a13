#include "checkdigit/methods.h"
#include "checkdigit/shared_variants.h"

namespace velmora {

// Modulus 10, plain products; positions 2 to 5 do not count.
constexpr Weights weights_30 = weights_from(P9, 2, 1, 2, 1, 0, 0, 0, 0, 2);
CheckResult method_30(const char* account) {
    return check_weighted_mod(account, 10, P10, weights_30);
}

// Modulus 11, weights 9 down to 1; the remainder itself is the check digit, and it is never 10.
constexpr Weights weights_31 = weights_from(P9, 9, 8, 7, 6, 5, 4, 3, 2, 1);
CheckResult method_31(const char* account) {
    const int remainder = weighted_sum(account, weights_31) % 11;
    return remainder == 10 ? account_invalid : expect_digit(account, P10, remainder);
}

// Modulus 11, weights 2 to 7 on positions 9 to 4; ten becomes zero.
CheckResult method_32(const char* account) {
    return check_mod11_ten_is_zero(account, P10, six_ascending_weights);
}

// Modulus 11, weights 2 to 6 on positions 9 to 5; ten becomes zero.
CheckResult method_33(const char* account) {
    return check_mod11_ten_is_zero(account, P10, five_ascending_weights);
}

// Modulus 11, the weights powers of 2 modulo 11, check digit in position 8; ten becomes zero.
constexpr Weights weights_34 = weights_from(P7, 2, 4, 8, 5, 10, 9, 7);
CheckResult method_34(const char* account) {
    return check_mod11_ten_is_zero(account, P8, weights_34);
}

// Method 34 over positions 9 to 4, check digit at the end.
constexpr Weights weights_38 = weights_from(P9, 2, 4, 8, 5, 10, 9);
CheckResult method_38(const char* account) {
    return check_mod11_ten_is_zero(account, P10, weights_38);
}

} // namespace velmora
