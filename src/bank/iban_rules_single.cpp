// The IBAN rules with steps of their own, in the order of their numbers.
#include <algorithm>
#include <cstring>

#include "bank/iban_rules_lists.h"
#include "bank/iban_rules_routines.h"
#include "checkdigit/arithmetic.h"
#include "velmora.h"

namespace velmora {
namespace {

constexpr std::uint8_t method_06 = 0x06;
constexpr std::uint8_t method_13 = 0x13;
constexpr std::uint8_t method_63 = 0x63;
constexpr std::uint8_t method_76 = 0x76;
constexpr std::uint8_t method_c7 = 0xC7;

constexpr NumberRange six_and_seven_digits = {100'000, 9'999'999};

bool begins_with(const char* account, const char* digits) {
    return std::strncmp(account, digits, std::strlen(digits)) == 0;
}

// An account written without its two-digit sub-account "00", completed by it.
struct ShiftedAccount {
    char digits[account_length + 1];

    explicit ShiftedAccount(const char* account) {
        std::memcpy(digits, account + 2, account_length - 2);
        std::memcpy(digits + account_length - 2, "00", 3);
    }
};

// The check digit of methods 13 and 63 for an account that has its sub-account: the stem in positions 2 to 7,
// the check digit in position 8. Unlike these methods it never tries the shifted form.
bool stem_passes(const char* account) {
    return check_crosssum_weighted(account, 10, P8, weights_from(P7, 2, 1, 2, 1, 2, 1)) == account_valid;
}

} // namespace

int rule_2(char* iban, ConversionContext& context, const IbanRule& rule) {
    const char* account = context.account;
    if (account[P8] == '6' || (account[P8] == '8' && account[P9] == '6')) return -1;
    return standard_iban(iban, context, rule);
}

int rule_3(char* iban, ConversionContext& context, const IbanRule& rule) {
    return begins_with(context.account, "6161604670") ? -1 : standard_iban(iban, context, rule);
}

// Takes the form of the account that passes; of two that pass, the shifted one for six- and seven-digit
// accounts.
static int rule_5_method_13(char* iban, ConversionContext& context, const IbanRule& rule) {
    const ShiftedAccount shifted(context.account);
    const bool passes = stem_passes(context.account);
    const bool passes_shifted = begins_with(context.account, "00") && stem_passes(shifted.digits);
    if (!passes && !passes_shifted) return -1;
    if (!passes || (passes_shifted && six_and_seven_digits.contains(number(context.account))))
        set_account(context, shifted.digits);
    return standard_iban(iban, context, rule);
}

// Method 76 accepts an account without its sub-account with a result of its own. Those of up to six digits it
// refuses before it looks, so they are completed and checked again.
static int rule_5_method_76(char* iban, ConversionContext& context, const IbanRule& rule) {
    const ShiftedAccount shifted(context.account);
    const bool may_be_completed = begins_with(context.account, "00");
    if (may_be_completed && context.account_result == account_invalid &&
        sepa_account_check(shifted.digits, context.method) == account_valid) {
        set_account(context, shifted.digits);
        context.account_result = account_valid;
    } else if (may_be_completed && context.account_result == account_valid_shifted) {
        set_account(context, shifted.digits);
    }
    return standard_iban(iban, context, rule);
}

int rule_5(char* iban, ConversionContext& context, const IbanRule& rule) {
    constexpr NumberRange refused = {998'000'000, 999'499'999};
    if (begins_with(context.bank_code, "50040033")) return refuse(context, no_ibans_for_bank_code);
    // Deliberate: the first of the ten digits does not count, as in the ranges that the bank publishes.
    if (refused.contains(number(context.account, P2, P10)) && is_refusing_bank_code(context.bank_code))
        return refuse(context, no_iban_for_account_range);
    if (replace_listed_bank_account(context, rule)) {
        check_account(context);
        return standard_iban(iban, context, rule);
    }
    switch (context.method) {
    case method_13:
        return rule_5_method_13(iban, context, rule);
    case method_76:
        return rule_5_method_76(iban, context, rule);
    default:
        return standard_iban(iban, context, rule);
    }
}

int rule_9(char* iban, ConversionContext& context, const IbanRule& rule) {
    if (begins_with(context.account, "1116")) std::memcpy(context.account, "3047", 4);
    return own_bank_code(iban, context, rule);
}

// Only the bank code that stays has listed accounts; under the other one they keep their number.
int rule_10(char* iban, ConversionContext& context, const IbanRule& rule) {
    if (replace_listed_bank_account(context, rule)) context.account_result = account_valid;
    return own_bank_code(iban, context, rule);
}

int rule_11(char* iban, ConversionContext& context, const IbanRule& rule) {
    if (replace_listed_account(context, rule)) context.account_result = account_valid;
    return standard_iban(iban, context, rule);
}

int rule_20(char* iban, ConversionContext& context, const IbanRule& rule) {
    if (begins_with(context.bank_code, "10020000")) return refuse(context, no_ibans_for_bank_code);
    if (replace_listed_bank_account(context, rule)) {
        check_account(context);
        return standard_iban(iban, context, rule);
    }
    if (context.method != method_63 && context.method != method_c7) return standard_iban(iban, context, rule);

    // Five to seven digits lack the sub-account, seven to nine have it; the first reading that passes is
    // taken.
    const ShiftedAccount shifted(context.account);
    const int digits = significant_digits(context.account);
    if (digits >= 5 && digits <= 7 && stem_passes(shifted.digits))
        set_account(context, shifted.digits);
    else if (digits < 7 || digits > 9 || !stem_passes(context.account))
        return -1;
    return standard_iban(iban, context, rule);
}

// Five and eight digits are no complete accounts of this bank.
int rule_21(char* iban, ConversionContext& context, const IbanRule& rule) {
    const int digits = significant_digits(context.account);
    if (digits <= 5 || digits == 8) return -1;
    return own_bank_code(iban, context, rule);
}

// The account had a zero too many in position 4.
int rule_29(char* iban, ConversionContext& context, const IbanRule& rule) {
    char* account = context.account;
    if (account[P1] != '0' && account[P4] == '0') std::rotate(account, account + P4, account + P5);
    return standard_iban(iban, context, rule);
}

int rule_31(char* iban, ConversionContext& context, const IbanRule& rule) {
    return context.account[P1] == '0' ? -1 : account_ranges(iban, context, rule);
}

int rule_36(char* iban, ConversionContext& context, const IbanRule& rule) {
    constexpr NumberRange without_sub_account = {100'000, 899'999};
    const std::int64_t value = number(context.account);
    if (is_in_refused_range(value)) return refuse(context, no_iban_for_account_range);
    if (without_sub_account.contains(value)) {
        std::memmove(context.account, context.account + 3, account_length - 3);
        std::memcpy(context.account + account_length - 3, "000", 3);
    }
    return own_bank_code(iban, context, rule);
}

int rule_41(char* iban, ConversionContext&, const IbanRule&) {
    std::memcpy(iban, "DE96500604000000011404", german_iban_length);
    return 1;
}

// Three forms of account numbers have IBANs; D is a digit but 0, n any digit.
int rule_42(char* iban, ConversionContext& context, const IbanRule& rule) {
    constexpr NumberRange ranges[] = {{50'462'000, 50'463'999}, {50'469'000, 50'469'999}};
    const char* account = context.account;
    const std::int64_t value = number(account);
    const bool in_range =
        std::ranges::any_of(ranges, [&](const auto& range) { return range.contains(value); });
    // Dnn0Dnnn
    const bool eight_digits = significant_digits(account) == 8 && account[P6] == '0' && account[P7] != '0';
    // Dnn44nnnnn, the last five above 0
    const bool ten_digits =
        account[P1] != '0' && account[P4] == '4' && account[P5] == '4' && value % 100'000 != 0;
    return in_range || eight_digits || ten_digits ? standard_iban(iban, context, rule) : -1;
}

int rule_43(char* iban, ConversionContext& context, const IbanRule& rule) {
    if (replace_bank_code(context, rule)) {
        context.method = method_06;
        check_account(context);
    }
    return standard_iban(iban, context, rule);
}

// Eight digits lack the sub-account.
int rule_47(char* iban, ConversionContext& context, const IbanRule& rule) {
    if (significant_digits(context.account) == 8)
        set_account(context, ShiftedAccount(context.account).digits);
    return standard_iban(iban, context, rule);
}

int rule_49(char* iban, ConversionContext& context, const IbanRule& rule) {
    char* account = context.account;
    if (account[P5] == '9') {
        std::rotate(account, account + P5, account + account_length);
        context.account_result = account_not_checkable; // such a number has no check digit
    } else if (replace_listed_account(context, rule)) {
        check_account_valid_or_not(context);
    }
    return standard_iban(iban, context, rule);
}

int rule_52(char* iban, ConversionContext& context, const IbanRule& rule) {
    return replace_listed_bank_account(context, rule) ? standard_iban(iban, context, rule)
                                                      : no_iban(iban, context, rule);
}

int rule_53(char* iban, ConversionContext& context, const IbanRule& rule) {
    replace_listed_bank_account(context, rule);
    return standard_iban(iban, context, rule);
}

int rule_54(char* iban, ConversionContext& context, const IbanRule& rule) {
    return write_listed_iban(iban, context, rule) ? 1 : listed_accounts_valid_or_not(iban, context, rule);
}

int rule_56(char* iban, ConversionContext& context, const IbanRule& rule) {
    if (write_listed_iban(iban, context, rule)) return 1;
    return context.account[P1] == '0' ? -1 : standard_iban(iban, context, rule);
}

} // namespace velmora
