// The exported bank record: one allocation with its texts behind the fields.
#pragma once

#include <cstdint>
#include <string_view>

#include "velmora.h"

namespace velmora {

// Copies the texts into one block for the caller; those without data stay null. Null without memory.
sepa_bank_t* make_bank_record(std::string_view name, std::string_view postcode, std::string_view city,
                              std::string_view country, std::string_view bic, std::uint16_t flags);

} // namespace velmora
