#include "checkdigit/methods.h"
#include "checkdigit/shared_variants.h"

namespace velmora {

// Method 20; accounts that begin with 57 have no check digit.
CheckResult method_D0(const char* account) {
    return starts_with(account, "57") ? account_not_checkable : method_20(account);
}

// Method 00 over seven digits, which the first digit selects, and positions 2 to 9. No account begins with 8.
constexpr char prefixes_D1[10][8] = {"4363380", "4363381", "4363382", "4363383", "4363384", // 0 to 4
                                     "4363385", "4363386", "4363387", "",        "4363389"};
constexpr PrefixSums prefix_sums_D1(prefixes_D1);
CheckResult method_D1(const char* account) {
    return check_prefixed(account, prefix_sums_D1);
}

// Method 95 with its ranges of valid accounts, then methods 00 and 68.
CheckResult method_D2(const char* account) {
    return first_not_invalid(account, method_95, method_00, method_68);
}

// Method 00, then method 27.
CheckResult method_D3(const char* account) {
    return first_not_invalid(account, method_00, method_27);
}

// Method 00 over the digits 428259 and positions 1 to 9, the first of which is not 0.
constexpr int prefix_sum_D4 = prefix_sum("428259", 1);
CheckResult method_D4(const char* account) {
    if (digit(account, P1) == 0) return account_invalid;
    const int sum = crosssum_weighted_sum(account, weights_00) + prefix_sum_D4;
    return expect_digit(account, P10, complement(sum % 10, 10));
}

// Six digits by modulus 11, 7 and 10. With 99 in positions 3 and 4, seven digits by modulus 11.
static CheckResult mod10_six_digits_D5(const char* account) {
    return check_weighted_mod(account, 10, P10, six_ascending_weights);
}
CheckResult method_D5(const char* account) {
    if (digit(account, P3) == 9 && digit(account, P4) == 9) return check_mod11_seven_digits(account);
    return first_not_invalid(account, method_32, check_mod7_six_digits, mod10_six_digits_D5);
}

// Methods 07, 03 and 00.
CheckResult method_D6(const char* account) {
    return first_not_invalid(account, method_07, method_03, method_00);
}

// The sum of method 00; its units digit is the check digit.
CheckResult method_D7(const char* account) {
    return expect_digit(account, P10, crosssum_weighted_sum(account, weights_00) % 10);
}

// Method 00 for ten digits; eight digits have no check digit, all other lengths are invalid.
CheckResult method_D8(const char* account) {
    switch (significant_digits(account)) {
    case 10:
        return method_00(account);
    case 8:
        return account_not_checkable;
    default:
        return account_invalid;
    }
}

// Methods 00, 10 and 18.
CheckResult method_D9(const char* account) {
    return first_not_invalid(account, method_00, method_10, method_18);
}

} // namespace velmora
