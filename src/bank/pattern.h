// Patterns of digits and capital letters, written as regular expressions and read by the compiler.
#pragma once

#include <cstddef>
#include <cstdint>

namespace velmora {

// The characters that one place of a text may have; the bits stand for 0 to 9 and A to Z in this order.
using PlaceSet = std::uint64_t;

constexpr PlaceSet no_characters = 0;
constexpr PlaceSet all_digits = 0x3FF;
constexpr PlaceSet all_capitals = 0xF'FFFF'FC00;

constexpr PlaceSet place_set(char c) {
    if (c >= '0' && c <= '9') return PlaceSet{1} << (c - '0');
    if (c >= 'A' && c <= 'Z') return PlaceSet{1} << (c - 'A' + 10);
    return no_characters;
}

struct Pattern {
    PlaceSet places[35];
    std::uint8_t shortest, longest; // lengths; there are none between them
};

// Not defined: a pattern that reaches it does not compile.
void pattern_is_not_understood();

// Reads a POSIX extended regular expression of characters, "[...]" and "{count}", anchored on both sides; one
// "(...)?" may stand at its end.
constexpr Pattern read_pattern(const char* p) {
    Pattern pattern{};
    const auto expect = [](bool condition) {
        if (!condition) pattern_is_not_understood();
    };
    std::size_t length = 0;
    expect(*p++ == '^');
    while (*p != '$') {
        if (*p == '(') {
            expect(pattern.shortest == 0);
            pattern.shortest = static_cast<std::uint8_t>(length);
            ++p;
        }
        if (*p == ')') {
            expect(p[1] == '?' && p[2] == '$');
            p += 2;
            continue;
        }
        PlaceSet set = place_set(*p);
        if (*p == '[') {
            while (*++p != ']') {
                char last = p[0];
                if (p[1] == '-') last = p[2];
                for (char c = p[0]; c <= last; ++c)
                    set |= place_set(c);
                if (p[1] == '-') p += 2;
            }
        }
        expect(set != no_characters);
        std::size_t count = 1;
        if (*++p == '{') {
            count = 0;
            while (*++p != '}')
                count = count * 10 + static_cast<std::size_t>(*p - '0');
            ++p;
        }
        while (count-- > 0)
            pattern.places[length++] = set;
    }
    pattern.longest = static_cast<std::uint8_t>(length);
    if (pattern.shortest == 0) pattern.shortest = pattern.longest;
    return pattern;
}

} // namespace velmora
