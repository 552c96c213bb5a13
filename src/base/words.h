// Texts eight characters at a time.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace velmora {

constexpr std::uint64_t repeated(unsigned char byte) {
    return 0x0101'0101'0101'0101U * byte;
}

// Eight characters as one number, the first in the lowest byte.
inline std::uint64_t load_word(const char* text) {
    std::uint64_t word;
    std::memcpy(&word, text, sizeof word);
    if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
    return word;
}

// The last of up to eight characters in the highest byte, and `fill` in place of those before the first.
inline std::uint64_t load_right_aligned(std::string_view text, char fill) {
    std::uint64_t word = repeated(static_cast<unsigned char>(fill));
    if (text.size() == 8) return load_word(text.data());
    for (const char c : text) // each moves the others down
        word = word >> 8 | std::uint64_t{static_cast<unsigned char>(c)} << 56;
    return word;
}

// The places of a word's characters from `first` to `last`, both ASCII: bit 0 for the first place.
constexpr std::uint64_t places_between(std::uint64_t word, char first, char last) {
    // The highest bit of a byte tells what came out; the others have room for the sum.
    const std::uint64_t low = word & repeated(0x7F);
    const std::uint64_t from_first = low + repeated(static_cast<unsigned char>(0x80 - first));
    const std::uint64_t beyond_last = low + repeated(static_cast<unsigned char>(0x7F - last));
    const std::uint64_t inside = from_first & ~beyond_last & ~word & repeated(0x80);
    return (inside >> 7) * 0x0102'0408'1020'4080 >> 56;
}

// The number that eight digits write.
constexpr std::uint64_t value_of_digits(std::uint64_t word) {
    word -= repeated('0');
    word = word * 10 + (word >> 8); // pairs, in every other byte
    return (((word & 0x0000'00FF'0000'00FF) * (100 + (1'000'000ULL << 32))) +
            (((word >> 16) & 0x0000'00FF'0000'00FF) * (1 + (10'000ULL << 32)))) >>
           32;
}

} // namespace velmora
