// Creditor references (ISO 11649): "RF", two check digits, 1 to 21 letters or digits.
#pragma once

#include <cstddef>
#include <string_view>

namespace velmora {

constexpr std::size_t longest_reference = 25;

enum class ReferenceFault { none, form, check_digits };

// Of a reference in its compact form: capitals, no spaces.
ReferenceFault reference_fault(std::string_view reference);

// Copies a text without spaces and in capitals; returns its length, or `room` + 1 when it is longer than
// that.
std::size_t compact(const char* text, char* out, std::size_t room);

} // namespace velmora
