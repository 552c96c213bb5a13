// Characters and comparisons that reading XML takes.
#pragma once

#include <cstdint>
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

// Eight bytes at once, the first one lowest. There are as many behind every document.
inline std::uint64_t load_eight(const char* at) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, at, sizeof eight);
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    eight = __builtin_bswap64(eight);
#endif
    return eight;
}

constexpr std::uint64_t in_all_bytes = 0x0101010101010101;
constexpr std::uint64_t high_bits = in_all_bytes << 7;

// Among the high bits, the lowest one set is that of the first byte below `limit`, which is at most 128.
constexpr std::uint64_t bytes_below(std::uint64_t eight, unsigned limit) {
    return (eight - in_all_bytes * limit) & ~eight & high_bits;
}
constexpr std::uint64_t bytes_equal(std::uint64_t eight, char c) {
    return bytes_below(eight ^ in_all_bytes * static_cast<unsigned char>(c), 1);
}
constexpr unsigned count_bytes_equal(std::uint64_t eight, char c) {
    const std::uint64_t differing = eight ^ in_all_bytes * static_cast<unsigned char>(c);
    const std::uint64_t equal = ~(((differing & ~high_bits) + ~high_bits) | differing) & high_bits;
    return static_cast<unsigned>((equal >> 7) * in_all_bytes >> 56);
}

// Compares texts that have eight bytes behind them.
inline bool is_same(const char* one, const char* other, std::size_t length) {
    for (; length > 8; one += 8, other += 8, length -= 8)
        if (load_eight(one) != load_eight(other)) return false;
    return length == 0 || (load_eight(one) ^ load_eight(other)) << (8 - length) * 8 == 0;
}

// Of a document, which ends with its only zero byte.
inline bool begins_with(const char* document, std::string_view text) {
    return std::strncmp(document, text.data(), text.size()) == 0;
}

} // namespace velmora
