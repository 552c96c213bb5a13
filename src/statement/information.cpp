#include "statement/information.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "statement/keywords.h"
#include "statement/subfields.h"

namespace velmora {
namespace {

constexpr std::size_t purpose_line_length = 27; // a full ?20 to ?29, ?60 to ?63, ?32

struct Field {
    char* begin;
    char* end;
    char* next; // the following tag or the end of the text
};

// Joins the field's lines up to the next tag. Each byte moves once, however many lines there are.
Field join_lines(char* begin, char* line_end) {
    char* end = line_end;
    while (*line_end != '\0' && line_end[2] != ':') {
        char* const line = line_end + 2;
        line_end = find_line_end(line);
        const auto length = static_cast<std::size_t>(line_end - line);
        std::memmove(end, line, length);
        end += length;
    }
    return {begin, end, *line_end == '\0' ? line_end : line_end + 2};
}

template <std::size_t size>
void copy_cut(char (&field)[size], std::size_t used, std::string_view text) {
    const std::size_t length = std::min(text.size(), size - 1 - used);
    std::memcpy(field + used, text.data(), length);
    field[used + length] = '\0';
}

void append_name(sepa_stmt_tx_t& booking, std::string_view text) {
    std::size_t length = std::strlen(booking.name);
    if (length < purpose_line_length) booking.name[length++] = ' ';
    copy_cut(booking.name, length, text);
}

const Keyword* find_keyword(std::string_view line) {
    if (line.size() < keyword_length || line[keyword_word_length] != '+') return nullptr;
    return velmora::find_keyword(line.data());
}

// The purpose lines of one field: each starts a text or continues the one before it in place. Between the two
// lies at least a marker, so there is always room for a separator.
class Purpose {
public:
    Purpose(sepa_stmt_tx_t& booking, const char* field_end) : booking_(booking), field_end_(field_end) {}

    // The line has been cut off with a zero byte.
    void add(char* line, std::size_t length) {
        if (const Keyword* keyword = find_keyword({line, length})) {
            begin_ = booking_.*keyword->value = line + keyword_length;
            end_ = line + length;
            in_keyword_ = true;
            if (keyword->is_amount) set_decimal_mark(length);
        } else if (begin_ == nullptr) {
            begin_ = booking_.purpose = line;
            end_ = line + length;
        } else {
            append(line, length);
        }
    }

private:
    // Deliberate: the comma may stand up to five characters behind the amount, as it always could.
    void set_decimal_mark(std::size_t length) {
        length = std::min(length, static_cast<std::size_t>(field_end_ - begin_));
        if (void* comma = std::memchr(begin_, ',', length)) *static_cast<char*>(comma) = '.';
    }

    void append(const char* line, std::size_t length) {
        // Deliberate: a keyword's start leaves the last length as it was; texts that have been compared with
        // invoices for years would change otherwise.
        constexpr std::ptrdiff_t full_first_line = purpose_line_length - keyword_length;
        if (!in_keyword_)
            *end_++ = '\n';
        else if (last_length_ < purpose_line_length && end_ - begin_ != full_first_line)
            *end_++ = ' ';
        std::memmove(end_, line, length);
        end_ += length;
        *end_ = '\0';
        last_length_ = length;
    }

    sepa_stmt_tx_t& booking_;
    const char* field_end_;
    char* begin_ = nullptr; // the text that the next line continues
    char* end_ = nullptr;
    bool in_keyword_ = false;
    std::size_t last_length_ = 0; // of the line appended last
};

void read_subfield(sepa_stmt_tx_t& booking, Purpose& purpose, int number, char* content, char* end) {
    const std::string_view text(content, static_cast<std::size_t>(end - content));
    switch (number) {
    case 0:
        booking.txtext = content;
        return;
    case 10:
        booking.primanota = content;
        return;
    case 30:
        copy_cut(booking.bank, 0, text);
        return;
    case 31:
        copy_cut(booking.account, 0, text);
        return;
    case 32:
        copy_cut(booking.name, 0, text);
        return;
    case 33:
        append_name(booking, text);
        return;
    case 34:
        scan_number(content, 3, booking.extcode);
        return;
    default:
        if (is_purpose(number)) purpose.add(content, text.size());
    }
}

} // namespace

char* read_information(sepa_stmt_tx_t& booking, char* begin, char* line_end) {
    const Field field = join_lines(begin, line_end);
    *field.end = '\0';
    scan_number(begin, 3, booking.gvc);
    if (*field.next == '\0') return field.next; // no tag follows: the field may be cut off

    constexpr int largest_number = 99;
    const Subfields subfields(field.begin, field.end, largest_number);
    Purpose purpose(booking, field.end);
    for (const Subfield* subfield = subfields.begin(); subfield != subfields.end(); ++subfield) {
        char* const end = subfield + 1 != subfields.end() ? subfield[1].marker : field.end;
        *end = '\0';
        read_subfield(booking, purpose, subfield->number, subfield->content(), end);
    }
    return field.next;
}

} // namespace velmora
