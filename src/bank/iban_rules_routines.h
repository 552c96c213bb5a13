// What stands behind the rule table: its rows, the routines and the steps they are made of.
#pragma once

#include <cstdint>

#include "bank/iban_rules.h"

namespace velmora {

struct IbanRule;

// Writes the IBAN (22 characters, check digits "00") and returns 1, or returns -1.
using IbanRuleRoutine = int(char* iban, ConversionContext& context, const IbanRule& rule);

// One row of the rule table.
struct IbanRule {
    std::uint8_t number;
    IbanRuleRoutine* routine;
    char bank_code[bank_code_length + 1] = {};          // what the rule puts in place; empty for most rules
    char replaced_bank_code[bank_code_length + 1] = {}; // the only one that it replaces; empty for all
};

// --- Steps (iban_rules_shared.cpp) ---

void set_account(ConversionContext& context, const char* account);
void set_bank_code(ConversionContext& context, const char* bank_code);

int refuse(ConversionContext& context, ConversionStatus status);

// Replaces the bank code as the rule's row says; false when the row names another one.
bool replace_bank_code(ConversionContext& context, const IbanRule& rule);

// Replaces an account that is on the rule's list; false when it is not.
bool replace_listed_account(ConversionContext& context, const IbanRule& rule);

// The same for lists by bank code and account, which may replace both.
bool replace_listed_bank_account(ConversionContext& context, const IbanRule& rule);

// Writes the IBAN that the rule lists for an account and takes the account in it; false when there is none.
bool write_listed_iban(char* iban, ConversionContext& context, const IbanRule& rule);

// Checks an account that a rule has put in place.
void check_account(ConversionContext& context);

// The same for rules that tell valid accounts from all others and no more.
void check_account_valid_or_not(ConversionContext& context);

// --- Routines of several rules (iban_rules_shared.cpp) ---

IbanRuleRoutine standard_iban;                // bank code and account as they stand
IbanRuleRoutine no_iban;                      // refused, the bank code has no IBANs
IbanRuleRoutine own_bank_code;                // the bank code of the row
IbanRuleRoutine listed_accounts;              // listed accounts are replaced
IbanRuleRoutine listed_accounts_valid_or_not; // the same with the other check
IbanRuleRoutine accounts_listed_as_valid;     // listed accounts count as valid
IbanRuleRoutine account_ranges;               // listed accounts are replaced, ranges give the bank code
IbanRuleRoutine account_ranges_but_one;       // the same; 800,000,000 to 899,999,999 get no IBAN

// --- Rules with steps of their own (iban_rules_single.cpp) ---

IbanRuleRoutine rule_2, rule_3, rule_5, rule_9, rule_10, rule_11, rule_20, rule_21, rule_29, rule_31, rule_36,
    rule_41, rule_42, rule_43, rule_47, rule_49, rule_52, rule_53, rule_54, rule_56;

} // namespace velmora
