// Elements, attributes and texts. How a document begins is told in document_start.cpp.
#include "xml/reader.h"

#include <cstring>

#include "base/ascii.h"
#include "base/utf8.h"
#include "xml/characters.h"

namespace velmora {
namespace {

enum ByteClass : std::uint8_t { name_byte = 1, blank = 2, value_stop = 4 };

struct ByteClasses {
    std::uint8_t of[256] = {};

    constexpr ByteClasses() {
        for (int c = 0; c < 128; ++c)
            if (is_letter_or_digit(static_cast<char>(c))) of[c] = name_byte;
        mark("-._", name_byte);
        mark(" \t\r\n", blank);
        mark("<&\"'", value_stop);
        of[0] |= value_stop;
    }
    constexpr void mark(std::string_view bytes, ByteClass kind) {
        for (const char c : bytes)
            of[static_cast<unsigned char>(c)] |= kind;
    }
};
constexpr ByteClasses classes;

bool is(char c, ByteClass kind) {
    return (classes.of[static_cast<unsigned char>(c)] & kind) != 0;
}

char* skip_blanks(char* at) {
    while (is(*at, blank))
        ++at;
    return at;
}

// Letters of the languages of Europe. XML knows many more, which no name of a bank's element needs.
constexpr struct {
    std::uint16_t first, last;
} name_letters[] = {
    {0xC0, 0xD6},   {0xD8, 0xF6},   {0xF8, 0x131},  {0x134, 0x13E}, {0x141, 0x148},
    {0x14A, 0x17E}, {0x386, 0x386}, {0x388, 0x38A}, {0x38C, 0x38C}, {0x38E, 0x3A1},
    {0x3A3, 0x3CE}, {0x401, 0x40C}, {0x40E, 0x44F}, {0x451, 0x45C}, {0x45E, 0x481},
};

bool is_name_letter(char32_t character) {
    for (const auto& range : name_letters)
        if (character >= range.first && character <= range.last) return true;
    return false;
}

constexpr struct {
    char text[6];
    char character;
} references[] = {{"amp;", '&'}, {"lt;", '<'}, {"gt;", '>'}, {"quot;", '"'}, {"apos;", '\''}};

// The ends of lines between two places.
unsigned count_lines(const char* at, const char* end) {
    unsigned lines = 0;
    while (at < end) {
        const std::uint64_t eight = load_eight(at);
        if (end - at >= 8 && bytes_equal(eight, '\r') == 0) {
            lines += count_bytes_equal(eight, '\n');
            at += 8;
        } else {
            lines += *at == '\n' || (*at == '\r' && at[1] != '\n');
            ++at;
        }
    }
    return lines;
}

constexpr char too_short[] = "the document ends too early";

} // namespace

// Changes what lies between two places, together with the number of lines there.
template <typename Change>
void XmlReader::change(char* from, const char* to, Change apply) {
    const unsigned before = count_lines(from - 1, to);
    apply();
    lost_lines_ += before - count_lines(from - 1, to);
}

// ------------------------------------------------------------------------------------------------------
// Events

XmlReader::Event XmlReader::next() {
    text_ = nullptr;
    if (error_.text[0] != '\0') return Event::error;
    if (ends_next_) {
        ends_next_ = false;
        return end_element();
    }
    if (depth_ == 0) return next_outside();
    for (;;) {
        if (*at_ != '<' && !read_text()) return Event::error;
        switch (at_[1]) {
        case '/':
            return read_end_tag();
        case '!':
            if (!(begins_with(at_, "<![CDATA[") ? read_section() : skip_markup())) return Event::error;
            break;
        case '?':
            if (!skip_instruction()) return Event::error;
            break;
        default:
            return read_start_tag();
        }
    }
}

XmlReader::Event XmlReader::next_outside() {
    for (;;) {
        at_ = skip_blanks(at_);
        if (*at_ == '\0') return has_root_ ? Event::document_end : refuse(too_short);
        if (*at_ != '<') return refuse(has_root_ ? "text behind the document" : "text before the document");
        if (at_[1] == '!' || at_[1] == '?') {
            if (!(at_[1] == '!' ? skip_markup() : skip_instruction())) return Event::error;
        } else {
            if (has_root_) return refuse("an element behind the document");
            has_root_ = true;
            return read_start_tag();
        }
    }
}

XmlReader::Event XmlReader::read_start_tag() {
    if (depth_ == max_depth) return refuse("more than 64 levels");
    char* at = at_ + 1;
    const char* const name = at;
    if (!scan_name(at)) return Event::error;
    name_ = {local_name_, static_cast<std::size_t>(at - local_name_)};
    open_[depth_++] = {name, static_cast<std::size_t>(at - name), name_};
    attribute_count_ = 0;
    if (*at != '>' && !read_attributes(at)) return Event::error;
    text_begin_ = text_end_ = at;
    is_leaf_ = true;
    ends_next_ = *at == '/';
    at_ = at + (ends_next_ ? 2 : 1);
    return Event::start;
}

XmlReader::Event XmlReader::read_end_tag() {
    const OpenElement& open = open_[depth_ - 1];
    char* at = at_ + 2;
    if (!is_same(at, open.name, open.length)) return refuse("an end tag without its start tag");
    at = skip_blanks(at + open.length);
    if (*at != '>') return refuse(*at == '\0' ? too_short : "an end tag without its start tag");
    at_ = at + 1;
    return end_element();
}

XmlReader::Event XmlReader::end_element() {
    name_ = open_[--depth_].local_name;
    if (is_leaf_) {
        text_ = text_begin_;
        // A text that has become shorter may end before what was a line end once.
        const auto cut = [&] { *text_end_ = '\0'; };
        if (is(*text_end_, blank))
            change(text_end_, text_end_ + 1, cut);
        else
            cut();
    }
    is_leaf_ = false;
    return Event::end;
}

// ------------------------------------------------------------------------------------------------------
// Names and attributes

// Moves behind the name.
bool XmlReader::scan_name(char*& at) {
    char* const begin = at;
    local_name_ = at;
    if (is_digit(*at) || *at == '-' || *at == '.') return refuse_at(at, "not a name");
    for (;;) {
        while (is(*at, name_byte))
            ++at;
        if (*at == ':') {
            local_name_ = ++at;
            continue;
        }
        if ((*at & 0x80) == 0) break;
        const char* letter = at;
        if (!is_name_letter(next_character(letter, letter + 4)))
            return refuse_at(at, "a name with a letter that is not supported");
        at += letter - at;
    }
    if (at == begin) return refuse_at(at, *at == '\0' ? too_short : "not a name");
    if (at - begin > static_cast<std::ptrdiff_t>(max_name))
        return refuse_at(at, "a name of more than 64 bytes");
    return true;
}

// Moves to the ">" or "/>" behind the attributes.
bool XmlReader::read_attributes(char*& at) {
    for (;;) {
        char* const before = at;
        at = skip_blanks(at);
        if (*at == '>' || (*at == '/' && at[1] == '>')) return true;
        if (*at == '\0') return refuse_at(at, too_short);
        if (at == before) return refuse_at(at, "not a name");
        const char* const name_begin = at;
        if (!scan_name(at)) return false;
        const std::string_view name(name_begin, static_cast<std::size_t>(at - name_begin));
        for (int i = 0; i < attribute_count_; ++i)
            if (attributes_[i].name == name) return refuse_at(at, "the same attribute twice");
        if (attribute_count_ == max_attributes) return refuse_at(at, "more than 32 attributes");

        at = skip_blanks(at);
        if (*at != '=') return refuse_at(at, "an attribute without a value");
        at = skip_blanks(at + 1);
        const char quote = *at;
        if (quote != '"' && quote != '\'') return refuse_at(at, "an attribute without a value");
        const char* const value = ++at;
        if (!read_value(at, quote)) return false;
        attributes_[attribute_count_++] = {name, {value, static_cast<std::size_t>(at - value)}};
        ++at;
    }
}

// Moves to the quotation mark that ends the value.
bool XmlReader::read_value(char*& at, char quote) {
    for (;; ++at) {
        while (!is(*at, value_stop))
            ++at;
        if (*at == quote) return true;
        if (*at == '\0') return refuse_at(at, too_short);
        if (*at == '<') return refuse_at(at, "an attribute with a tag inside");
        if (char32_t character; *at == '&') {
            if (!read_reference(at, character)) return false;
            --at;
        }
    }
}

std::string_view XmlReader::attribute(std::string_view name) const {
    for (int i = 0; i < attribute_count_; ++i)
        if (attributes_[i].name == name) return attributes_[i].value;
    return {};
}

// Start tags stay as they were read, so those of the open elements can be looked at again.
std::string_view XmlReader::name_space() const {
    if (depth_ == 0) return {};
    const OpenElement& self = open_[depth_ - 1];
    const std::size_t prefixed = self.length - self.local_name.size();
    const std::string_view prefix(self.name, prefixed == 0 ? 0 : prefixed - 1);
    for (int level = depth_ - 1; level >= 0; --level) {
        const char* at = open_[level].name + open_[level].length;
        while (is(*at, blank)) {
            while (is(*at, blank))
                ++at;
            const std::string_view name(at, std::strcspn(at, "= \t\r\n/>"));
            const char* const open_quote = at + std::strcspn(at, "\"'>");
            const char* const close_quote =
                *open_quote == '>' ? nullptr : std::strchr(open_quote + 1, *open_quote);
            if (*open_quote == '\0' || close_quote == nullptr) break;
            const bool declares = prefix.empty() ? name == "xmlns"
                                                 : name.size() == prefix.size() + 6 &&
                                                       name.starts_with("xmlns:") && name.ends_with(prefix);
            if (declares) return {open_quote + 1, static_cast<std::size_t>(close_quote - open_quote - 1)};
            at = close_quote + 1;
        }
    }
    return {};
}

// ------------------------------------------------------------------------------------------------------
// What is no element

// Null where the document does not have the text any more.
char* XmlReader::find(char* at, std::string_view text) const {
    const auto next = [&](char* from) {
        return static_cast<char*>(std::memchr(from, text[0], static_cast<std::size_t>(end_ - from)));
    };
    for (at = next(at); at != nullptr && !begins_with(at, text); at = next(at + 1)) {
    }
    return at;
}

bool XmlReader::skip_markup() {
    if (begins_with(at_, "<!--")) return skip_comment();
    if (!begins_with(at_, "<!DOCTYPE")) return refuse_at(at_, "a markup declaration");
    error_.fail("Document type declarations are not supported");
    return false;
}

bool XmlReader::skip_comment() {
    char* const end = find(at_ + 4, "--");
    if (end == nullptr) return refuse_at(at_, "a comment without an end");
    if (end[2] != '>') return refuse_at(end, "a comment with two hyphens inside");
    at_ = end + 3;
    return true;
}

bool XmlReader::skip_instruction() {
    char* at = at_ + 2;
    const char* const target = at;
    if (!scan_name(at)) return false;
    if (equals_ignoring_case({target, static_cast<std::size_t>(at - target)}, "xml"))
        return refuse_at(at_, "an XML declaration that is not the first in the document");
    if (!is(*at, blank) && !begins_with(at, "?>")) return refuse_at(at, "not a processing instruction");
    at = find(at, "?>");
    if (at == nullptr) return refuse_at(at_, "a processing instruction without an end");
    at_ = at + 2;
    return true;
}

// ------------------------------------------------------------------------------------------------------
// Texts

bool XmlReader::read_section() {
    char* from = at_ + 9;
    char* const end = find(from, "]]>");
    if (end == nullptr) return refuse_at(at_, "a CDATA section without an end");
    while (auto* cr = static_cast<char*>(std::memchr(from, '\r', static_cast<std::size_t>(end - from)))) {
        append(from, cr);
        if (cr[1] != '\n') append_character(cr, cr + 1, '\n');
        from = cr + 1;
    }
    append(from, end);
    at_ = end + 3;
    return true;
}

// What ends a piece of text: a tag, a reference, a line end to be replaced, perhaps "]]>", the document's
// end.
char* XmlReader::find_text_stop(char* at) const {
    for (; at < end_; at += 8) {
        const std::uint64_t eight = load_eight(at);
        const std::uint64_t stops = bytes_equal(eight, '<') | bytes_equal(eight, '&') |
                                    bytes_equal(eight, '\r') | bytes_equal(eight, ']');
        if (stops != 0) return at + __builtin_ctzll(stops) / 8;
    }
    return const_cast<char*>(end_);
}

// Reads up to the next "<".
bool XmlReader::read_text() {
    char* from = at_;
    for (char* at = from;;) {
        at = find_text_stop(at);
        switch (*at) {
        case '<':
            append(from, at);
            at_ = at;
            return true;
        case '&': {
            append(from, at);
            char* const reference = at;
            char32_t character = 0;
            if (!read_reference(at, character)) return false;
            append_character(reference, at, character);
            from = at;
            break;
        }
        case '\r':
            append(from, at);
            if (at[1] != '\n') append_character(at, at + 1, '\n');
            from = ++at;
            break;
        case ']':
            if (begins_with(at, "]]>")) return refuse_at(at, "the end of a CDATA section without its start");
            ++at;
            break;
        default:
            return refuse_at(at, too_short);
        }
    }
}

// Moves behind the reference.
bool XmlReader::read_reference(char*& at, char32_t& character) {
    char* p = at + 1;
    if (*p != '#') {
        for (const auto& reference : references)
            if (begins_with(p, reference.text)) {
                character = static_cast<unsigned char>(reference.character);
                at = p + std::strlen(reference.text);
                return true;
            }
        return refuse_at(at, "an unknown reference");
    }
    const bool hexadecimal = p[1] == 'x';
    p += hexadecimal ? 2 : 1;
    const char* const digits = p;
    for (character = 0;; ++p) {
        const char letter = to_upper(*p);
        if (is_digit(letter))
            character = character * (hexadecimal ? 16 : 10) + static_cast<char32_t>(letter - '0');
        else if (hexadecimal && letter >= 'A' && letter <= 'F')
            character = character * 16 + static_cast<char32_t>(letter - 'A' + 10);
        else
            break;
        if (character > last_character) character = last_character + 1;
    }
    if (p == digits || *p != ';') return refuse_at(at, "an unknown reference");
    if (!is_xml_character(character)) return refuse_at(at, "a reference to a character that XML forbids");
    at = p + 1;
    return true;
}

// A text is moved only when something before it has become shorter.
void XmlReader::append(char* from, char* to) {
    if (!is_leaf_ || from == to) return;
    if (text_begin_ == text_end_) text_begin_ = text_end_ = from;
    const auto length = static_cast<std::size_t>(to - from);
    if (text_end_ != from)
        change(text_end_, text_end_ + length, [&] { std::memmove(text_end_, from, length); });
    text_end_ += length;
}

// The character takes at most the place that its markup had.
void XmlReader::append_character(char* at, const char* behind, char32_t character) {
    if (!is_leaf_) return;
    if (text_begin_ == text_end_) text_begin_ = text_end_ = at;
    std::size_t length = 0;
    const char* const end = behind - text_end_ < 4 ? behind : text_end_ + 4;
    change(text_end_, end, [&] { length = put_character(character, text_end_); });
    text_end_ += length;
}

void XmlReader::trim_text() {
    if (text_ == nullptr) return;
    char* const end = text_end_;
    while (text_ != text_end_ && is_space(*text_))
        ++text_;
    while (text_ != text_end_ && is_space(text_end_[-1]))
        --text_end_;
    if (text_end_ != end) change(text_end_, text_end_ + 1, [&] { *text_end_ = '\0'; });
}

void XmlReader::unspace_text() {
    trim_text();
    if (text_ == nullptr) return;
    char* const end = text_end_;
    char* at = text_;
    while (at != end && !is_space(*at))
        ++at;
    if (at == end) return;
    change(at, end, [&] {
        text_end_ = at;
        for (; at != end; ++at)
            if (!is_space(*at)) *text_end_++ = *at;
        *text_end_ = '\0';
    });
}

// ------------------------------------------------------------------------------------------------------
// Errors

unsigned XmlReader::line_at(const char* at) const {
    return 1 + count_lines(begin_, at) + lost_lines_;
}

XmlReader::Event XmlReader::refuse(const char* reason) {
    text_ = nullptr;
    error_.fail("XML error at line %u: %s", line(), reason);
    return Event::error;
}

bool XmlReader::refuse_at(char* at, const char* reason) {
    at_ = at;
    refuse(reason);
    return false;
}

} // namespace velmora
