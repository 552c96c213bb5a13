// The booking line (":61:") of format 940, and the amounts and dates in it.
#include <algorithm>
#include <cstring>

#include "base/ascii.h"
#include "base/exact_amount.h"
#include "statement/scan.h"
#include "statement/tolerant.h"

namespace velmora::tolerant {
namespace {

// Years below 80 are of this century. False for a month or a day that no calendar has; which days a month has
// is the bank's affair.
bool set_date(int year, int month, int day, struct tm& date) {
    if (month < 1 || month > 12 || day < 1 || day > 31) return false;
    date.tm_mday = day;
    date.tm_mon = month - 1;
    date.tm_year = year < 80 ? year + 100 : year;
    return true;
}

// Four digits, or four blanks or zeros for no date. The year is the one nearest to the value date.
bool read_booking_date(char*& at, const struct tm& value, struct tm& booked) {
    if (are_digits(at, 4)) {
        const int month = two_digits(at), day = two_digits(at + 2);
        at += 4;
        if (month == 0 && day == 0) return true;
        int year = value.tm_year % 100;
        if (value.tm_mon == 0 && month == 12) --year;
        if (value.tm_mon == 11 && month == 1) ++year;
        return set_date((year + 100) % 100, month, day, booked);
    }
    while (*at == ' ')
        ++at;
    return true;
}

struct Mark {
    bool is_debit = false;
    bool is_reversal = false;
};

// C, D, RC, RD, EC or ED and the third letter of the currency, which may be missing.
bool read_mark(char*& at, Mark& mark) {
    mark.is_reversal = *at == 'R';
    if (mark.is_reversal || *at == 'E') ++at; // expected ones, where a bank writes them, count like others
    if (*at != 'C' && *at != 'D') return false;
    mark.is_debit = (*at == 'D') != mark.is_reversal;
    ++at;
    if (is_letter(*at)) ++at;
    return true;
}

// "NTRF", "FMSC", "S103". A reference may stand in its place: most often "NONREF".
bool has_type(const char* at) {
    if (std::memcmp(at, "NONREF", 6) == 0) return false; // there are zeros behind the file
    const auto three = [&](bool (*fits)(char)) { return fits(at[1]) && fits(at[2]) && fits(at[3]); };
    switch (*at) {
    case 'N':
    case 'F':
        return three([](char c) { return is_letter_or_digit(c); });
    case 'S':
        return three([](char c) { return is_digit(c); });
    default:
        return false;
    }
}

void read_references(sepa_stmt_tx_t& booking, char* at, char* end) {
    booking.ref = at;
    for (; at != end; ++at) {
        if (at[0] != '/' || at[1] != '/') continue;
        const std::string_view bank_reference = trim(at + 2, end);
        if (!bank_reference.empty()) booking.bankref = const_cast<char*>(bank_reference.data());
        break;
    }
    booking.ref = const_cast<char*>(trim(booking.ref, at).data());
}

// The reason why the line cannot be read, or null.
const char* scan_booking(BookingPiece& piece, char* at, char* end) {
    sepa_stmt_tx_t& booking = piece.booking;
    if (!read_date(at, booking.valuta)) return "a booking without a value date";
    at += 6;
    if (!read_booking_date(at, booking.valuta, booking.booked)) return "a booking date that no calendar has";
    Mark mark;
    if (!read_mark(at, mark)) return "a booking that is neither credit nor debit";
    std::int64_t exact = 0;
    double nearest = 0;
    if (!read_amount(at, end, exact, nearest)) return "the amount of a booking";

    booking.reversal = mark.is_reversal ? 1 : 0;
    booking.amount = mark.is_debit && exact != 0 ? -nearest : nearest;
    piece.info.debit = mark.is_debit ? 1 : 0;
    piece.info.signedAmount = mark.is_debit ? -exact : exact;
    piece.info.entryAmount = booking.amount;
    std::memcpy(piece.info.status, "BOOK", sizeof piece.info.status);
    if (has_type(at)) {
        std::memcpy(booking.code, at + 1, 3);
        at += 4;
    }
    read_references(booking, at, end);
    return nullptr;
}

} // namespace

bool read_date(const char* digits, struct tm& date) {
    if (!are_digits(digits, 6)) return false;
    const int year = two_digits(digits), month = two_digits(digits + 2), day = two_digits(digits + 4);
    return (year == 0 && month == 0 && day == 0) || set_date(year, month, day, date);
}

bool read_amount(char*& at, const char* end, std::int64_t& exact, double& nearest) {
    // With a comma behind them, points may part groups of three digits.
    char* const begin = at;
    Decimal amount{begin, nullptr, 0, 0, true, false};
    std::ptrdiff_t points = 0, group = 0;
    bool groups_fit = true, has_comma = false;
    for (; at != end; ++at) {
        if (is_digit(*at)) {
            amount.empty = false;
            amount.overflow |=
                __builtin_mul_overflow(amount.number, 10U, &amount.number) ||
                __builtin_add_overflow(amount.number, static_cast<unsigned>(*at - '0'), &amount.number);
            ++group;
        } else if (*at == '.' && !has_comma) {
            groups_fit &= points == 0 ? group >= 1 && group <= 3 : group == 3;
            ++points;
            group = 0;
        } else if (*at == ',' && !has_comma) {
            groups_fit &= points == 0 || group == 3;
            has_comma = true;
            group = 0;
        } else {
            break;
        }
    }
    amount.decimals = static_cast<int>(std::min<std::ptrdiff_t>(group, 1000));
    if (has_comma ? !groups_fit : points > 1 || (points == 1 && group > 2)) return false;
    if (!has_comma && points == 0) amount.decimals = 0;
    const char* const number_end = at;
    while (at != end && *at == ' ')
        ++at;
    // Half of an amount is none: "1'234,56", "1 234,56", "1,2,3".
    const bool goes_on = at == number_end ? at != end && std::strchr(".,'-+", *at) != nullptr
                                          : !has_comma && points == 0 && is_digit(*at);
    if (goes_on) return false;
    exact = amount.exact();
    if (amount.empty || exact == no_exact_amount) return false;
    if (amount.decimals > exact_decimals) {
        amount.number = static_cast<std::uint64_t>(exact);
        amount.decimals = exact_decimals;
    }
    nearest = amount.nearest();
    return true;
}

bool read_booking(Reader& reader, const Field& field) {
    sepa_stmt_t& statement = reader.statement->statement;
    auto* const piece = reader.records.allocate<BookingPiece>();
    if (piece == nullptr) return reader.no_memory();
    (statement.first_tx == nullptr ? statement.first_tx : statement.last_tx->next) = &piece->booking;
    statement.last_tx = &piece->booking;
    reader.booking = piece;
    reader.has_information = false;

    *field.end = '\0';
    if (const char* const reason = scan_booking(*piece, field.begin, field.end))
        return reader.fail(field.line, reason);
    piece->info.entry = ++reader.entries;
    std::memcpy(piece->info.currency, statement.openCurrency, sizeof piece->info.currency);
    if (statement.openCurrency[0] == '\0') reader.lacks_currency = true;

    for (char *at = field.rest, *next; at < field.rest_end; at = next) {
        std::string_view text = trim(at, reader.lines.find_end(at, next));
        if (text.starts_with("//") && text.size() > 2 && piece->booking.bankref == nullptr)
            piece->booking.bankref = const_cast<char*>(text.data()) + 2;
        else if (!is_lone_hyphen(text) && !add_text(reader, reader.booking_text, text))
            return false;
    }
    return true;
}

} // namespace velmora::tolerant
