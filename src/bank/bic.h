// The BIC's form and the lengths of text properties.
#pragma once

#include <cstddef>
#include <span>

#include "base/owned_text.h"

namespace velmora {

enum FieldFormat : int {
    bic_format = 0, // ISO 9362, upper case
    text_of_70_bytes = 1,
    text_of_16_bytes = 2,
    text_of_35_bytes = 3,
};

constexpr std::size_t longest_bic = 11;

// 1 when the text fits the format, otherwise 0. Null and empty texts never fit.
int field_format_check(int format, const char* text);

// Whether a text is a BIC, taken as it stands.
inline bool is_bic(const char* text) {
    return field_format_check(bic_format, text) == 1;
}

// Copies a text in upper case; null when it is too long to be a BIC. The buffer holds longest_bic + 1 bytes.
const char* upper_case_bic(const char* text, char* buffer);

// A property that property_set() stores: its name, its format and its place among the slots.
struct PropertyRow {
    char name[12];
    int format;
};

// Stores a property after its format check. 0: the key is none of the table's. 1: it is; when the value was
// refused or could not be copied *error points at the reason (in message_buffer if it quotes the key),
// otherwise *error is not touched.
int property_set(const char* key, const char* value, std::span<const PropertyRow> table, OwnedText* slots,
                 const char** error, std::span<char, 256> message_buffer);

void bic_release_pattern();

} // namespace velmora
