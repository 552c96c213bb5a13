// The arithmetic that the check-digit methods share.
//
// An account here is always normalised: ten characters, filled up with zeros on the left, and a terminating
// zero. Deliberate: nothing tests for digits; any other character counts as its value minus that of '0', and
// every remainder is the one that C gives, so that an account has the same answer in every version.
//
// The sums are forced inline and unrolled because their weights are constants: each call becomes a handful of
// multiplications.
#pragma once

#include <cstddef>
#include <cstdint>

namespace velmora {

inline constexpr std::size_t account_length = 10;
inline constexpr std::size_t bank_code_length = 8;

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

// One weight a position, from 0 to 15. Weight 0 leaves the position out. Packed into a number, because as a
// template argument an array loses its zeros in the names that GCC 12 gives, and rows would share a routine.
struct Weights {
    std::uint64_t packed;

    constexpr int of(int position) const { return static_cast<int>(packed >> (4 * (P10 - position)) & 15); }
};

// Weights as the published descriptions give them: for `first` and on leftwards, 0 for all other positions.
template <typename... Weight>
consteval Weights weights_from(Position first, Weight... weight) {
    Weights weights{};
    int shift = 4 * (P10 - first);
    ((weights.packed |= static_cast<std::uint64_t>(weight) << shift, shift += 4), ...);
    return weights;
}

[[gnu::always_inline]] inline int weighted_sum(const char* account, Weights weights) {
    int sum = 0;
#pragma GCC unroll 10
    for (int position = P1; position <= P10; ++position)
        sum += digit(account, position) * weights.of(position);
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
[[gnu::always_inline]] inline int crosssum_weighted_sum(const char* account, Weights weights) {
    int sum = 0;
#pragma GCC unroll 10
    for (int position = P1; position <= P10; ++position)
        sum += crosssum_product(account[position], weights.of(position));
    return sum;
}

// What fills a remainder up to the modulus; nothing for remainder 0.
constexpr int complement(int remainder, int modulus) {
    return remainder == 0 ? 0 : modulus - remainder;
}

constexpr CheckResult expect_digit(const char* account, Position position, int check_digit) {
    return digit(account, position) == check_digit ? account_valid : account_invalid;
}

// Modulus with digit sums: right when the digit in `position` fills the remainder up to the modulus.
[[gnu::always_inline]] inline CheckResult check_crosssum_weighted(const char* account, int modulus,
                                                                  Position position, Weights weights) {
    const int remainder = crosssum_weighted_sum(account, weights) % modulus;
    return expect_digit(account, position, remainder > 0 ? modulus - remainder : 0);
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
