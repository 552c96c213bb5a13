// The SWIFT MT940 format as format 1 reads it: statements, tags and booking lines.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "base/exact_amount.h"
#include "statement/info.h"
#include "statement/information.h"
#include "statement/load.h"
#include "statement/scan.h"

namespace velmora {
namespace {

enum class Tag : std::uint8_t { account, number, opening, closing, booking, information, end, other };

struct TagText {
    char text[6];
    std::uint8_t length;
    Tag tag;
};

// The commonest first.
constexpr TagText tags[] = {
    {":61:", 4, Tag::booking},  {":86:", 4, Tag::information}, {":25:", 4, Tag::account},
    {":28C:", 5, Tag::number},  {":28:", 4, Tag::number},      {":60F:", 5, Tag::opening},
    {":60M:", 5, Tag::opening}, {":62F:", 5, Tag::closing},    {":62M:", 5, Tag::closing},
};
constexpr TagText end_tag{"-", 1, Tag::end};
constexpr TagText no_tag{"", 0, Tag::other};

struct Line {
    char* begin;
    char* end;  // at its CR LF or the end of the text
    char* next; // the line after it

    // The character at an offset, or the line's end where the line is shorter.
    char* at(std::ptrdiff_t offset) const { return end - begin > offset ? begin + offset : end; }
};

// A line of another tag, and one that continues the line before it, has none.
const TagText& find_tag(const Line& line) {
    if (*line.begin == '-') return end_tag;
    if (line.end - line.begin < 4 || *line.begin != ':') return no_tag;
    for (const TagText& tag : tags)
        if (std::memcmp(tag.text, line.begin, 4) == 0 && (tag.length == 4 || line.begin[4] == ':'))
            return tag;
    return no_tag;
}

struct Reader {
    RecordPool& records;
    sepa_stmt_tx_t* booking; // the last one read, of this statement or of an earlier one
    char* next_n;            // the first "N" from where it was last looked for
};

enum class Outcome : std::uint8_t { understood, malformed, no_memory };

template <typename Record>
void append(Record*& first, Record*& last, Record* record) {
    (first == nullptr ? first : last->next) = record;
    last = record;
}

struct Date {
    int year = 0; // two digits
    int month = 0;
    int day = 0;
};

bool scan_date(char* text, Date& date) {
    if (are_digits(text, 6)) {
        date = {two_digits(text), two_digits(text + 2), two_digits(text + 4)};
        return true;
    }
    for (int* part : {&date.year, &date.month, &date.day}) {
        std::uint32_t number = 0;
        if (!scan_number(text, 2, number)) return false;
        *part = static_cast<int>(number);
    }
    return true;
}

// Years below 80 are of this century.
void set_date(struct tm& field, const Date& date) {
    field.tm_mday = date.day;
    field.tm_mon = date.month - 1;
    field.tm_year = date.year < 80 ? date.year + 100 : date.year;
}

Outcome read_statement_number(sepa_stmt_t& statement, char* text, const Line& line) {
    const bool paged = std::memchr(text, '/', static_cast<std::size_t>(line.end - text)) != nullptr;
    if (!scan_number(text, any_width, statement.number)) return Outcome::malformed;
    if (!paged)
        statement.page = 0;
    else if (*text != '/' || !scan_number(++text, any_width, statement.page))
        return Outcome::malformed;
    return Outcome::understood;
}

// Mark, date, currency and amount stand at fixed places: ":60F:C230131EUR1234,56".
Outcome read_balance(const Line& line, struct tm& day, char (&currency)[4], double& saldo) {
    Date date;
    if (!scan_date(line.at(6), date)) return Outcome::malformed;
    set_date(day, date);
    const char* const code = line.at(12);
    char* const amount = line.at(15);
    std::memcpy(currency, code, static_cast<std::size_t>(amount - code));
    const auto length = std::min<std::ptrdiff_t>(line.end - amount, 15);
    if (void* comma = std::memchr(amount, ',', static_cast<std::size_t>(length)))
        *static_cast<char*>(comma) = '.';
    const double value = amount < line.end ? __sepa_strtod(amount, nullptr) : 0;
    saldo = *line.at(5) == 'D' ? -value : value;
    return Outcome::understood;
}

// Reads the booking date behind the value date, if there is one; its year is the one nearest to the value
// date. Returns the rest of the line.
char* read_booking_date(sepa_stmt_tx_t& booking, const Date& value, char* rest) {
    if (!are_digits(rest, 4)) return rest;
    Date date{value.year, two_digits(rest), two_digits(rest + 2)};
    if (value.month == 1 && date.month == 12) --date.year;
    if (value.month == 12 && date.month == 1) ++date.year;
    set_date(booking.booked, date);
    return rest + 4;
}

// The number as __sepa_strtod() reads it once its comma, in front of `end`, is a point; and the same number
// exactly.
double read_amount(char* text, const char* end, std::int64_t& exact) {
    const auto has_exponent = [](const char* behind) { return *behind == 'E' || *behind == 'e'; };
    constexpr std::ptrdiff_t all_digits_count = 15; // in a double
    Decimal decimal = scan_decimal(text, ',');
    if (!decimal.empty && decimal.end - text <= all_digits_count && !has_exponent(decimal.end)) {
        exact = decimal.exact();
        return decimal.nearest();
    }
    if (void* comma = std::memchr(text, ',', static_cast<std::size_t>(end - text)))
        *static_cast<char*>(comma) = '.';
    const double value = __sepa_strtod(text, nullptr);
    while (is_space(*text))
        ++text;
    const bool negative = *text == '-';
    decimal = scan_decimal(*text == '-' || *text == '+' ? text + 1 : text);
    exact = has_exponent(decimal.end) ? nearest_exact(value < 0 ? -value : value) : decimal.exact();
    if (negative && exact != no_exact_amount) exact = -exact;
    return value;
}

// ":61:2301310131RC12,50NMSCreference//bank reference"
Outcome read_booking(Reader& reader, sepa_stmt_t& statement, const Line& line) {
    auto* const piece = reader.records.allocate<PlainBookingPiece>();
    if (piece == nullptr) return Outcome::no_memory;
    sepa_stmt_tx_t* const booking = &piece->booking;
    std::memcpy(piece->currency, statement.openCurrency, sizeof piece->currency);
    append(statement.first_tx, statement.last_tx, booking);
    reader.booking = booking;

    Date value;
    if (!scan_date(line.at(4), value)) return Outcome::malformed;
    set_date(booking->valuta, value);
    char* rest = read_booking_date(*booking, value, line.at(10));

    const auto next = [&] { return rest != line.end ? *rest++ : '\0'; };
    char mark = next();
    if (mark == 'R') {
        booking->reversal = 1;
        mark = next();
    }
    if (is_letter(*rest)) ++rest; // funds code

    // Deliberate: the "N" may stand on a later line, as it always could. What has been searched for one
    // booking is not searched again for the next.
    if (reader.next_n < rest) reader.next_n = strchrnul(rest, 'N');
    char* const n = reader.next_n;
    if (*n == '\0') return Outcome::malformed;
    const double amount = read_amount(rest, std::min(n, line.end), piece->signed_amount);
    // Deliberate: a debit counts 255 times, the eight bits of -1; programs tell debits by that.
    const std::uint8_t factor = mark == 'D' ? 255 : 1;
    booking->amount = factor * amount;
    // The reversal of a credit takes money off the account, that of a debit does not, whatever the factor.
    if ((mark == 'D') != (booking->reversal != 0)) {
        piece->debit = 1;
        if (piece->signed_amount != no_exact_amount) piece->signed_amount = -piece->signed_amount;
    }

    for (int i = 0; i < 3 && n[i + 1] != '\0'; ++i)
        booking->code[i] = n[i + 1];
    booking->ref = line.end - n > 4 ? n + 4 : line.end;
    *line.end = '\0';
    for (char* at = booking->ref; at < line.end; ++at) {
        if (at[0] != '/' || at[1] != '/') continue;
        booking->bankref = at + 2;
        *at = '\0';
        break;
    }
    return Outcome::understood;
}

// Reads the lines of a statement. Returns where the reading stopped: at the line that ends the statement or
// that it cannot understand, or at the end of the text. Null without memory.
char* read_lines(Reader& reader, sepa_stmt_t& statement, char* at) {
    while (*at != '\0') {
        char* const end = find_line_end(at);
        const Line line{at, end, *end == '\0' ? end : end + 2};
        const TagText& tag = find_tag(line);
        char* const content = line.begin + tag.length;

        at = line.next;
        Outcome outcome = Outcome::understood;
        switch (tag.tag) {
        case Tag::account:
            statement.account = content;
            *line.end = '\0';
            break;
        case Tag::number:
            outcome = read_statement_number(statement, content, line);
            break;
        case Tag::opening:
            outcome = read_balance(line, statement.openDate, statement.openCurrency, statement.openSaldo);
            break;
        case Tag::closing:
            outcome = read_balance(line, statement.closeDate, statement.closeCurrency, statement.closeSaldo);
            break;
        case Tag::booking:
            outcome = read_booking(reader, statement, line);
            break;
        case Tag::information:
            // Deliberate: the booking may be one of an earlier statement, as docs/peculiarities.md tells.
            if (reader.booking == nullptr) return line.begin;
            at = read_information(*reader.booking, content, line.end);
            break;
        case Tag::end:
            return line.begin;
        case Tag::other:
            // Deliberate: a further ":20:" is skipped, too. A statement that no "-" closes takes in what
            // follows: that is how pages without "-" become one statement.
            break;
        }
        if (outcome == Outcome::malformed) return line.begin;
        if (outcome == Outcome::no_memory) return nullptr;
    }
    return at;
}

// Deliberate: only CR LF ends lines, and a file's first byte does not begin one. Format 940 reads the others.
constexpr char statement_start[] = "\r\n:20:";

// False without memory.
bool read_statements(sepa_stmt_parser_t& parser, char* text) {
    Reader reader{parser.input->records, nullptr, text};
    for (char* at = text; (at = std::strstr(at, statement_start)) != nullptr;) {
        auto* statement = reader.records.allocate<sepa_stmt_t>();
        if (statement == nullptr) return false;
        statement->ref = at + sizeof statement_start - 1;
        char* const end = find_line_end(statement->ref);
        if (*end == '\0') break; // a statement that is cut off in its first line is dropped
        *end = '\0';
        at = read_lines(reader, *statement, end + 2);
        if (at == nullptr) return false;
        append(parser.first, parser.last, statement);
    }
    return true;
}

} // namespace

int load_mt940(sepa_stmt_parser_t& parser) {
    char* const text = parser.input->text.data();
    // Deliberate: a zero byte in front fails without a text, as it always did.
    if (*text == '\0') return 0;
    return read_statements(parser, text) ? 1 : parser.error.fail("Out of memory");
}

} // namespace velmora
