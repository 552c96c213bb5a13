// ISO 7064 MOD 97-10, as IBANs and creditor identifiers use it.
#pragma once

#include <string_view>

namespace velmora {

enum class Letters { upper_case, any_case };

// Carries the remainder on over a text whose letters count as two digits, A = 10 to Z = 35. -1 for a
// character that does not count.
inline int mod97(int remainder, std::string_view text, Letters letters) {
    for (const char c : text) {
        if (c >= '0' && c <= '9')
            remainder = (remainder * 10 + (c - '0')) % 97;
        else if (c >= 'A' && c <= 'Z')
            remainder = (remainder * 100 + (c - 'A' + 10)) % 97;
        else if (c >= 'a' && c <= 'z' && letters == Letters::any_case)
            remainder = (remainder * 100 + (c - 'a' + 10)) % 97;
        else
            return -1;
    }
    return remainder;
}

// The same over a text whose first four characters count last. (No substr(): its range check needs libstdc++.)
inline int mod97_rotated(std::string_view text, std::string_view::size_type body, Letters letters) {
    const std::string_view head{text.data(), text.size() < 4 ? text.size() : 4};
    text.remove_prefix(body);
    const int remainder = mod97(0, text, letters);
    return remainder < 0 ? remainder : mod97(remainder, head, letters);
}

} // namespace velmora
