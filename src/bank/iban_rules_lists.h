// The lists of the IBAN rules. Accounts (ten characters) and bank codes (eight) are found by their exact
// text.
#pragma once

#include <cstdint>

namespace velmora {

// The account that a rule puts in place of another, or null.
const char* find_replaced_account(unsigned rule, const char* account);

struct BankAccountReplacement {
    std::uint8_t rule;
    char bank_code[8 + 1];
    char account[10 + 1];
    char new_bank_code[8 + 1];
    char new_account[10 + 1];
};

// What a rule puts in place of an account under one bank code, or null.
const BankAccountReplacement* find_replaced_bank_account(unsigned rule, const char* bank_code,
                                                         const char* account);

// The complete IBAN that a rule has for an account, or null.
const char* find_listed_iban(unsigned rule, const char* account);

// Whether a rule declares an account valid whatever its check digit says.
bool is_listed_as_valid(unsigned rule, const char* account);

// The bank code that keeps a range of ten-digit accounts (rules 31 to 35), or null between the ranges.
const char* find_bank_code_of_range(std::int64_t account);

// Rule 5: whether the bank code is among those that refuse a certain range of accounts.
bool is_refusing_bank_code(const char* bank_code);

// Rule 36: whether the account lies in a range without IBANs.
bool is_in_refused_range(std::int64_t account);

} // namespace velmora
