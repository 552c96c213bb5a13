// A strict reader for the XML that banks exchange. It works in place: names and texts are pieces of the
// document's own memory, texts are cut off with zero bytes, references and line ends in them are replaced.
//
// Elements, attributes, comments, processing instructions, CDATA sections, the five named references and the
// numeric ones are understood. Refused with line and reason is whatever is not well-formed, and beyond that:
// document type declarations, names with letters outside Latin, Greek and Cyrillic, names over 64 bytes, more
// than 32 attributes, more than 64 levels, more than 2 GiB. Prefixes are cut off names and not looked up.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/error_text.h"
#include "base/file_memory.h"

namespace velmora {

class XmlReader {
public:
    enum class Event : std::uint8_t { start, end, document_end, error };
    static constexpr int max_depth = 64;

    // Begins with a document. One in another encoding than UTF-8 is replaced by its conversion. False with an
    // error.
    bool open(FileText& document);

    Event next();

    // Of the element that starts or ends, without its prefix.
    std::string_view name() const { return name_; }
    // At the end of an element that has no elements inside: its text, zero-terminated. The caller may change
    // it in place, line ends by the two functions below. Otherwise null.
    char* text() const { return text_; }
    std::size_t text_length() const {
        return text_ == nullptr ? 0 : static_cast<std::size_t>(text_end_ - text_);
    }
    // Cuts white space off both ends of the text, or takes out all that is in it.
    void trim_text();
    void unspace_text();

    // Of the element that starts: the value, its references not replaced; empty when there is none.
    std::string_view attribute(std::string_view name) const;
    // The namespace of the element that starts, empty when it has none. Looks at all open elements.
    std::string_view name_space() const;

    // The line that has been read up to. It is counted anew each time.
    unsigned line() const { return line_at(at_); }
    // Refuses the document at the present line: "XML error at line %u: %s".
    Event refuse(const char* reason);
    // Why the reading is over, once it has failed.
    const ErrorText& error() const { return error_; }

private:
    static constexpr int max_attributes = 32;
    static constexpr std::size_t max_name = 64;

    struct OpenElement {
        const char* name; // with its prefix; attributes follow in the document
        std::size_t length;
        std::string_view local_name;
    };
    struct Attribute {
        std::string_view name;
        std::string_view value;
    };

    bool decode(FileText& document, std::size_t& size, const char* encoding);
    bool check_characters(const char* end);
    bool read_declaration(char (&encoding)[max_name + 1]);

    Event next_outside();
    Event read_start_tag();
    Event read_end_tag();
    Event end_element();
    bool read_attributes(char*& at);
    bool read_value(char*& at, char quote);
    bool scan_name(char*& at);
    char* find(char* at, std::string_view text) const;
    bool skip_markup();
    bool skip_comment();
    bool skip_instruction();
    bool read_section();
    char* find_text_stop(char* at) const;
    bool read_text();
    bool read_reference(char*& at, char32_t& character);

    unsigned line_at(const char* at) const;
    template <typename Change>
    void change(char* from, const char* to, Change apply);
    void append(char* from, char* to);
    void append_character(char* at, const char* behind, char32_t character);
    bool refuse_at(char* at, const char* reason);

    char* at_ = nullptr;
    const char* end_ = nullptr; // of the document
    char* text_ = nullptr;      // of the element that ends
    char* text_begin_ = nullptr;
    char* text_end_ = nullptr;
    bool is_leaf_ = false;   // nothing but text since the last start tag
    bool ends_next_ = false; // the start tag was an empty element's
    bool has_root_ = false;
    int depth_ = 0;
    int attribute_count_ = 0;
    std::string_view name_;
    const char* local_name_ = nullptr; // in the name scanned last
    const char* begin_ = nullptr;      // of the document
    unsigned lost_lines_ = 0;          // line ends that changes of texts have taken out
    OpenElement open_[max_depth];
    Attribute attributes_[max_attributes];
    ErrorText error_{};
};

} // namespace velmora
