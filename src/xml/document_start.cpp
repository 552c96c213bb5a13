// How a document begins: byte order mark, declaration, encoding; and the characters that it may hold at all.
#include <iconv.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

#include "base/ascii.h"
#include "base/utf8.h"
#include "base/wiped_buffer.h"
#include "xml/characters.h"
#include "xml/reader.h"

namespace velmora {
namespace {

constexpr std::size_t max_size = std::size_t{2} << 30;

bool is_blank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

char* skip_blanks(char* at) {
    while (is_blank(*at))
        ++at;
    return at;
}

bool is_word_character(char c) {
    return is_letter_or_digit(c) || c == '.' || c == '-' || c == '_';
}

// One of the declaration's parts, ` name = "value"`. Moves behind it when it is there.
bool read_part(char*& at, std::string_view name, std::string_view& value) {
    char* p = skip_blanks(at);
    if (p == at || std::strncmp(p, name.data(), name.size()) != 0) return false;
    p = skip_blanks(p + name.size());
    if (*p != '=') return false;
    p = skip_blanks(p + 1);
    const char quote = *p;
    if (quote != '"' && quote != '\'') return false;
    const char* const begin = ++p;
    while (is_word_character(*p))
        ++p;
    if (*p != quote) return false;
    value = {begin, static_cast<std::size_t>(p - begin)};
    at = p + 1;
    return true;
}

// A conversion to UTF-8.
class Converter {
public:
    explicit Converter(const char* encoding) : descriptor_(iconv_open("UTF-8", encoding)) {}
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter() {
        if (is_open()) iconv_close(descriptor_);
    }

    bool is_open() const { return reinterpret_cast<std::intptr_t>(descriptor_) != -1; }

    // 0, or the number of the error.
    int convert(char* text, std::size_t size, WipedBuffer& out) {
        for (;;) {
            if (!out.reserve(size + size / 2 + 64)) return ENOMEM;
            char* end = out.end();
            const std::size_t room = out.room();
            std::size_t left = room;
            // Without an input it writes what the end of the text asks for.
            const bool finished = size == 0;
            const std::size_t result = iconv(descriptor_, finished ? nullptr : &text, &size, &end, &left);
            const int error = result == static_cast<std::size_t>(-1) ? errno : 0;
            out.add(room - left);
            if (error != E2BIG && (error != 0 || finished)) return error;
        }
    }

private:
    iconv_t descriptor_;
};

} // namespace

bool XmlReader::open(FileText& document) {
    begin_ = at_ = document.data();
    std::size_t size = document.size();
    if (size > max_size) return refuse_at(at_, "a document of more than 2 GiB");

    // A mark is stronger than a declaration: who converts a document seldom mends its declaration.
    bool is_utf8 = false;
    if (begins_with(at_, "\xFF\xFE") || begins_with(at_, "\xFE\xFF")) {
        if (!decode(document, size, "UTF-16")) return false;
        is_utf8 = true;
    } else if (begins_with(at_, "\xEF\xBB\xBF")) {
        at_ += 3;
        is_utf8 = true;
    }

    char encoding[max_name + 1] = "";
    if (!read_declaration(encoding)) return false;
    const std::string_view name(encoding);
    if (is_utf8 || name.empty() || equals_ignoring_case(name, "UTF-8"))
        return check_characters(document.data() + size);
    if (equals_ignoring_case(name, "US-ASCII")) {
        for (const char* p = at_; *p != '\0'; ++p)
            if (*p & 0x80) return error_.fail("Invalid text (%s)", encoding) == 1;
    } else {
        if (!decode(document, size, encoding) || !read_declaration(encoding)) return false;
    }
    return check_characters(document.data() + size);
}

// Moves behind white space and the XML declaration, if there is one.
bool XmlReader::read_declaration(char (&encoding)[max_name + 1]) {
    at_ = skip_blanks(at_);
    if (*at_ != '<') return error_.fail("Not an XML document") == 1;
    if (!begins_with(at_, "<?xml") || !is_blank(at_[5])) return true;

    char* at = at_ + 5;
    std::string_view version, name, standalone;
    bool understood = read_part(at, "version", version);
    if (read_part(at, "encoding", name)) understood &= !name.empty() && is_letter(name[0]);
    if (read_part(at, "standalone", standalone)) understood &= standalone == "yes" || standalone == "no";
    at = skip_blanks(at);
    if (!understood || !begins_with(at, "?>")) return refuse_at(at, "not an XML declaration");
    at_ = at + 2;
    const std::size_t length = name.copy(encoding, max_name);
    encoding[length] = '\0';
    return true;
}

bool XmlReader::decode(FileText& document, std::size_t& size, const char* encoding) {
    Converter converter(encoding);
    WipedBuffer out;
    // A declaration that its own encoding would have written otherwise cannot have been meant.
    const std::string_view declaration(document.data(), static_cast<std::size_t>(at_ - document.data()));
    if (!converter.is_open() || converter.convert(document.data(), declaration.size(), out) != 0 ||
        out.view() != declaration)
        return error_.fail("Encoding not supported (%s)", encoding) == 1;
    out.clear();
    const int error = converter.convert(document.data(), size, out);
    if (error == ENOMEM || !out.reserve(1))
        return error_.fail("Failed to allocate %li bytes", static_cast<long>(size)) == 1;
    if (error != 0) return error_.fail("Invalid text (%s)", encoding) == 1;
    size = out.view().size();
    document = out.release();
    begin_ = at_ = document.data();
    return true;
}

// Once for the whole document, so that nothing that follows has to look at single characters.
bool XmlReader::check_characters(const char* end) {
    end_ = end;
    for (const char* p = at_; p != end;) {
        const std::uint64_t eight = load_eight(p);
        if (end - p >= 8 && ((eight & high_bits) | bytes_below(eight, 0x20)) == 0) {
            p += 8;
            continue;
        }
        for (const char* const behind = end - p >= 8 ? p + 8 : end; p < behind;) {
            const char* const character = p;
            const char32_t value = next_character(p, end);
            if (value != no_character && is_xml_character(value)) continue;
            const unsigned line = line_at(character);
            if (value == no_character) return error_.fail("Invalid UTF-8 at line %u", line) == 1;
            return error_.fail("XML error at line %u: %s", line, "a character that XML forbids") == 1;
        }
    }
    return true;
}

} // namespace velmora
