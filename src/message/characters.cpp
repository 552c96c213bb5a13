#include "message/characters.h"

#include <array>
#include <cstdint>

namespace velmora {
namespace {

enum CharacterClass : std::uint8_t {
    basic = 1,    // letters, digits and the punctuation of every SEPA text
    space = 2,    // permitted in free texts
    extended = 4, // permitted in names
    austrian = 8, // permitted by the Austrian rulebook; two of them are single bytes of ISO 8859-1
};

constexpr auto classes = [] {
    std::array<std::uint8_t, 256> table{};
    const auto put = [&](std::string_view characters, CharacterClass c) {
        for (const char character : characters)
            table[static_cast<unsigned char>(character)] = c;
    };
    put("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789'()+,-./:?", basic);
    put(" ", space);
    put("$%&*", extended);
    put("!\"#;=@[]^_{}~<>|\xA7\xB0", austrian);
    return table;
}();

// Length of a permitted character of several UTF-8 bytes at the start of `text`, or 0.
std::size_t german_letter(std::string_view text) {
    constexpr std::string_view second_bytes = "\x84\x96\x9C\xA4\xB6\xBC\x9F"; // Ä Ö Ü ä ö ü ß
    return text.size() >= 2 && text[0] == '\xC3' && second_bytes.find(text[1]) != second_bytes.npos ? 2 : 0;
}

std::size_t euro_sign(std::string_view text) {
    return text.starts_with("\xE2\x82\xAC") ? 3 : 0;
}

} // namespace

const char* find_forbidden_character(std::string_view text, CharacterSet set, const Rulebook& rulebook) {
    if (set == CharacterSet::any) return nullptr;
    if (set == CharacterSet::name && permits_basic_characters_only(rulebook)) set = CharacterSet::text;
    const bool is_name = set == CharacterSet::name;
    const bool is_austrian = permits_austrian_characters(rulebook);
    unsigned permitted = basic;
    if (set != CharacterSet::identifier) permitted |= space;
    if (is_name) permitted |= extended;
    if (is_austrian) permitted |= austrian;

    for (std::size_t i = 0; i < text.size();) {
        if ((classes[static_cast<unsigned char>(text[i])] & permitted) != 0) {
            ++i;
            continue;
        }
        const std::string_view rest(text.data() + i, text.size() - i); // substr()'s check needs libstdc++
        std::size_t length = 0;
        if (is_name) length = german_letter(rest);
        if (length == 0 && is_austrian) length = euro_sign(rest);
        if (length == 0) return text.data() + i;
        i += length;
    }
    return nullptr;
}

} // namespace velmora
