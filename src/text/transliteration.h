// Letters and signs that no rulebook takes, written with those that every rulebook takes.
#pragma once

#include <cstddef>
#include <string_view>

namespace velmora {

// The letter that a letter and the combining mark behind it make, where that is more than the letter with its
// mark left out; 0 otherwise.
char32_t compose(char32_t letter, char32_t mark);

// The ASCII character that a full-width one stands for; every other character is left as it is.
char32_t narrow(char32_t character);

constexpr bool is_combining_mark(char32_t c) {
    return c >= 0x300 && c <= 0x36F;
}

constexpr std::size_t longest_transliteration = 4;

// What stands in place of a character between two others (0 where there is none): nothing for what cannot be
// seen, "." for what has no equivalent. The text may lie in the buffer.
std::string_view transliterate(char32_t character, char32_t before, char32_t behind,
                               char (&buffer)[longest_transliteration]);

} // namespace velmora
