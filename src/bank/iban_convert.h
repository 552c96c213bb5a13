// From a German bank code and account number to an IBAN.
#pragma once

#include <cstdint>

#include "bank/directory.h"

namespace velmora {

// What finds a bank; directory_lookup() but in tests.
using BankLookup = int(const char* country, const char* bank_id, DirectoryEntry* out);

// sepa_iban_convert() over any directory.
int convert_account(const char* country, const char* account, const char* bank_code, char* iban,
                    std::uint8_t* status, BankLookup* find_bank);

} // namespace velmora
