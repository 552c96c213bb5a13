// The exported bank record: one allocation with its texts behind the fields.
#pragma once

#include <cstdint>

#include "velmora.h"

namespace velmora {

// Copies the texts (null ones stay null) into one block for the caller. Null without memory.
sepa_bank_t* make_bank_record(const char* name, const char* postcode, const char* city, const char* country,
                              const char* bic, std::uint16_t flags);

} // namespace velmora
