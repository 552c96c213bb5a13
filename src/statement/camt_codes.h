// Bank transaction codes.
#pragma once

#include "base/file_memory.h"
#include "statement/camt_fields.h"
#include "velmora.h"

namespace velmora::camt {

// Reads the code of the German banks, "NTRF+166+9249+888": SWIFT transaction code, business transaction code
// (GVC), journal number, text key extension. Other banks' codes leave the booking as it is. False without
// memory.
bool read_german_code(const char* code, RecordPool& records, sepa_stmt_tx_t& booking);

// The German business transaction code of an ISO 20022 one, 0 when it has none or several.
std::uint32_t find_business_code(const char* domain, const char* family, const char* sub_family, bool debit);

// Whether a business transaction code is that of a direct debit, which names creditor and debtor identifiers.
bool is_direct_debit(std::uint32_t business_code);

} // namespace velmora::camt
