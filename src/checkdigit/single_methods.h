// The computations that one method has for itself; methods.h says whose they are.
#pragma once

#include <string_view>

#include "checkdigit/method_rows.h"

namespace velmora {

// Digit sums of the sum are taken until one digit is left; that is taken from 10.
inline CheckResult repeated_digit_sum(const char* account) {
    int sum = crosssum_weighted_sum(account, weights_00);
    while (sum > 9)
        sum = cross_sum(sum);
    return expect_digit(account, P10, complement(sum, 10));
}

// Weights 1, 2, 3 from `position` rightwards; each product plus its weight is taken modulo 11.
constexpr int sum_of_raised_products(const char* account, int position) {
    int sum = 0;
    for (int weight = 1; position < P10; ++position, weight = weight % 3 + 1)
        sum += (digit(account, position) * weight + weight) % 11;
    return sum;
}

// Such a sum from the first digit other than 0; its units digit is the check digit. A first digit 3 to 6 is
// passed over, a first digit 9 together with the two digits behind it.
inline CheckResult raised_products(const char* account) {
    int position = has<P1, 3, 4, 5, 6>(account) ? P2 : has<P1, 9>(account) ? P4 : P1;
    while (position < P10 && digit(account, position) == 0)
        ++position;
    return expect_digit(account, P10, sum_of_raised_products(account, position) % 10);
}

// Iterated transformation (M10H): every digit is replaced through one of four rows, which take turns from
// position 9 leftwards; modulus 10 over the new digits.
inline CheckResult iterated_transformation(const char* account) {
    constexpr int rows[4][10] = {
        {0, 1, 5, 9, 3, 7, 4, 8, 2, 6},
        {0, 1, 7, 6, 9, 8, 3, 2, 5, 4},
        {0, 1, 8, 4, 6, 2, 9, 5, 7, 3},
        {0, 1, 2, 3, 4, 5, 6, 7, 8, 9},
    };
    int sum = 0;
    for (int position = P9; position >= P1; --position) {
        const int replaced = digit(account, position);
        if (replaced < 0 || replaced > 9) return account_invalid;
        sum += rows[(P9 - position) % 4][replaced];
    }
    return expect_digit(account, P10, complement(sum % 10, 10));
}

// The old ESER account number: six digits, the check digit last among them, then the account's last six
// digits without their leading zeros. Its weighted sum modulo 11 is 10.
inline CheckResult eser_number(const int (&first_six)[6], const char* account) {
    constexpr int weights[12] = {2, 4, 8, 5, 10, 9, 7, 3, 6, 1, 2, 4}; // from the last digit leftwards
    int first_position = P5;
    while (first_position <= P10 && digit(account, first_position) == 0)
        ++first_position;
    const int* weight = weights;
    int sum = 0;
    for (int position = P10; position >= first_position; --position)
        sum += digit(account, position) * *weight++;
    for (int i = 5; i >= 0; --i)
        sum += first_six[i] * *weight++;
    return sum % 11 == 10 ? account_valid : account_invalid;
}

// What fills the remainder up to 11 is the check digit. 10 and 11 make the account invalid, but with a 9 in
// position 1 they become 7 and 8.
inline CheckResult mod11_never_zero(const char* account) {
    const int check_digit = 11 - weighted_sum(account, weights_from(P9, 2, 3, 4, 5, 6, 7, 2, 3, 4)) % 11;
    if (check_digit < 10) return expect_digit(account, P10, check_digit);
    return has<P1, 9>(account) ? expect_digit(account, P10, check_digit == 10 ? 7 : 8) : account_invalid;
}

// The first two digits select the treatment: x invalid, p plausibility instead of a check digit, n not
// checkable, e check digit at the end, t check digit in the third position.
inline CheckResult by_first_two_digits(const char* account) {
    constexpr char treatments[] = "xppppppppp"  // 00 to 09
                                  "pppppppppp"  // 10 to 19
                                  "pppppppppp"  // 20 to 29
                                  "pptttttttt"  // 30 to 39
                                  "nttttttttt"  // 40 to 49
                                  "netttetttt"  // 50 to 59
                                  "tetteeettt"  // 60 to 69
                                  "etteeeeeee"  // 70 to 79
                                  "eeetttttet"  // 80 to 89
                                  "tntteetttn"; // 90 to 99
    constexpr Condition has_month = digits_in<P3, P4, NumberRange{1, 12}>;
    constexpr Condition has_low_serial = digits_in<P7, P9, NumberRange{0, 499}>;
    constexpr Condition is_accepted_account = begins<0, 1, 8, 5, 1, 2, 5, 4, 3, 4>;
    constexpr Condition is_unchecked = any<begins<7, 7, 7, 7, 7, 7>, begins<8, 8, 8, 8, 8, 8>>;

    const std::int64_t first_two = number(account, P1, P2);
    switch (first_two >= 0 && first_two <= 99 ? treatments[first_two] : 't') {
    case 'x':
        return account_invalid;
    case 'p':
        return only_if<any<all<has_month, has_low_serial>, is_accepted_account>, valid>(account);
    case 'n':
        return account_not_checkable;
    case 'e':
        return unchecked_if<is_unchecked, digit_sums<10, P10, weights_from(P9, 1, 2, 1, 2, 1, 2, 1, 2, 1)>>(
            account);
    default:
        return digit_sums<10, P3, weights_from(P10, 1, 2, 1, 2, 1, 2, 1, 0, 2, 1)>(account);
    }
}

// Remainder 1 gives check digit 0, remainder 0 gives 1.
inline CheckResult mod11_zero_and_one_exchanged(const char* account) {
    const int remainder = weighted_sum(account, weights_from(P9, 2, 3, 4, 5, 6, 0, 0, 7)) % 11;
    return expect_digit(account, P10, remainder <= 1 && remainder >= 0 ? 1 - remainder : 11 - remainder);
}

// The sum of method 00 filled up to the next number that ends in 5.
inline CheckResult half_decade(const char* account) {
    const int sum = crosssum_weighted_sum(account, weights_00);
    return expect_digit(account, P10, (15 - sum % 10) % 10);
}

// The remainder itself is the check digit, in position 8; the same two places further right when the
// sub-account was left off. Remainder 10 is not checkable in either reading. The first digit names the kind
// of account. Deliberate: three zeros in positions 2 to 4 are invalid in both readings, so a stem alone is.
inline CheckResult stem_or_shifted_stem(const char* account) {
    if (!has<P1, 0, 4, 6, 7, 8, 9>(account)) return account_invalid;
    if (std::string_view(account + P2, 3) == "000") return account_invalid;
    const int remainder = weighted_sum(account, weights_from(P7, 2, 3, 4, 5, 6, 7)) % 11;
    if (remainder == 10) return account_not_checkable;
    if (digit(account, P8) == remainder) return account_valid;
    const int shifted_remainder = weighted_sum(account, weights_from(P9, 2, 3, 4, 5, 6, 7)) % 11;
    if (shifted_remainder == 10) return account_not_checkable;
    return digit(account, P10) == shifted_remainder ? account_valid_shifted : account_invalid;
}

// Digits 4 to 9 are added and subtracted by rules of their parity, the sum modulo 5 selects the check digit
// from one of two tables.
inline CheckResult alternating_sum(const char* account) {
    constexpr int replaced_digits[10] = {5, 6, 2, 3, 4, 10, 1, 7, 8, 9};
    constexpr int check_digits[2][5] = {{0, 4, 3, 2, 6}, {7, 1, 5, 9, 8}};
    int position = P4;
    while (position < P10 && digit(account, position) == 0)
        ++position;
    int column = (position + 1) % 2, table = 0, sum = 0;
    for (; position < P10; ++position, column = 1 - column) {
        const int value = digit(account, position);
        const int replaced = value >= 0 && value <= 9 ? replaced_digits[value] : value;
        const int counted = replaced > 5 && column == 0 ? 12 - replaced : replaced;
        sum += column == table ? counted : -counted;
        if (replaced > 5) table = 1 - table;
    }
    const int check_digit = check_digits[table][(sum % 5 + 5) % 5];
    const CheckResult result = expect_digit(account, P10, check_digit);
    if (result == account_invalid && has<P4, 0>(account))
        return expect_digit(account, P10, (check_digit + 5) % 10);
    return result;
}

// A check digit 5 higher is right, too, without its tens.
constexpr CheckResult expect_digit_or_five_more(const char* account, int check_digit) {
    const int last = digit(account, P10);
    return last == check_digit || last == (check_digit + 5) % 10 ? account_valid : account_invalid;
}

inline CheckResult raised_products_of_eight(const char* account) {
    return expect_digit_or_five_more(account, sum_of_raised_products(account, P3) % 10);
}

inline CheckResult remainder_of_seven(const char* account) {
    return expect_digit_or_five_more(account, weighted_sum(account, weights_from(P9, 1, 2, 3, 4, 5, 6)) % 11);
}

// The units digit of method 00's sum is the check digit.
inline CheckResult units_digit(const char* account) {
    return expect_digit(account, P10, crosssum_weighted_sum(account, weights_00) % 10);
}

} // namespace velmora
