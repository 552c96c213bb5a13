// From a German bank code and account number to an IBAN.
#pragma once

#include <string_view>

#include "bank/directory.h"
#include "bank/iban_rules.h"

namespace velmora {

// What finds a bank; find_german_bank() but in tests.
using BankLookup = BankRecord(std::string_view bank_code);

// What became of an account.
struct Conversion {
    int result;
    ConversionStatus status;
    int account_result; // of the account check, once the bank's rule had its say
};

// sepa_iban_convert2() over any directory. `iban` may be null.
Conversion convert_account(const char* country, const char* account, const char* bank_code, char* iban,
                           BankLookup* find_bank);

} // namespace velmora
