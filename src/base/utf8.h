// UTF-8 as RFC 3629 has it: no overlong forms, no surrogates, nothing above U+10FFFF.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace velmora {

constexpr char32_t no_character = 0xFFFFFFFF;

// Reads the character at `at` and moves behind it. no_character, and no move, at the end and at what is not
// UTF-8.
constexpr char32_t next_character(const char*& at, const char* end) {
    if (at == end) return no_character;
    const auto lead = static_cast<unsigned char>(*at);
    if (lead < 0x80) {
        ++at;
        return lead;
    }
    const int length = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
    if (length == 0 || end - at < length) return no_character;
    char32_t value = lead & (0x7Fu >> length);
    for (int i = 1; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(at[i]);
        if ((byte & 0xC0) != 0x80) return no_character;
        value = value << 6 | (byte & 0x3Fu);
    }
    const bool is_overlong = (length == 3 && value < 0x800) || (length == 4 && value < 0x10000);
    if (is_overlong || (value >= 0xD800 && value <= 0xDFFF) || value > 0x10FFFF) return no_character;
    at += length;
    return value;
}

// Writes a character, at most four bytes; returns their number.
constexpr std::size_t put_character(char32_t character, char* out) {
    const auto put = [&](std::size_t at, char32_t bits) { out[at] = static_cast<char>(bits); };
    if (character < 0x80) return put(0, character), 1;
    const std::size_t length = character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
    for (std::size_t i = length - 1; i > 0; --i, character >>= 6)
        put(i, 0x80 | (character & 0x3F));
    put(0, (0xF00 >> length & 0xFF) | character);
    return length;
}

// The first byte that is not UTF-8, or null.
inline const char* find_invalid_utf8(std::string_view text) {
    constexpr std::uint64_t high_bits = 0x8080808080808080;
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end) {
        std::uint64_t eight = 0;
        if (end - at >= 8 && (std::memcpy(&eight, at, 8), (eight & high_bits) == 0))
            at += 8;
        else if (next_character(at, end) == no_character)
            return at;
    }
    return nullptr;
}

} // namespace velmora
