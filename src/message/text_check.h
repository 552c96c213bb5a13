// The check of a free text: its length and its characters.
#pragma once

#include <cstddef>
#include <string_view>

#include "message/characters.h"
#include "message/failure.h"

namespace velmora {

enum class TextFault { none, length, not_utf8, blank, character };

struct CheckedText {
    std::string_view text; // null and zero-length when the caller has none
    TextFault fault;
    std::string_view
        character; // that is not permitted: a byte, or all bytes under a rulebook that counts characters
};

// The limits are of bytes or of characters, as the rulebook has it.
CheckedText check_text(const char* text, std::size_t shortest, std::size_t longest, CharacterSet set,
                       const Rulebook& rulebook);

// Tells a failure of a text whose limits were kept; `label` is its key.
bool fail_text(Failure& failure, TextFault fault, const char* label);

// Slashes at either end, or two beside each other: banks do not take identifications with them.
bool has_misplaced_slash(std::string_view text);

} // namespace velmora
