// statement: bookings, balances and sums of account statements as a table.
#include "interrupt.h"
#include "output.h"
#include "plot.h"
#include "statements.h"
#include "subcommands.h"

#include <algorithm>

namespace velmora::tool {
namespace {

constexpr Column booking_columns[] = {
    {"booked"},
    {"valuta"},
    {"amount", Kind::number},
    {"currency"},
    {"name"},
    {"account", Kind::account},
    {"bank"},
    {"svwz"},
    {"eref"},
    {"mref"},
    {"cred"},
    {"gvc", Kind::number},
    {"reason", Kind::text, true},
};
constexpr Column status_column = {"status"}, own_column = {"own", Kind::account};
constexpr Column balance_columns[] = {{"account", Kind::account},
                                      {"number", Kind::number},
                                      {"page", Kind::number},
                                      {"code", Kind::text, true},
                                      {"date"},
                                      {"amount", Kind::number},
                                      {"currency"},
                                      {"interim", Kind::boolean}};
constexpr Column sum_columns[] = {{"account", Kind::account},
                                  {"number", Kind::number},
                                  {"page", Kind::number},
                                  {"opening", Kind::number},
                                  {"bookings", Kind::number},
                                  {"closing", Kind::number},
                                  {"currency"},
                                  {"ok", Kind::boolean, true},
                                  {"difference", Kind::number}};

// A statement's sums in 1/100,000; pages that belong together have one.
struct Sums {
    std::int64_t opening, bookings, closing, difference;
    int proved; // 1, 0, -1 when there is nothing to compare
};

class StatementTable {
public:
    explicit StatementTable(const Options& options);
    Exit run();

private:
    std::span<const Column> columns();
    void write_all_of(const List<Statement>& statements);
    void write_bookings(const Statement& statement);
    void write_booking(const Statement& statement, const sepa_stmt_tx_t& booking,
                       const sepa_stmt_tx_info_t* info);
    void write_balances(const Statement& statement);
    void write_sums(const Statement& first, const Statement& last, const Sums& sums);
    void write_text(const Statement& statement, const char* text);
    void write_day(const std::tm& day);
    [[nodiscard]] bool is_wanted(const sepa_stmt_tx_t& booking) const;
    static Sums sums_of(const Statement& statement);
    void check(const Statement& statement, const Statement& last, const Sums& sums);
    void complain(const Statement& statement, Text text);
    std::size_t pages_of(const List<Statement>& statements, std::size_t first);

    const Options& options_;
    const bool entries_, pending_;
    Statements statements_;
    List<Column> columns_;
    Output out_;
    Plot plot_;
    std::uint64_t pending_left_out_ = 0;
    Exit end_ = Exit::good;
};

void check_day(const Options& options, Opt option) {
    if (!options.given(option)) return;
    const Text day = options.value(option);
    if (day.size() != 10 || day[4] != '-' || day[7] != '-' || !all_digits(piece(day, 0, 4)) ||
        !all_digits(piece(day, 5, 2)) || !all_digits(piece(day, 8)))
        fail_usage(options.subcommand(), "a day is written YYYY-MM-DD, not", day);
}

StatementTable::StatementTable(const Options& options)
    : options_(options), entries_(options.given(Opt::entries)), pending_(options.given(Opt::pending)),
      statements_(options), out_(options, wanted_form(options), columns()) {
    check_day(options, Opt::from);
    check_day(options, Opt::to);
    if (options.given(Opt::balances) && options.given(Opt::sums))
        fail_usage(sub::statement, "--balances and --check exclude each other");
    if (options.operands().empty()) fail_usage(sub::statement, "which files? - is standard input");
}

std::span<const Column> StatementTable::columns() {
    if (options_.given(Opt::sums)) return sum_columns;
    if (options_.given(Opt::balances)) return balance_columns;
    if (options_.given(Opt::own)) columns_.add(own_column);
    for (const Column& column : booking_columns)
        columns_.add(column);
    if (pending_) columns_.add(status_column);
    return columns_;
}

void StatementTable::complain(const Statement& statement, Text text) {
    Buffer key;
    if (statement.record->account != nullptr) {
        if (options_.given(Opt::mask))
            append_masked(key, statement.record->account);
        else
            key << statements_.text(*statement.file, statement.record->account);
        key << ' ';
    }
    key << "statement " << statement.record->number;
    if (statement.record->page > 0) key << " page " << statement.record->page;
    report({.file = statement.file->name, .key = key.view(), .text = text});
    end_ = worse(end_, Exit::refused);
}

Sums StatementTable::sums_of(const Statement& statement) {
    const sepa_stmt_t& record = *statement.record;
    Sums sums{hundred_thousandths(record.openSaldo), 0, hundred_thousandths(record.closeSaldo), 0, -1};
    for (const sepa_stmt_tx_t* booking = record.first_tx; booking != nullptr; booking = booking->next) {
        const sepa_stmt_tx_info_t* info = sepa_stmt_parser_getTxInfo(statement.file->parser, booking);
        // What does not fit is the library's to say: it proves nothing then.
        if (is_booked(info) && info != nullptr && info->signedAmount != INT64_MAX &&
            __builtin_add_overflow(sums.bookings, info->signedAmount, &sums.bookings))
            break;
    }
    double difference = 0;
    sums.proved = sepa_stmt_parser_check(statement.file->parser, statement.record, &difference);
    sums.difference = hundred_thousandths(difference);
    return sums;
}

void StatementTable::check(const Statement& statement, const Statement& last, const Sums& sums) {
    if (options_.given(Opt::sums)) write_sums(statement, last, sums);
    if (sums.proved != 0) return;
    Buffer text;
    text << "the sums do not meet: the difference is ";
    append_amount(text, sums.difference);
    complain(statement, text.view());
}

void StatementTable::write_text(const Statement& statement, const char* text) {
    const Text value = statements_.text(*statement.file, text);
    value.empty() ? out_.null() : out_.text(value);
}

void StatementTable::write_day(const std::tm& day) {
    out_.text_or_null(DayText(day).text);
}

bool StatementTable::is_wanted(const sepa_stmt_tx_t& booking) const {
    const DayText day(booking.booked.tm_mday > 0 ? booking.booked : booking.valuta);
    return (!options_.given(Opt::from) || Text(day.text) >= options_.value(Opt::from)) &&
           (!options_.given(Opt::to) || Text(day.text) <= options_.value(Opt::to));
}

void StatementTable::write_booking(const Statement& statement, const sepa_stmt_tx_t& booking,
                                   const sepa_stmt_tx_info_t* info) {
    // One row for a batch tells nothing of the single payments.
    const bool batch = entries_ && info != nullptr && info->part > 0 && info->parts > 1;
    const auto write_part = [&](const char* text) { write_text(statement, batch ? nullptr : text); };
    if (options_.given(Opt::own)) write_text(statement, statement.record->account);
    write_day(booking.booked);
    write_day(booking.valuta);
    if (batch)
        out_.amount(hundred_thousandths(info->entryAmount));
    else if (info != nullptr && info->signedAmount != INT64_MAX)
        out_.amount(info->signedAmount);
    else
        out_.amount(hundred_thousandths(booking.amount));
    write_text(statement, info == nullptr ? nullptr : info->currency);
    write_part(info != nullptr && info->fullName != nullptr ? info->fullName : booking.name);
    write_part(booking.account);
    write_part(booking.bank);
    write_text(statement, batch ? booking.txtext : booking.svwz != nullptr ? booking.svwz : booking.purpose);
    write_part(booking.eref);
    write_part(booking.mref);
    write_part(booking.cred);
    booking.gvc > 0 ? out_.number(booking.gvc) : out_.null();
    write_part(info == nullptr ? nullptr : info->returnReason);
    if (pending_) write_text(statement, info == nullptr ? nullptr : info->status);
    out_.end_row();
}

void StatementTable::write_bookings(const Statement& statement) {
    std::uint32_t last_entry = 0;
    for (const sepa_stmt_tx_t* booking = statement.record->first_tx; booking != nullptr;
         booking = booking->next) {
        const sepa_stmt_tx_info_t* info = sepa_stmt_parser_getTxInfo(statement.file->parser, booking);
        if (!is_wanted(*booking)) continue;
        if (!is_booked(info) && !pending_) {
            ++pending_left_out_;
            continue;
        }
        const bool same_entry = info != nullptr && info->part > 0 && info->entry == last_entry;
        if (info != nullptr) last_entry = info->entry;
        if (!entries_ || !same_entry) write_booking(statement, *booking, info);
    }
}

void StatementTable::write_balances(const Statement& statement) {
    const sepa_stmt_t& record = *statement.record;
    const auto write = [&](Text code, const std::tm& day, double amount, const char* currency, bool interim) {
        write_text(statement, record.account);
        out_.number(record.number);
        record.page > 0 ? out_.number(record.page) : out_.null();
        out_.text(code);
        write_day(day);
        out_.amount(hundred_thousandths(amount));
        out_.text_or_null(currency);
        out_.boolean(interim);
        out_.end_row();
    };
    if (statement.info == nullptr) {
        if (record.openCurrency[0] != '\0')
            write("OPBD", record.openDate, record.openSaldo, record.openCurrency, false);
        if (record.closeCurrency[0] != '\0')
            write("CLBD", record.closeDate, record.closeSaldo, record.closeCurrency, false);
        return;
    }
    for (std::uint32_t i = 0; i < statement.info->balanceCount; ++i) {
        const sepa_stmt_balance_t& balance = statement.info->balances[i];
        write(balance.code, balance.date, balance.amount, balance.currency, balance.interim != 0);
    }
}

void StatementTable::write_sums(const Statement& first, const Statement& last, const Sums& sums) {
    const sepa_stmt_t& record = *first.record;
    write_text(first, record.account);
    out_.number(record.number);
    record.page > 0 && first.record == last.record ? out_.number(record.page) : out_.null();
    const bool has_balances = sums.proved >= 0;
    has_balances ? out_.amount(sums.opening) : out_.null();
    out_.amount(sums.bookings);
    has_balances ? out_.amount(sums.closing) : out_.null();
    out_.text_or_null(record.openCurrency[0] != '\0' ? record.openCurrency : record.closeCurrency);
    has_balances ? out_.boolean(sums.proved == 1) : out_.null();
    has_balances ? out_.amount(sums.difference) : out_.null();
    out_.end_row();
}

bool is_same_text(const char* a, const char* b) {
    return (a == nullptr ? Text() : Text(a)) == (b == nullptr ? Text() : Text(b));
}

int year_of(const sepa_stmt_t& record) {
    return record.closeDate.tm_mday > 0 ? record.closeDate.tm_year : record.openDate.tm_year;
}

bool is_same_statement(const Statement& a, const Statement& b) {
    return is_same_text(a.record->account, b.record->account) && a.record->number == b.record->number &&
           year_of(*a.record) == year_of(*b.record);
}

// By account, year, number and page, otherwise as they came.
bool is_before(const Statement& a, const Statement& b) {
    const auto account = [](const Statement& one) {
        return one.record->account == nullptr ? Text() : Text(one.record->account);
    };
    if (account(a) != account(b)) return account(a) < account(b);
    if (year_of(*a.record) != year_of(*b.record)) return year_of(*a.record) < year_of(*b.record);
    if (a.record->number != b.record->number) return a.record->number < b.record->number;
    if (a.record->page != b.record->page) return a.record->page < b.record->page;
    return a.order < b.order;
}

// How many statements from here on are pages of one; complains when one is missing or they do not fit.
std::size_t StatementTable::pages_of(const List<Statement>& statements, std::size_t first) {
    std::size_t count = 1;
    if (!options_.given(Opt::merge_pages) || statements[first].record->page == 0) return count;
    while (first + count < statements.size() &&
           is_same_statement(statements[first], statements[first + count]))
        ++count;
    for (std::size_t i = 0; i < count; ++i) {
        const Statement& page = statements[first + i];
        if (page.record->page != i + 1) {
            Buffer text;
            text << "page " << i + 1 << " is missing";
            complain(page, text.view());
            break;
        }
        if (i > 0 && hundred_thousandths(statements[first + i - 1].record->closeSaldo) !=
                         hundred_thousandths(page.record->openSaldo))
            complain(page, "does not begin with the balance that the page before ends with");
    }
    const Statement& last = statements[first + count - 1];
    if (last.info != nullptr && last.info->lastPage == 0) complain(last, "is not the last page");
    return count;
}

void StatementTable::write_all_of(const List<Statement>& statements) {
    for (std::size_t i = 0; i < statements.size();) {
        const std::size_t pages = pages_of(statements, i);
        const Statement &first = statements[i], &last = statements[i + pages - 1];
        Sums sums = sums_of(first);
        for (std::size_t j = 1; j < pages; ++j) {
            const Sums page = sums_of(statements[i + j]);
            sums.bookings += page.bookings;
            sums.closing = page.closing;
            sums.proved = std::min(sums.proved, page.proved);
        }
        if (pages > 1 && sums.proved >= 0) {
            sums.difference = sums.closing - sums.opening - sums.bookings;
            sums.proved = sums.difference == 0 ? 1 : 0;
        }
        check(first, last, sums);
        for (std::size_t j = 0; j < pages; ++j) {
            const Statement& statement = statements[i + j];
            if (options_.given(Opt::plot)) plot_.add(statement, options_);
            if (options_.given(Opt::balances)) write_balances(statement);
            if (!options_.given(Opt::balances) && !options_.given(Opt::sums)) write_bookings(statement);
        }
        i += pages;
    }
}

Exit StatementTable::run() {
    Progress progress(options_);
    out_.header();
    const bool keeps_all = options_.given(Opt::merge_pages);
    for (const char* path : options_.operands()) {
        end_ = worse(end_, statements_.load(path, progress));
        if (is_interrupted()) break;
        if (keeps_all) continue;
        write_all_of(statements_.all());
        statements_.release();
    }
    List<Statement>& all = statements_.all();
    // Pages may come in any order and in files of their own.
    if (keeps_all) {
        std::sort(all.begin(), all.end(), is_before);
        write_all_of(all);
    }
    out_.finish();
    end_if_interrupted();
    if (options_.given(Opt::plot)) plot_.write(options_.value(Opt::plot), options_);
    if (pending_left_out_ > 0) {
        Buffer text;
        text << pending_left_out_ << (pending_left_out_ == 1 ? " entry is" : " entries are")
             << " not booked yet and left out (--pending shows them)";
        report({.text = text.view(), .level = Level::note});
    }
    return end_;
}

} // namespace

Exit run_statement(const Options& options) {
    return StatementTable(options).run();
}

} // namespace velmora::tool
