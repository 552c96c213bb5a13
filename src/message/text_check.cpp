#include "message/text_check.h"

#include <cstring>

#include "base/utf8.h"

namespace velmora {
namespace {

// Whether a text is UTF-8 that an XML document can hold, without control characters.
bool is_clean_utf8(std::string_view text) {
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end) {
        const char32_t c = next_character(at, end);
        if (c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0xFFFE || c == 0xFFFF || c == no_character)
            return false;
    }
    return true;
}

std::size_t count_characters(std::string_view text) {
    std::size_t count = 0;
    for (const char c : text)
        count += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    return count;
}

bool is_blank(std::string_view text) {
    return !text.empty() && text.find_first_not_of(' ') == text.npos;
}

// Of a text that is UTF-8.
std::string_view character_at(const char* at, std::string_view text) {
    const char* behind = at;
    next_character(behind, text.data() + text.size());
    return {at, static_cast<std::size_t>(behind - at)};
}

} // namespace

CheckedText check_text(const char* value, std::size_t shortest, std::size_t longest, CharacterSet set,
                       const Rulebook& rulebook) {
    constexpr std::size_t longest_character = 4;
    if (value == nullptr) return {{}, TextFault::length, {}};
    const bool counts = counts_characters(rulebook);
    const std::size_t bytes = counts ? longest * longest_character : longest;
    const std::string_view text(value, strnlen(value, bytes + 1));
    if (text.size() < shortest || text.size() > bytes) return {text, TextFault::length, {}};

    const char* forbidden = find_forbidden_character(text, set, rulebook);
    if (counts) {
        // What is in a set is UTF-8 and no control character.
        if ((forbidden != nullptr || set == CharacterSet::any) && !is_clean_utf8(text))
            return {text, TextFault::not_utf8, {}};
        if (text.size() > longest || shortest > 1) {
            const std::size_t count = count_characters(text);
            if (count < shortest || count > longest) return {text, TextFault::length, {}};
        }
    }
    if (is_strict(rulebook) && is_blank(text)) return {text, TextFault::blank, {}};
    if (forbidden != nullptr)
        return {text, TextFault::character,
                counts ? character_at(forbidden, text) : std::string_view(forbidden, 1)};
    return {text, TextFault::none, {}};
}

bool fail_text(Failure& failure, TextFault fault, const char* label) {
    return fault == TextFault::blank ? failure.fail("Text must not consist of spaces")
                                     : failure.fail_with("Invalid UTF-8 in %s", label);
}

bool has_misplaced_slash(std::string_view text) {
    return text.starts_with('/') || text.ends_with('/') || text.find("//") != text.npos;
}

} // namespace velmora
