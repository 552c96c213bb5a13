// ISO 7064 MOD 97-10, as IBANs and creditor identifiers use it.
#pragma once

#include <cstdint>
#include <string_view>

namespace velmora {

enum class Letters { upper_case, any_case };

// Carries the remainder on over a text whose letters count as two digits, A = 10 to Z = 35. -1 for a
// character that does not count.
inline int mod97(int remainder, std::string_view text, Letters letters) {
    // A letter more still fits. Dividing once in 17 digits makes this several times as fast as each time.
    constexpr std::uint64_t large = 100'000'000'000'000'000;
    auto value = static_cast<std::uint64_t>(remainder);
    for (const char c : text) {
        if (c >= '0' && c <= '9')
            value = value * 10 + static_cast<std::uint64_t>(c - '0');
        else if (c >= 'A' && c <= 'Z')
            value = value * 100 + static_cast<std::uint64_t>(c - 'A' + 10);
        else if (c >= 'a' && c <= 'z' && letters == Letters::any_case)
            value = value * 100 + static_cast<std::uint64_t>(c - 'a' + 10);
        else
            return -1;
        if (value >= large) value %= 97;
    }
    return static_cast<int>(value % 97);
}

// The same over a text whose first four characters count last. (No substr(): its range check needs
// libstdc++.)
inline int mod97_rotated(std::string_view text, std::string_view::size_type body, Letters letters) {
    const std::string_view head{text.data(), text.size() < 4 ? text.size() : 4};
    text.remove_prefix(body);
    const int remainder = mod97(0, text, letters);
    return remainder < 0 ? remainder : mod97(remainder, head, letters);
}

} // namespace velmora
