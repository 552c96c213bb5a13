#include <cstring>

#include "bank/iban_rules_lists.h"
#include "bank/iban_rules_routines.h"
#include "checkdigit/arithmetic.h"
#include "velmora.h"

namespace velmora {

// --- Steps ---

void set_account(ConversionContext& context, const char* account) {
    std::memcpy(context.account, account, account_length);
}

void set_bank_code(ConversionContext& context, const char* bank_code) {
    std::memcpy(context.bank_code, bank_code, bank_code_length);
}

int refuse(ConversionContext& context, ConversionStatus status) {
    context.status = status;
    return -1;
}

bool replace_bank_code(ConversionContext& context, const IbanRule& rule) {
    const bool applies = rule.replaced_bank_code[0] == '\0' ||
                         std::memcmp(context.bank_code, rule.replaced_bank_code, bank_code_length) == 0;
    if (applies) set_bank_code(context, rule.bank_code);
    return applies;
}

bool replace_listed_account(ConversionContext& context, const IbanRule& rule) {
    const char* new_account = find_replaced_account(rule.number, context.account);
    if (new_account == nullptr) return false;
    set_account(context, new_account);
    return true;
}

bool replace_listed_bank_account(ConversionContext& context, const IbanRule& rule) {
    const auto* entry = find_replaced_bank_account(rule.number, context.bank_code, context.account);
    if (entry == nullptr) return false;
    set_bank_code(context, entry->new_bank_code);
    set_account(context, entry->new_account);
    return true;
}

bool write_listed_iban(char* iban, ConversionContext& context, const IbanRule& rule) {
    const char* listed = find_listed_iban(rule.number, context.account);
    if (listed == nullptr) return false;
    std::memcpy(iban, listed, german_iban_length);
    set_account(context, listed + german_iban_length - account_length);
    context.account_result = account_valid;
    return true;
}

void check_account(ConversionContext& context) {
    context.account_result = static_cast<std::int8_t>(sepa_account_check(context.account, context.method));
}

void check_account_valid_or_not(ConversionContext& context) {
    check_account(context);
    if (context.account_result != account_valid) context.account_result = account_not_checkable;
}

// --- Routines of several rules ---

int standard_iban(char* iban, ConversionContext& context, const IbanRule&) {
    std::memcpy(iban, "DE00", 4);
    std::memcpy(iban + 4, context.bank_code, bank_code_length);
    std::memcpy(iban + 4 + bank_code_length, context.account, account_length);
    return 1;
}

int no_iban(char*, ConversionContext& context, const IbanRule&) {
    return refuse(context, no_ibans_for_bank_code);
}

int own_bank_code(char* iban, ConversionContext& context, const IbanRule& rule) {
    replace_bank_code(context, rule);
    return standard_iban(iban, context, rule);
}

int listed_accounts(char* iban, ConversionContext& context, const IbanRule& rule) {
    if (replace_listed_account(context, rule)) check_account(context);
    return standard_iban(iban, context, rule);
}

int listed_accounts_valid_or_not(char* iban, ConversionContext& context, const IbanRule& rule) {
    if (replace_listed_account(context, rule)) check_account_valid_or_not(context);
    return standard_iban(iban, context, rule);
}

int accounts_listed_as_valid(char* iban, ConversionContext& context, const IbanRule& rule) {
    if (is_listed_as_valid(rule.number, context.account)) context.account_result = account_valid;
    return standard_iban(iban, context, rule);
}

// Ten-digit accounts stay with the bank code they once came from; between the ranges nothing changes.
int account_ranges(char* iban, ConversionContext& context, const IbanRule& rule) {
    if (replace_listed_account(context, rule)) check_account(context);
    if (context.account[P1] != '0')
        if (const char* bank_code = find_bank_code_of_range(number(context.account)))
            set_bank_code(context, bank_code);
    return standard_iban(iban, context, rule);
}

int account_ranges_but_one(char* iban, ConversionContext& context, const IbanRule& rule) {
    constexpr NumberRange refused = {800'000'000, 899'999'999};
    if (refused.contains(number(context.account))) return refuse(context, no_iban_for_account_range);
    return account_ranges(iban, context, rule);
}

} // namespace velmora
