#include "bank/bic.h"

#include <strings.h>

#include <cctype>
#include <cstdio>
#include <cstring>

#include "bank/pattern.h"

namespace velmora {
namespace {

constexpr char bic_pattern_text[] = "^[A-Z]{6}[A-Z2-9][A-NP-Z0-9]([A-Z0-9]{3})?$";

regex_t bic_pattern;
bool bic_pattern_compiled = false;

bool has_1_to(std::size_t limit, const char* text) {
    return text != nullptr && *text != '\0' && strnlen(text, limit + 1) <= limit;
}

} // namespace

int field_format_check(int format, const char* text) {
    if (!bic_pattern_compiled) {
        if (!pattern_functions_ready() || !compile_pattern(&bic_pattern, bic_pattern_text)) return 0;
        bic_pattern_compiled = true;
    }
    switch (format) {
    case bic_format:
        return text != nullptr && pattern_matches(&bic_pattern, text);
    case text_of_70_bytes:
        return has_1_to(70, text);
    case text_of_16_bytes:
        return has_1_to(16, text);
    case text_of_35_bytes:
        return has_1_to(35, text);
    default:
        return 0;
    }
}

const char* upper_case_bic(const char* text, char* buffer) {
    if (text == nullptr) return nullptr;
    for (std::size_t i = 0; i <= longest_bic; ++i) {
        buffer[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[i])));
        if (text[i] == '\0') return buffer;
    }
    return nullptr;
}

int property_set(const char* key, const char* value, std::span<const PropertyRow> table, OwnedText* slots,
                 const char** error, std::span<char, 256> message_buffer) {
    for (std::size_t i = 0; i < table.size(); ++i) {
        if (strcasecmp(key, table[i].name) != 0) continue;
        if (field_format_check(table[i].format, value) != 1) {
            std::snprintf(message_buffer.data(), message_buffer.size(), "Invalid format for '%s'", key);
            *error = message_buffer.data();
        } else if (!slots[i].assign(value)) {
            *error = "Out of memory";
        }
        return 1;
    }
    return 0;
}

void bic_release_pattern() {
    if (!bic_pattern_compiled) return;
    release_pattern(&bic_pattern);
    bic_pattern_compiled = false;
}

} // namespace velmora
