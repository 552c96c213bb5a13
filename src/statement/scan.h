// Small readers for zero-terminated statement text. A zero byte inside a file ends its text.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "base/ascii.h"

namespace velmora {

inline int two_digits(const char* digits) {
    return (digits[0] - '0') * 10 + (digits[1] - '0');
}

// True when all of the first `count` characters, at most eight, are digits. Reads eight bytes.
inline bool are_digits(const char* text, int count) {
    std::uint64_t word;
    std::memcpy(&word, text, sizeof word);
    const std::uint64_t used = ~std::uint64_t{0} >> (64 - 8 * count);
    constexpr std::uint64_t high = 0xF0F0F0F0F0F0F0F0, digits = 0x3030303030303030, six = 0x0606060606060606;
    return (((word ^ digits) | ((word + six) ^ digits)) & high & used) == 0;
}

// The next CR LF, or the text's end.
inline char* find_line_end(char* from) {
    char* cr = strchrnul(from, '\r');
    while (*cr != '\0' && cr[1] != '\n')
        cr = strchrnul(cr + 1, '\r');
    return cr;
}

// Calls `visit` with the address of each character that is one of the two, many compared at once: up to 15
// bytes behind the end are read.
template <typename Visit>
void visit_characters(char* begin, char* end, char one, char other, Visit visit) {
#ifdef __SSE2__
    for (; begin < end; begin += 16) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(begin));
        const __m128i equal = _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8(one)),
                                           _mm_cmpeq_epi8(block, _mm_set1_epi8(other)));
        auto found = static_cast<unsigned>(_mm_movemask_epi8(equal));
        if (end - begin < 16) found &= (1U << (end - begin)) - 1;
        for (; found != 0; found &= found - 1)
            visit(begin + std::countr_zero(found));
    }
#else
    for (; begin < end; ++begin)
        if (*begin == one || *begin == other) visit(begin);
#endif
}

inline constexpr std::size_t any_width = std::numeric_limits<std::size_t>::max();

// Reads a decimal number like the conversion "%u" of sscanf, down to white space before it, a sign, and
// values beyond 32 bits; `width` bounds sign and digits. Moves `at` behind the number only when there is one.
// The same bits cast to int are what "%d" gives for two digits.
inline bool scan_number(char*& at, std::size_t width, std::uint32_t& number) {
    char* p = at;
    while (is_space(*p))
        ++p;
    const bool negative = *p == '-';
    if (*p == '-' || *p == '+') {
        ++p;
        --width;
    }
    if (width == 0 || !is_digit(*p)) return false;
    std::uint64_t value = 0;
    bool overflow = false;
    for (; width != 0 && is_digit(*p); --width, ++p) {
        const auto digit = static_cast<std::uint64_t>(*p - '0');
        overflow |=
            __builtin_mul_overflow(value, 10U, &value) || __builtin_add_overflow(value, digit, &value);
    }
    if (overflow)
        value = std::numeric_limits<std::uint64_t>::max();
    else if (negative)
        value = 0 - value;
    number = static_cast<std::uint32_t>(value);
    at = p;
    return true;
}

} // namespace velmora
