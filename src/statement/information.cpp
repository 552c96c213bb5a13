#include "statement/information.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "statement/scan.h"

namespace velmora {
namespace {

constexpr std::ptrdiff_t marker_length = 3;     // "?" and two digits
constexpr std::size_t purpose_line_length = 27; // a full ?20 to ?29, ?60 to ?63, ?32
constexpr std::size_t keyword_length = 5;

struct Keyword {
    char text[keyword_length + 1];
    char* sepa_stmt_tx_t::*value;
    bool is_amount = false;
};

constexpr Keyword keywords[] = {
    {"EREF+", &sepa_stmt_tx_t::eref},       {"KREF+", &sepa_stmt_tx_t::kref},
    {"MREF+", &sepa_stmt_tx_t::mref},       {"CRED+", &sepa_stmt_tx_t::cred},
    {"DEBT+", &sepa_stmt_tx_t::debt},       {"PURP+", &sepa_stmt_tx_t::purp},
    {"COAM+", &sepa_stmt_tx_t::coam, true}, {"OAMT+", &sepa_stmt_tx_t::oamt, true},
    {"SVWZ+", &sepa_stmt_tx_t::svwz},       {"ABWA+", &sepa_stmt_tx_t::abwa},
    {"ABWE+", &sepa_stmt_tx_t::abwe},
};

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

struct Subfield {
    int number;
    char* marker;
};

// The subfields of a field, in the order of the file and of their numbers. Built in one pass over the
// markers.
class Subfields {
public:
    Subfields(char* begin, char* end) {
        visit_characters(begin, end, '?', [&](char* at) {
            if (end - at >= marker_length && is_digit(at[1]) && is_digit(at[2]))
                add({two_digits(at + 1), at});
        });
    }

    const Subfield* begin() const { return list_; }
    const Subfield* end() const { return list_ + count_; }

private:
    // A marker with a greater number than the last one ends its subfield; other markers belong to a content.
    // Deliberate: where the number after a subfield's own is met again, the subfield goes on up to there and
    // what stood between becomes content: texts with a "?21" of their own are read that way.
    void add(const Subfield& subfield) {
        if (count_ != 0 && subfield.number <= list_[count_ - 1].number) {
            const auto lower = [](const Subfield& listed, int number) { return listed.number < number; };
            const Subfield* before = std::lower_bound(begin(), end(), subfield.number - 1, lower);
            if (before->number != subfield.number - 1) return;
            count_ = before + 1 - begin();
        }
        list_[count_++] = subfield;
    }

    Subfield list_[100]; // one for each number at most
    std::ptrdiff_t count_ = 0;
};

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
    if (line.size() < keyword_length || line[keyword_length - 1] != '+') return nullptr;
    for (const Keyword& keyword : keywords)
        if (std::memcmp(keyword.text, line.data(), keyword_length - 1) == 0) return &keyword;
    return nullptr;
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
        if ((number >= 20 && number <= 29) || (number >= 60 && number <= 63))
            purpose.add(content, text.size());
    }
}

} // namespace

char* read_information(sepa_stmt_tx_t& booking, char* begin, char* line_end) {
    const Field field = join_lines(begin, line_end);
    *field.end = '\0';
    scan_number(begin, 3, booking.gvc);
    if (*field.next == '\0') return field.next; // no tag follows: the field may be cut off

    const Subfields subfields(field.begin, field.end);
    Purpose purpose(booking, field.end);
    for (const Subfield* subfield = subfields.begin(); subfield != subfields.end(); ++subfield) {
        char* const end = subfield + 1 != subfields.end() ? subfield[1].marker : field.end;
        *end = '\0';
        read_subfield(booking, purpose, subfield->number, subfield->marker + marker_length, end);
    }
    return field.next;
}

} // namespace velmora
