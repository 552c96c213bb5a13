// The exported bank record: one allocation with its texts behind the fields.
#pragma once

#include "bank/directory.h"
#include "velmora.h"

namespace velmora {

// Copies a bank's texts into one block for the caller. Null without memory.
sepa_bank_t* make_bank_record(BankRecord record);

// The same for a BIC of eleven characters: name, country, BIC and flags.
sepa_bank_t* make_bic_record(BicRecord record, const char* bic);

} // namespace velmora
