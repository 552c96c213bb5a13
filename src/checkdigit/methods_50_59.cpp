#include "checkdigit/methods.h"
#include "checkdigit/shared_variants.h"

namespace velmora {

// Modulus 11, weights 2 to 7, check digit in position 7; ten becomes zero. The three-digit sub-account behind
// it may have been left off.
constexpr Weights weights_50 = weights_from(P6, 2, 3, 4, 5, 6, 7);
static CheckResult with_sub_account_50(const char* account) {
    return check_mod11_ten_is_zero(account, P7, weights_50);
}
static CheckResult without_sub_account_50(const char* account) {
    return starts_with(account, "000") ? method_32(account) : account_invalid;
}
CheckResult method_50(const char* account) {
    return first_not_invalid(account, with_sub_account_50, without_sub_account_50);
}

// Modulus 11 over six and over five digits, modulus 10 with digit sums, modulus 7. Ledger accounts apart.
CheckResult method_51(const char* account) {
    if (digit(account, P3) == 9) return check_ledger_account(account);
    return first_not_invalid(account, method_32, method_33, check_six_digit_stem, check_mod7_five_digits);
}

// The old ESER account number of methods 52 and 53: six digits, the check digit last among them, then the
// account's last six digits without their leading zeros. Its weighted sum modulo 11 is 10.
constexpr int eser_weights[12] = {2, 4, 8, 5, 10, 9, 7, 3, 6, 1, 2, 4}; // from the last digit leftwards
static CheckResult check_eser_number(const int (&first_six)[6], const char* account) {
    int first_position = P5;
    while (first_position <= P10 && digit(account, first_position) == 0)
        ++first_position;
    const int* weight = eser_weights;
    int sum = 0;
    for (int position = P10; position >= first_position; --position)
        sum += digit(account, position) * *weight++;
    for (int i = 5; i >= 0; --i)
        sum += first_six[i] * *weight++;
    return sum % 11 == 10 ? account_valid : account_invalid;
}

// Eight digits X P y1..y6: the old number is the bank code's last four digits, X, P and y. Ten digits with a
// 9 first: method 20.
CheckResult method_52(const char* account, const char* bank_code) {
    if (digit(account, P1) == 9) return method_20(account);
    if (significant_digits(account) != 8) return account_invalid;
    const int first_six[] = {digit(bank_code, P5), digit(bank_code, P6), digit(bank_code, P7),
                             digit(bank_code, P8), digit(account, P3),   digit(account, P4)};
    return check_eser_number(first_six, account);
}

// Nine digits X T P y1..y6: as method 52, with T in place of the bank code's seventh digit.
CheckResult method_53(const char* account, const char* bank_code) {
    if (digit(account, P1) == 9) return method_20(account);
    if (significant_digits(account) != 9) return account_invalid;
    const int first_six[] = {digit(bank_code, P5), digit(bank_code, P6), digit(account, P3),
                             digit(bank_code, P8), digit(account, P2),   digit(account, P4)};
    return check_eser_number(first_six, account);
}

// Modulus 11, weights 2 to 8, then 7 and 8; ten becomes zero.
constexpr Weights weights_55 = weights_from(P9, 2, 3, 4, 5, 6, 7, 8, 7, 8);
CheckResult method_55(const char* account) {
    return check_mod11_ten_is_zero(account, P10, weights_55);
}

// Modulus 11, weights 2 to 7 and 2 to 4; what fills the remainder up to 11 is the check digit. 10 and 11 make
// the account invalid, but with a 9 in position 1 they become 7 and 8.
constexpr Weights weights_56 = weights_from(P9, 2, 3, 4, 5, 6, 7, 2, 3, 4);
CheckResult method_56(const char* account) {
    const int check_digit = 11 - weighted_sum(account, weights_56) % 11;
    if (check_digit < 10) return expect_digit(account, P10, check_digit);
    if (digit(account, P1) != 9) return account_invalid;
    return expect_digit(account, P10, check_digit == 10 ? 7 : 8);
}

// The first two digits select the treatment: x invalid, p plausibility instead of a check digit, n not
// checkable, e check digit at the end, t check digit in the third position.
constexpr char treatments_57[] = "xppppppppp"  // 00 to 09
                                 "pppppppppp"  // 10 to 19
                                 "pppppppppp"  // 20 to 29
                                 "pptttttttt"  // 30 to 39
                                 "nttttttttt"  // 40 to 49
                                 "netttetttt"  // 50 to 59
                                 "tetteeettt"  // 60 to 69
                                 "etteeeeeee"  // 70 to 79
                                 "eeetttttet"  // 80 to 89
                                 "tntteetttn"; // 90 to 99
constexpr Weights end_weights_57 = weights_from(P9, 1, 2, 1, 2, 1, 2, 1, 2, 1);
constexpr Weights third_weights_57 = weights_from(P10, 1, 2, 1, 2, 1, 2, 1, 0, 2, 1);
constexpr char accepted_account_57[] = "0185125434";
constexpr NumberRange plausible_months_57 = {1, 12};   // positions 3 and 4
constexpr NumberRange plausible_serials_57 = {0, 499}; // positions 7 to 9
static CheckResult check_plausibility_57(const char* account) {
    const bool plausible = plausible_months_57.contains(number(account, P3, P4)) &&
                           plausible_serials_57.contains(number(account, P7, P9));
    return plausible || starts_with(account, accepted_account_57) ? account_valid : account_invalid;
}
CheckResult method_57(const char* account) {
    const std::int64_t first_two = number(account, P1, P2);
    switch (first_two >= 0 && first_two <= 99 ? treatments_57[first_two] : 't') {
    case 'x':
        return account_invalid;
    case 'p':
        return check_plausibility_57(account);
    case 'n':
        return account_not_checkable;
    case 'e':
        if (starts_with(account, "777777") || starts_with(account, "888888")) return account_not_checkable;
        return check_crosssum_weighted(account, 10, P10, end_weights_57);
    default:
        return check_crosssum_weighted(account, 10, P3, third_weights_57);
    }
}

// Modulus 11, weights 2 to 6 on positions 9 to 5; no check digit 10.
CheckResult method_58(const char* account) {
    return check_mod11_five_digits(account);
}

// Method 00 from nine digits on; shorter accounts have no check digit.
CheckResult method_59(const char* account) {
    return starts_with(account, "00") ? account_not_checkable : method_00(account);
}

} // namespace velmora
