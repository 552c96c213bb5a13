// The characters that names, references and free texts may hold.
#pragma once

#include <string_view>

#include "message/rulebook.h"

namespace velmora {

enum class CharacterSet {
    identifier = 0, // references: no space
    text = 1,       // free text
    name = 2,       // names and free text with German letters
    any = 3,        // whatever the caller writes
};

// The first byte of the first character that the set does not hold under the rulebook, or null.
const char* find_forbidden_character(std::string_view text, CharacterSet set, const Rulebook& rulebook);

} // namespace velmora
