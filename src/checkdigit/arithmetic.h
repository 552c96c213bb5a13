// The arithmetic that the check-digit methods share.
//
// An account here is always normalised: ten characters, filled up with zeros on the left, and a terminating
// zero. Deliberate: nothing tests for digits; any other character counts as its value minus that of '0', and
// every remainder is the one that C gives (callers rely on it).
//
// The sums are forced inline and unrolled because their weights are constants: each call becomes a handful of
// multiplications.
#pragma once

#include <cstdint>
#include <string_view>

namespace velmora {

// What every routine returns; the same numbers leave the library.
enum CheckResult : int {
    account_invalid = -1,
    account_not_checkable = 0,
    account_valid = 1,
    account_valid_shifted = 2, // read as lacking its two-digit sub-account; method 76 only
};

// Positions are named as the published descriptions count them, from the left. P10 is the last digit.
enum Position : int { P1, P2, P3, P4, P5, P6, P7, P8, P9, P10 };

constexpr int digit(const char* account, int position) {
    return account[position] - '0';
}

template <typename... Digit>
constexpr bool is_one_of(int value, Digit... digit) {
    return ((value == digit) || ...);
}

// One weight a position, from position 10 down to position 1. Weight 0 leaves the position out.
struct Weights {
    int of[10];
};

// Weights as the published descriptions give them: for `first` and on leftwards, 0 for all other positions.
template <typename... Weight>
consteval Weights weights_from(Position first, Weight... weight) {
    Weights weights{};
    int i = P10 - first;
    ((weights.of[i++] = weight), ...);
    return weights;
}

[[gnu::always_inline]] inline int weighted_sum(const char* account, const Weights& weights) {
    int sum = 0;
#pragma GCC unroll 10
    for (int position = P1; position <= P10; ++position)
        sum += digit(account, position) * weights.of[P10 - position];
    return sum;
}

constexpr int cross_sum(int product) {
    return product > 9 ? product / 10 + product % 10 : product;
}

// The cross sums of every character's product with weights 1 and 2; methods that take cross sums have no
// others.
struct CrossSums {
    std::int16_t simple[256], doubled[256];
};
inline constexpr CrossSums cross_sums = [] {
    CrossSums sums{};
    for (int i = 0; i < 256; ++i) {
        const int value = static_cast<char>(i) - '0';
        sums.simple[i] = static_cast<std::int16_t>(cross_sum(value));
        sums.doubled[i] = static_cast<std::int16_t>(cross_sum(2 * value));
    }
    return sums;
}();

[[gnu::always_inline]] inline int crosssum_product(char character, int weight) {
    if (weight == 1) return cross_sums.simple[static_cast<unsigned char>(character)];
    if (weight == 2) return cross_sums.doubled[static_cast<unsigned char>(character)];
    return cross_sum((character - '0') * weight);
}

// Like weighted_sum(), every product replaced by the sum of its decimal digits.
[[gnu::always_inline]] inline int crosssum_weighted_sum(const char* account, const Weights& weights) {
    int sum = 0;
#pragma GCC unroll 10
    for (int position = P1; position <= P10; ++position)
        sum += crosssum_product(account[position], weights.of[P10 - position]);
    return sum;
}

// What fills a remainder up to the modulus; nothing for remainder 0.
constexpr int complement(int remainder, int modulus) {
    return remainder == 0 ? 0 : modulus - remainder;
}

constexpr CheckResult expect_digit(const char* account, Position position, int check_digit) {
    return digit(account, position) == check_digit ? account_valid : account_invalid;
}

// Check digit by modulus 11, from 0 to 10. The methods differ in what they make of ten.
[[gnu::always_inline]] inline int mod11_check_digit(const char* account, const Weights& weights) {
    return complement(weighted_sum(account, weights) % 11, 11);
}

// --- The six helpers. Each gives account_valid or account_invalid. ---

[[gnu::always_inline]] inline CheckResult check_crosssum_weighted(const char* account, int modulus,
                                                                  Position position, const Weights& weights) {
    const int remainder = crosssum_weighted_sum(account, weights) % modulus;
    return expect_digit(account, position, remainder > 0 ? modulus - remainder : 0);
}

[[gnu::always_inline]] inline CheckResult check_weighted_mod(const char* account, int modulus,
                                                             Position position, const Weights& weights) {
    const int remainder = weighted_sum(account, weights) % modulus;
    return expect_digit(account, position, complement(remainder, modulus) % 10);
}

[[gnu::always_inline]] inline CheckResult check_mod11_ten_is_zero(const char* account, Position position,
                                                                  const Weights& weights) {
    return check_weighted_mod(account, 11, position, weights);
}

// Modulus 11 where a check digit of ten cannot be written: no last digit makes such an account right.
[[gnu::always_inline]] inline CheckResult check_mod11_ten_is_invalid(const char* account, Position position,
                                                                     const Weights& weights) {
    const int check_digit = mod11_check_digit(account, weights);
    return check_digit == 10 ? account_invalid : expect_digit(account, position, check_digit);
}

// Ledger accounts, those with a 9 in position 3, of methods 51, 73, 81, 84, 87 and A8: over positions 9 to 3,
// then over all nine.
CheckResult check_ledger_account(const char* account);

// Weights 2 to 7 on positions 9 to 4 and the given ones on positions 3, 2 and 1.
[[gnu::always_inline]] inline CheckResult check_mod11_tail(const char* account, int weight3, int weight2,
                                                           int weight1) {
    return check_mod11_ten_is_invalid(account, P10, {{0, 2, 3, 4, 5, 6, 7, weight3, weight2, weight1}});
}

CheckResult check_mod11_five_digits(const char* account);

// --- Conditions and variants ---

// The result of the first variant that does not find the account invalid.
template <typename... Variant>
[[gnu::always_inline]] inline CheckResult first_not_invalid(const char* account, Variant... variant) {
    CheckResult result = account_invalid;
    (void)(((result = variant(account)) != account_invalid) || ...);
    return result;
}

constexpr bool starts_with(const char* account, std::string_view digits) {
    return std::string_view(account, P10 + 1).starts_with(digits);
}

// The decimal number that two positions and those between them make.
constexpr std::int64_t number(const char* account, Position first = P1, Position last = P10) {
    std::int64_t value = 0;
    for (int position = first; position <= last; ++position)
        value = value * 10 + digit(account, position);
    return value;
}

struct NumberRange {
    std::int64_t first, last;

    constexpr bool contains(std::int64_t value) const { return value >= first && value <= last; }
};

// Length of the account without its leading zeros.
constexpr int significant_digits(const char* account) {
    int position = P1;
    while (position <= P10 && account[position] == '0')
        ++position;
    return P10 + 1 - position;
}

} // namespace velmora
