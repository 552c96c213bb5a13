// SEPA creditor identifiers (EPC262-08): country, check digits, business code, national identifier.
#pragma once

#include <string_view>

#include "message/rulebook.h"

namespace velmora {

// Null when the identifier is valid, otherwise what is wrong with it. At least 7 characters are required, 8
// under a strict rulebook, which also looks at the structure.
const char* creditor_identifier_fault(std::string_view identifier, const Rulebook& rulebook);

} // namespace velmora
