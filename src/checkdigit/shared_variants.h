// Computations that several methods have among their variants, and weights that they share.
#pragma once

#include <string_view>

#include "checkdigit/arithmetic.h"

namespace velmora {

// Method 00 and those that only treat its sum in another way.
inline constexpr Weights weights_00 = weights_from(P9, 2, 1, 2, 1, 2, 1, 2, 1, 2);

// Six-digit stem, check digit, two-digit sub-account.
inline constexpr Weights stem_weights = weights_from(P7, 2, 1, 2, 1, 2, 1);

// The same stem without its sub-account: the six digits before the last one.
inline constexpr Weights six_digit_stem_weights = weights_from(P9, 2, 1, 2, 1, 2, 1);

// Five-digit stem before the last digit.
inline constexpr Weights five_digit_stem_weights = weights_from(P9, 2, 1, 2, 1, 2);

// Ascending weights for modulus 7 and 11.
inline constexpr Weights five_ascending_weights = weights_from(P9, 2, 3, 4, 5, 6);
inline constexpr Weights six_ascending_weights = weights_from(P9, 2, 3, 4, 5, 6, 7);
inline constexpr Weights seven_ascending_weights = weights_from(P9, 2, 3, 4, 5, 6, 7, 8);

inline CheckResult check_stem(const char* account) {
    return check_crosssum_weighted(account, 10, P8, stem_weights);
}

inline CheckResult check_six_digit_stem(const char* account) {
    return check_crosssum_weighted(account, 10, P10, six_digit_stem_weights);
}

inline CheckResult check_mod7_five_digits(const char* account) {
    return check_weighted_mod(account, 7, P10, five_ascending_weights);
}

inline CheckResult check_mod7_six_digits(const char* account) {
    return check_weighted_mod(account, 7, P10, six_ascending_weights);
}

inline CheckResult check_mod11_seven_digits(const char* account) {
    return check_mod11_ten_is_zero(account, P10, seven_ascending_weights);
}

// Products are added as they are, unlike in the stems above.
inline CheckResult check_mod10_five_digits(const char* account) {
    return check_weighted_mod(account, 10, P10, five_digit_stem_weights);
}

// What the digits that methods C6, D1, D4 and E2 put before the account add to the sum: weights 1 and 2 in
// turn, from the last digit leftwards, products replaced by their digit sum.
consteval int prefix_sum(std::string_view prefix, int last_weight) {
    int sum = 0;
    for (int weight = last_weight; !prefix.empty(); prefix.remove_suffix(1), weight = 3 - weight)
        sum += cross_sum((prefix.back() - '0') * weight);
    return sum;
}

// The sums of seven-digit prefixes, selected by the account's first digit; an empty prefix refuses the
// account.
struct PrefixSums {
    static constexpr int no_prefix = -1;
    int of[10];

    consteval explicit PrefixSums(const char (&prefixes)[10][8]) : of{} {
        for (int first_digit = 0; first_digit < 10; ++first_digit) {
            const std::string_view prefix = prefixes[first_digit];
            of[first_digit] = prefix.empty() ? no_prefix : prefix_sum(prefix, 2);
        }
    }
};

// Modulus 10 with digit sums over positions 9 to 2 and on over the prefix.
inline CheckResult check_prefixed(const char* account, const PrefixSums& prefix_sums) {
    constexpr Weights weights = weights_from(P9, 2, 1, 2, 1, 2, 1, 2, 1);
    const int first_digit = digit(account, P1);
    if (first_digit < 0 || first_digit > 9 || prefix_sums.of[first_digit] == PrefixSums::no_prefix)
        return account_invalid;
    const int sum = crosssum_weighted_sum(account, weights) + prefix_sums.of[first_digit];
    return expect_digit(account, P10, complement(sum % 10, 10));
}

} // namespace velmora
