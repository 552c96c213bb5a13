#include "message/characters.h"

#include <array>
#include <cstdint>

namespace velmora {
namespace {

// One bit for each set, those of the Austrian rulebook behind the others.
constexpr int set_count = 3;

constexpr unsigned bit_of(CharacterSet set, bool is_austrian) {
    return 1u << (static_cast<int>(set) + (is_austrian ? set_count : 0));
}

// The sets that hold a byte as a character of its own.
constexpr auto sets_of_byte = [] {
    std::array<std::uint8_t, 256> table{};
    const auto put = [&](std::string_view characters, unsigned sets) {
        for (const char character : characters)
            table[static_cast<unsigned char>(character)] |= static_cast<std::uint8_t>(sets);
    };
    constexpr unsigned identifier = bit_of(CharacterSet::identifier, false),
                       text = bit_of(CharacterSet::text, false), name = bit_of(CharacterSet::name, false);
    constexpr unsigned austrian = 1u << set_count; // times the sets
    put("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789'()+,-./:?",
        (identifier | text | name) * (1 + austrian));
    put(" ", (text | name) * (1 + austrian));
    put("$%&*", name * (1 + austrian));
    put("!\"#;=@[]^_{}~<>|\xA7\xB0", (identifier | text | name) * austrian); // two are of ISO 8859-1
    return table;
}();

// How many bytes at the beginning are in a set, four at a time as far as there are so many.
std::size_t length_in_set(std::string_view text, unsigned set) {
    const auto sets = [&](std::size_t at) { return sets_of_byte[static_cast<unsigned char>(text[at])]; };
    std::size_t at = 0;
    while (at + 4 <= text.size() && (sets(at) & sets(at + 1) & sets(at + 2) & sets(at + 3) & set) != 0)
        at += 4;
    while (at < text.size() && (sets(at) & set) != 0)
        ++at;
    return at;
}

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
    const unsigned bit = bit_of(set, is_austrian);
    for (;;) {
        text.remove_prefix(length_in_set(text, bit));
        if (text.empty()) return nullptr;
        std::size_t length = 0;
        if (is_name) length = german_letter(text);
        if (length == 0 && is_austrian) length = euro_sign(text);
        if (length == 0) return text.data();
        text.remove_prefix(length);
    }
}

} // namespace velmora
