// From a German bank code and account number to an IBAN.
#pragma once

#include <cstdint>
#include <string_view>

#include "bank/directory.h"

namespace velmora {

// What finds a bank; find_german_bank() but in tests.
using BankLookup = BankRecord(std::string_view bank_code);

// sepa_iban_convert() over any directory.
int convert_account(const char* country, const char* account, const char* bank_code, char* iban,
                    std::uint8_t* status, BankLookup* find_bank);

} // namespace velmora
