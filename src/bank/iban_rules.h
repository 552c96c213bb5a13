// The Deutsche Bundesbank's IBAN rules: what a bank does with an account number before it becomes an IBAN.
#pragma once

#include <cstddef>
#include <cstdint>

#include "checkdigit/arithmetic.h"

namespace velmora {

constexpr std::size_t german_iban_length = 22;
constexpr std::size_t iban_buffer_size = 35;

// How an IBAN came about, or why there is none; the numbers leave the library.
enum ConversionStatus : std::uint8_t {
    converted_as_given = 0,
    account_replaced = 1,
    bank_code_unknown = 10,
    no_ibans_for_bank_code = 12,
    successor_used = 13,
    bank_code_replaced = 15,
    no_iban_for_account_range = 50,
};

// What the rules work on, and what they have made of it so far.
struct ConversionContext {
    char account[account_length + 1]; // filled up with zeros on the left
    char bank_code[bank_code_length + 1];
    std::uint8_t method;        // the bank's check-digit method
    std::int8_t account_result; // of the account check; 1 also for accounts that a rule declares valid
    ConversionStatus status;    // set only by who knows better than a comparison
};

// Runs a rule: 1 when the IBAN is written, its check digits still "00"; -1 when the account gets none; 0 for
// a number that is no rule.
//
// Deliberate: a wrong check digit refuses nothing but in rules 5 and 20, and the account is not tested for
// digits; IBANs of accounts that banks once gave out without a valid check digit rely on it.
int apply_iban_rule(unsigned rule, char* iban, ConversionContext& context);

} // namespace velmora
