// MT940 as banks really write it: what is read of one file.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/ascii.h"
#include "base/joined_text.h"
#include "statement/info.h"
#include "statement/tolerant_lines.h"

namespace velmora::tolerant {

// A tag with its content; lines that continue it follow behind the first.
struct Field {
    Tag tag;
    bool is_intermediate;
    unsigned line; // its number in the file
    char* begin;
    char* end;  // of the first line
    char* rest; // the second line, or the end
    char* rest_end;
    std::ptrdiff_t rest_lines;
};

struct Reader {
    // Of how many lines the reader remembers where they end; a longer field is looked at again.
    static constexpr int most_line_ends = 16;

    sepa_stmt_parser_t& parser;
    RecordPool& records;
    Lines lines;
    StatementPiece* statement = nullptr; // the open one
    BookingPiece* booking = nullptr;     // the one that the next ":86:" belongs to
    bool has_information = false;        // it has had its ":86:"
    JoinedText statement_text;
    JoinedText booking_text;
    WipedBuffer balances;        // of the open statement, as bytes
    bool lacks_currency = false; // a booking came before the opening balance
    std::uint32_t entries = 0;
    unsigned line = 0;
    // Of the present field, from its second line on.
    struct {
        char* end;
        char* next;
    } line_ends[most_line_ends];

    explicit Reader(sepa_stmt_parser_t& owner)
        : parser(owner), records(owner.input->records), lines(owner.input->text) {}

    // All of them: false when the reading is over, with a reason in the parser.
    bool fail(unsigned at, const char* reason);
    bool no_memory() { return parser.error.fail("Out of memory") != 0; }
};

bool read_booking(Reader& reader, const Field& field);
bool read_information(Reader& reader, const Field& field);

// Ends the open booking: what has no field of its own is its text.
bool end_booking(Reader& reader);

// How the lines of a field become one text.
enum class Join : std::uint8_t {
    directly,
    as_cut, // with a blank where the bank did not fill the line
};

// In place, with a zero byte behind it; returns the end.
char* join_lines(const Reader& reader, const Field& field, Join how);

// Reads an amount with its decimal mark and moves behind it. False for what is none, or cannot be held
// exactly.
bool read_amount(char*& at, const char* end, std::int64_t& exact, double& nearest);

// Six digits, year, month and day; all zero for no date. False for what is no date.
bool read_date(const char* digits, struct tm& date);

// Cuts blanks off both ends; writes a zero byte behind the text.
std::string_view trim(char* begin, char* end);

inline bool looks_like_bic(std::string_view text) {
    if (text.size() != 8 && text.size() != 11) return false;
    for (const char c : text)
        if (!is_letter_or_digit(c)) return false;
    return true;
}

// The line of a statement's end, where the statement goes on: it tells nothing.
inline bool is_lone_hyphen(std::string_view line) {
    return line == "-";
}

// Adds a text that is a piece of the file, if there is anything in it. False without memory.
bool add_text(Reader& reader, JoinedText& text, std::string_view piece);

} // namespace velmora::tolerant
