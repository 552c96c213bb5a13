#include "statement/tolerant.h"

#include <cstring>

#include "base/ascii.h"
#include "statement/load.h"
#include "statement/scan.h"

namespace velmora::tolerant {
namespace {

// Reads blanks and a number behind them; false when there is none. A number beyond 32 bits is 0.
bool read_number(char*& at, std::uint32_t& number) {
    while (*at == ' ')
        ++at;
    if (!is_digit(*at)) return false;
    bool overflow = false;
    for (number = 0; is_digit(*at); ++at)
        overflow |= __builtin_mul_overflow(number, 10U, &number) ||
                    __builtin_add_overflow(number, static_cast<std::uint32_t>(*at - '0'), &number);
    if (overflow) number = 0;
    return true;
}

bool end_statement(Reader& reader) {
    if (reader.statement == nullptr) return true;
    if (!end_booking(reader)) return false;
    sepa_stmt_t& statement = reader.statement->statement;
    sepa_stmt_info_t& info = reader.statement->info;
    if (!reader.statement_text.take(reader.records, info.text)) return reader.no_memory();
    if (!reader.balances.empty()) {
        char* const copy = reader.records.copy_text(reader.balances.view());
        if (copy == nullptr) return reader.no_memory();
        info.balances = reinterpret_cast<const sepa_stmt_balance_t*>(copy);
        info.balanceCount =
            static_cast<std::uint32_t>(reader.balances.view().size() / sizeof(sepa_stmt_balance_t));
        reader.balances.clear();
    }
    const bool opened = statement.openCurrency[0] != '\0';
    std::memcpy(info.currency, opened ? statement.openCurrency : statement.closeCurrency,
                sizeof info.currency);
    if (reader.lacks_currency)
        for (sepa_stmt_tx_t* booking = statement.first_tx; booking != nullptr; booking = booking->next)
            std::memcpy(reinterpret_cast<BookingPiece*>(booking)->info.currency, info.currency,
                        sizeof info.currency);
    reader.lacks_currency = false;
    reader.statement = nullptr;
    return true;
}

bool begin_statement(Reader& reader, const Field& field) {
    if (!end_statement(reader)) return false;
    reader.statement = reader.records.allocate<StatementPiece>();
    if (reader.statement == nullptr) return reader.no_memory();
    reader.entries = 0;
    sepa_stmt_t& statement = reader.statement->statement;
    sepa_stmt_parser_t& parser = reader.parser;
    (parser.first == nullptr ? parser.first : parser.last->next) = &statement;
    parser.last = &statement;
    statement.ref = const_cast<char*>(trim(field.begin, field.end).data());
    reader.statement->info.kind = SEPA_STMT_FORMAT_MT940_TOLERANT;
    reader.statement->info.lastPage = 1;
    return true;
}

bool read_account(Reader& reader, const Field& field) {
    const std::string_view account = trim(field.begin, field.end);
    sepa_stmt_t& statement = reader.statement->statement;
    if (statement.account != nullptr) return add_text(reader, reader.statement_text, account);
    statement.account = const_cast<char*>(account.data());
    return true;
}

// "5/1", "5", " /1"
bool read_statement_number(Reader& reader, const Field& field) {
    sepa_stmt_t& statement = reader.statement->statement;
    const std::string_view text = trim(field.begin, field.end);
    char* at = const_cast<char*>(text.data());
    read_number(at, statement.number);
    while (*at == ' ')
        ++at;
    if (*at == '/') read_number(++at, statement.page);
    while (*at == ' ')
        ++at;
    return *at == '\0' || add_text(reader, reader.statement_text, text);
}

// "C261001EUR18412,37". The reason, or null.
const char* scan_balance(const Field& field, sepa_stmt_balance_t& balance) {
    const std::string_view text = trim(field.begin, field.end);
    char* at = const_cast<char*>(text.data());
    const char* const end = at + text.size();
    const bool is_debit = *at == 'D';
    if (*at != 'C' && *at != 'D') return "a balance that is neither credit nor debit";
    if (!read_date(++at, balance.date)) return "a balance without a date";
    at += 6;
    for (int i = 0; i < 3; ++i, ++at) {
        if (!is_letter(*at)) return "a balance without a currency";
        balance.currency[i] = *at;
    }
    std::int64_t exact = 0;
    if (!read_amount(at, end, exact, balance.amount) || at != end) return "the amount of a balance";
    if (is_debit && exact != 0) balance.amount = -balance.amount;
    return nullptr;
}

bool read_balance(Reader& reader, const Field& field) {
    sepa_stmt_t& statement = reader.statement->statement;
    sepa_stmt_balance_t balance{};
    const bool is_needed = field.tag == Tag::opening || field.tag == Tag::closing;
    if (const char* const reason = scan_balance(field, balance))
        return !is_needed || reader.fail(field.line, reason);
    balance.interim = field.is_intermediate ? 1 : 0;
    std::memcpy(balance.code,
                field.tag == Tag::opening     ? "OPBD"
                : field.tag == Tag::closing   ? "CLBD"
                : field.tag == Tag::available ? "CLAV"
                                              : "FWAV",
                sizeof balance.code);
    if (field.tag == Tag::opening && statement.openCurrency[0] == '\0') {
        statement.openDate = balance.date;
        statement.openSaldo = balance.amount;
        std::memcpy(statement.openCurrency, balance.currency, sizeof balance.currency);
    } else if (field.tag == Tag::closing) {
        statement.closeDate = balance.date;
        statement.closeSaldo = balance.amount;
        std::memcpy(statement.closeCurrency, balance.currency, sizeof balance.currency);
        reader.statement->info.lastPage = field.is_intermediate ? 0 : 1;
    }
    return reader.balances.append({reinterpret_cast<const char*>(&balance), sizeof balance}) ||
           reader.no_memory();
}

// What a field's other lines hold, if nothing else reads them.
bool keep_other_lines(Reader& reader, const Field& field) {
    for (char *at = field.rest, *next; at < field.rest_end; at = next) {
        const std::string_view text = trim(at, reader.lines.find_end(at, next));
        if (!is_lone_hyphen(text) && !add_text(reader, reader.statement_text, text)) return false;
    }
    return true;
}

// ":25P:" has the bank's BIC on a line of its own.
bool read_bic(Reader& reader, Field& field) {
    sepa_stmt_info_t& info = reader.statement->info;
    if (field.rest == field.rest_end || info.bic[0] != '\0') return true;
    char* const line = field.rest;
    char* const end = reader.lines.find_end(line, field.rest);
    const std::string_view bic = trim(line, end);
    if (!looks_like_bic(bic)) return add_text(reader, reader.statement_text, bic);
    std::memcpy(info.bic, bic.data(), bic.size());
    return true;
}

bool read_field(Reader& reader, Field& field) {
    if (field.tag == Tag::none) return true;
    if (field.tag == Tag::header || field.tag == Tag::end) return end_statement(reader);
    if (reader.statement == nullptr && field.tag != Tag::reference) {
        switch (field.tag) {
        case Tag::booking:
        case Tag::text:
        case Tag::opening:
        case Tag::closing:
            return reader.fail(field.line, "no statement has begun");
        default:
            return true; // a header of the bank's own
        }
    }
    switch (field.tag) {
    case Tag::reference:
        return begin_statement(reader, field) && keep_other_lines(reader, field);
    case Tag::account:
        return read_account(reader, field) && read_bic(reader, field) && keep_other_lines(reader, field);
    case Tag::number:
        return read_statement_number(reader, field) && keep_other_lines(reader, field);
    case Tag::opening:
        return read_balance(reader, field) && keep_other_lines(reader, field);
    case Tag::closing:
    case Tag::available:
    case Tag::forward:
        return end_booking(reader) && read_balance(reader, field) && keep_other_lines(reader, field);
    case Tag::totals:
        return end_booking(reader);
    case Tag::booking:
        return end_booking(reader) && read_booking(reader, field);
    case Tag::text:
        return read_information(reader, field);
    default:
        return true;
    }
}

bool read_statements(Reader& reader) {
    Lines& lines = reader.lines;
    if (lines.begin() == lines.end()) return true;
    Line line;
    lines.read(lines.begin(), line);
    for (bool more = true; more;) {
        Field field{
            line.tag, line.is_intermediate, reader.line + 1, line.content, line.end, line.next, line.next,
            -1};
        for (;;) {
            ++reader.line;
            field.rest_end = line.next;
            if (field.rest_lines >= 0 && field.rest_lines < Reader::most_line_ends)
                reader.line_ends[field.rest_lines] = {line.end, line.next};
            ++field.rest_lines;
            more = line.next != lines.end();
            if (!more) break;
            if (line.next == line.end) return reader.fail(reader.line, "a zero byte");
            lines.read(line.next, line);
            if (line.tag != Tag::none && (line.tag != Tag::end || lines.ends_statement(line))) break;
        }
        if (!read_field(reader, field)) return false;
    }
    return end_statement(reader);
}

} // namespace

bool Reader::fail(unsigned at, const char* reason) {
    return parser.error.fail("Line %u: %s", at, reason) != 0;
}

char* join_lines(const Reader& reader, const Field& field, Join how) {
    constexpr std::ptrdiff_t full_line = 65;
    const auto is_full = [&](const char* begin, const char* end) {
        return end - begin >= full_line && reader.lines.count_characters(begin, end) >= full_line;
    };
    char* out = field.end;
    bool needs_blank = how == Join::as_cut && !is_full(field.begin, field.end);
    const bool is_remembered = field.rest_lines <= Reader::most_line_ends;
    char *at = field.rest, *end, *next;
    for (int line = 0; at < field.rest_end; ++line, at = next) {
        if (is_remembered) {
            end = reader.line_ends[line].end;
            next = reader.line_ends[line].next;
        } else {
            end = reader.lines.find_end(at, next);
        }
        if (at == end) continue;
        if (needs_blank) {
            while (out != field.begin && out[-1] == ' ')
                --out;
            if (out != field.begin) *out++ = ' ';
        }
        needs_blank = how == Join::as_cut && !is_full(at, end);
        const auto length = static_cast<std::size_t>(end - at);
        std::memmove(out, at, length);
        out += length;
    }
    *out = '\0';
    return out;
}

std::string_view trim(char* begin, char* end) {
    while (begin != end && *begin == ' ')
        ++begin;
    while (begin != end && end[-1] == ' ')
        --end;
    *end = '\0';
    return {begin, static_cast<std::size_t>(end - begin)};
}

bool add_text(Reader& reader, JoinedText& text, std::string_view piece) {
    return piece.empty() || text.add(const_cast<char*>(piece.data()), piece.size(), '\n') ||
           reader.no_memory();
}

bool end_booking(Reader& reader) {
    if (reader.booking == nullptr) return true;
    char*& text = reader.booking->info.text;
    reader.booking = nullptr;
    return reader.booking_text.take(reader.records, text) || reader.no_memory();
}

} // namespace velmora::tolerant

int velmora::load_tolerant(sepa_stmt_parser_t& parser) {
    tolerant::Reader reader(parser);
    if (!tolerant::read_statements(reader)) return 0;
    const std::uint8_t is_utf8 = reader.lines.is_utf8() ? 1 : 0;
    for (sepa_stmt_t* statement = parser.first; statement != nullptr; statement = statement->next)
        reinterpret_cast<StatementPiece*>(statement)->info.utf8 = is_utf8;
    return 1;
}
