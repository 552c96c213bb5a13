// What the rows of methods.h are made of. Every template with its arguments is a routine: it checks a
// normalised account, as a method or as a variant of one.
#pragma once

#include <string_view>

#include "checkdigit/arithmetic.h"

namespace velmora {

using MethodRoutine = CheckResult (*)(const char* account);
using Condition = bool (*)(const char* account);

// Method 00 and those that treat its sum in another way.
inline constexpr Weights weights_00 = weights_from(P9, 2, 1, 2, 1, 2, 1, 2, 1, 2);

// --- Computations. `position` is that of the check digit. ---

// The check digit fills the sum of the products' digit sums up to the modulus.
template <int modulus, Position position, Weights weights>
CheckResult digit_sums(const char* account) {
    return check_crosssum_weighted(account, modulus, position, weights);
}

// The same with the products as they are. A check digit of ten is written 0.
template <int modulus, Position position, Weights weights>
CheckResult products(const char* account) {
    const int check_digit = complement(weighted_sum(account, weights) % modulus, modulus);
    return expect_digit(account, position, check_digit % 10);
}

// Products modulo 11: the methods differ in what they make of a check digit of ten. Characters other than
// digits can lead to one of 11 to 21, too; ten_is_zero takes the units of those, all others keep them.
enum Ten {
    only_ten_is_zero = 0,
    ten_is_one = 1,
    ten_is_nine = 9,
    ten_is_zero,
    ten_is_invalid,
    ten_repeats_digit_before,
};

template <Position position, Ten ten, Weights weights>
CheckResult mod11(const char* account) {
    if (ten == ten_is_zero) return products<11, position, weights>(account);
    const int check_digit = complement(weighted_sum(account, weights) % 11, 11);
    if (check_digit != 10) return expect_digit(account, position, check_digit);
    if (ten == ten_is_invalid) return account_invalid;
    return expect_digit(account, position,
                        ten == ten_repeats_digit_before ? digit(account, position - 1) : ten);
}

// The remainder modulo 11 itself is the check digit, and it is never 10.
template <int addend, Weights weights>
CheckResult mod11_remainder(const char* account) {
    const int remainder = (weighted_sum(account, weights) + addend) % 11;
    return remainder == 10 ? account_invalid : expect_digit(account, P10, remainder);
}

// Single and doubled digits, the doubled ones as digit sums. The sum less 1 is taken modulo 11 and the
// remainder from 10.
template <Position position, Weights single, Weights doubled>
CheckResult sum_less_one(const char* account) {
    const int sum = weighted_sum(account, single) + crosssum_weighted_sum(account, doubled);
    return expect_digit(account, position, complement((sum - 1) % 11, 10));
}

// Digit sums by modulus 10, with a number that is the same for all accounts.
template <int addend, Weights weights>
CheckResult digit_sums_and(const char* account) {
    const int sum = crosssum_weighted_sum(account, weights) + addend;
    return expect_digit(account, P10, complement(sum % 10, 10));
}

// What digits put before the account add to such a sum: weights 1 and 2 in turn, from the last leftwards.
consteval int prefix_sum(std::string_view prefix, int last_weight) {
    int sum = 0;
    for (int weight = last_weight; !prefix.empty(); prefix.remove_suffix(1), weight = 3 - weight)
        sum += cross_sum((prefix.back() - '0') * weight);
    return sum;
}

// The account's first digit selects the prefix; an empty or missing one refuses the account.
struct PrefixSums {
    static constexpr int no_prefix = -1;
    int of[10];
};

template <typename... Prefix>
consteval PrefixSums prefixes(Prefix... prefix) {
    PrefixSums sums{};
    for (int& sum : sums.of)
        sum = PrefixSums::no_prefix;
    int* sum = sums.of;
    ((*sum++ = *prefix ? prefix_sum(prefix, 2) : PrefixSums::no_prefix), ...);
    return sums;
}

// Method 00 over the prefix and positions 2 to 9.
template <PrefixSums prefix_sums>
CheckResult prefixed(const char* account) {
    const int first_digit = digit(account, P1);
    if (first_digit < 0 || first_digit > 9 || prefix_sums.of[first_digit] == PrefixSums::no_prefix)
        return account_invalid;
    constexpr Weights weights = weights_from(P9, 2, 1, 2, 1, 2, 1, 2, 1);
    const int sum = crosssum_weighted_sum(account, weights) + prefix_sums.of[first_digit];
    return expect_digit(account, P10, complement(sum % 10, 10));
}

// --- Which computation: by trying, or by a condition. ---

constexpr CheckResult valid(const char*) {
    return account_valid;
}

constexpr CheckResult invalid(const char*) {
    return account_invalid;
}

constexpr CheckResult not_checkable(const char*) {
    return account_not_checkable;
}

// The result of the first variant that does not find the account invalid.
template <MethodRoutine... variant>
CheckResult first_of(const char* account) {
    CheckResult result = account_invalid;
    (void)(((result = variant(account)) != account_invalid) || ...);
    return result;
}

template <Condition condition, MethodRoutine then, MethodRoutine otherwise>
CheckResult when(const char* account) {
    return condition(account) ? then(account) : otherwise(account);
}

template <Condition condition, MethodRoutine routine>
constexpr MethodRoutine only_if = when<condition, routine, invalid>;

template <Condition condition, MethodRoutine routine>
constexpr MethodRoutine invalid_if = when<condition, invalid, routine>;

template <Condition condition, MethodRoutine routine>
constexpr MethodRoutine unchecked_if = when<condition, not_checkable, routine>;

// --- Conditions. ---

template <Position position, int... one_of>
constexpr bool has(const char* account) {
    return ((digit(account, position) == one_of) || ...);
}

template <Position position, int limit>
constexpr bool has_less_than(const char* account) {
    return digit(account, position) < limit;
}

template <int... digits>
constexpr bool begins(const char* account) {
    const char* at = account;
    return ((*at++ == '0' + digits) && ...);
}

// Without the zeros on the left.
template <int... one_of>
constexpr bool has_length(const char* account) {
    const int length = significant_digits(account);
    return ((length == one_of) || ...);
}

template <Position first, Position last, NumberRange... range>
constexpr bool digits_in(const char* account) {
    const std::int64_t value = number(account, first, last);
    return (range.contains(value) || ...);
}

template <NumberRange... range>
constexpr bool number_in(const char* account) {
    return digits_in<P1, P10, range...>(account);
}

template <std::int64_t limit>
constexpr bool number_below(const char* account) {
    return number(account) < limit;
}

template <Condition... condition>
constexpr bool all(const char* account) {
    return (condition(account) && ...);
}

template <Condition... condition>
constexpr bool any(const char* account) {
    return (condition(account) || ...);
}

} // namespace velmora
