// The check digits of SEPA creditor identifiers.
#pragma once

#include <string_view>

namespace velmora {

// Null when the identifier is valid, otherwise what is wrong with it. At least 7 characters are required.
const char* creditor_identifier_fault(std::string_view identifier);

} // namespace velmora
