// Characters and comparisons that reading XML takes.
#pragma once

#include <cstring>
#include <string_view>

namespace velmora {

constexpr char32_t last_character = 0x10FFFF;

// What XML 1.0 permits.
constexpr bool is_xml_character(char32_t character) {
    if (character < 0x20) return character == '\t' || character == '\n' || character == '\r';
    return character < 0xD800 || (character > 0xDFFF && character < 0xFFFE) ||
           (character > 0xFFFF && character <= last_character);
}

// Of a document, which ends with its only zero byte.
inline bool begins_with(const char* document, std::string_view text) {
    return std::strncmp(document, text.data(), text.size()) == 0;
}

} // namespace velmora
