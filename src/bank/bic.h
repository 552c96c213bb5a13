// The form of a BIC (ISO 9362).
#pragma once

#include <cstddef>

namespace velmora {

constexpr std::size_t head_office_bic_length = 8; // without a branch
constexpr std::size_t bic_length = 11;

// Whether a text is a BIC, taken as it stands. Null is none.
bool is_bic(const char* text);

// The place of the first character that a BIC cannot have there, or the text's length; a text of at most
// bic_length characters.
std::size_t find_wrong_bic_character(const char* text);

// Copies a text in upper case; null when it is too long to be a BIC. The buffer holds bic_length + 1 bytes.
const char* upper_case_bic(const char* text, char* buffer);

} // namespace velmora
