#include "options.h"

#include <cstdlib>
#include <getopt.h>

#include "failure.h"
#include "subcommands.h"

namespace velmora::tool {
namespace {

constexpr OptionRow table[] = {
    {Opt::output, 0, "output", "table|tsv|csv|json|jsonl|code",
     "form of the output: table on a terminal, TSV otherwise; code is the result code alone", sub::tables},
    {Opt::no_header, 0, "no-header", nullptr, "no header line; filters never write one", sub::tables},
    {Opt::fields, 0, "fields", "NAME,...", "these columns of the answer only", sub::tables},
    {Opt::mask, 0, "mask", nullptr, "show accounts as DE89...3000", sub::tables},
    {Opt::color, 0, "color", "auto|always|never", "colours in tables; NO_COLOR turns them off, too",
     sub::tables},

    {Opt::input, 0, "input", "csv|tsv|lines", "form of the input; by default the file's name tells",
     sub::filters | sub::payments},
    {Opt::encoding, 0, "encoding", "NAME", "encoding of the input, as iconv names it; UTF-8 by default",
     sub::readers & ~sub::report},
    {Opt::escape, 0, "escape", nullptr,
     "read and write \\t, \\n, \\\\ and \\N as ClickHouse and PostgreSQL do", sub::filters | sub::text},
    {Opt::filter, 'f', "filter", nullptr, "answer standard input line for line, without a header",
     sub::filters | sub::text},
    {Opt::column, 'c', "column", "NAME",
     "read this column of a CSV or TSV and append the answer; a number when there is no header",
     sub::filters},
    {Opt::columns, 0, "columns", "NAME,NAME", "the two columns to read", sub::convert | sub::methods},
    {Opt::jobs, 'j', "jobs", "N", "share a file among N processes; 0 for as many as there are processors",
     sub::filters | sub::text},
    {Opt::progress, 0, "progress", nullptr, "tell the progress even when standard error is no terminal",
     sub::readers},
    {Opt::no_progress, 0, "no-progress", nullptr, "never tell the progress", sub::readers},

    {Opt::suggest, 's', "suggest", nullptr, "add a column with IBANs that could be meant", sub::check},
    {Opt::country, 0, "country", "AT|CH|DE|LI", "country of bank codes; DE by default", sub::bank},
    {Opt::search, 0, "search", "TEXT", "banks with this text in their name or city", sub::bank},

    {Opt::rulebook, 'r', "rulebook", "NAME", "rulebook to follow; see velmora rulebooks",
     sub::payments | sub::text},
    {Opt::name, 0, "name", "TEXT", "holder of the own account", sub::payments},
    {Opt::iban, 0, "iban", "IBAN", "own account", sub::payments},
    {Opt::bic, 0, "bic", "BIC", "own bank; found by the IBAN when left out", sub::payments},
    {Opt::creditor_id, 0, "creditor-id", "ID", "own creditor identifier", sub::collect},
    {Opt::date, 0, "date", "YYYY-MM-DD",
     "date of the payments that bring none of their own; today by default", sub::payments},
    {Opt::id, 0, "id", "TEXT", "message identification; made up when left out", sub::payments},
    {Opt::type, 0, "type", "core|b2b", "kind of direct debit; core by default", sub::collect},
    {Opt::seq, 0, "seq", "FRST|RCUR|OOFF|FNAL", "sequence type of the payments that bring none of their own",
     sub::collect},
    {Opt::instant, 0, "instant", nullptr, "instant payments", sub::pay},
    {Opt::category, 0, "category", "CODE", "category purpose, SALA for salaries", sub::payments},
    {Opt::single_booking, 0, "single-booking", nullptr, "one booking for each payment, not one for the sum",
     sub::payments},
    {Opt::decimal, 0, "decimal", "point|comma",
     "decimal mark of the amounts; needed where 1.234 could mean two things", sub::payments},
    {Opt::ignore, 0, "ignore", "NAME,...", "columns of the input that are not for the bank", sub::payments},
    {Opt::out, 'o', "out", "FILE", "file to write; it appears whole or not at all", sub::payments},
    {Opt::max_payments, 0, "max-payments", "N",
     "most payments in a file; further ones go to NAME-2.xml, NAME-3.xml and so on", sub::payments},
    {Opt::dry_run, 'n', "dry-run", nullptr, "check everything, write nothing", sub::payments},
    {Opt::strict, 0, "strict", nullptr, "write nothing when one row is refused (the default)", sub::payments},
    {Opt::skip_invalid, 0, "skip-invalid", nullptr, "leave refused rows out and write the others",
     sub::payments},

    {Opt::from, 0, "from", "YYYY-MM-DD", "bookings of this day or later", sub::statement},
    {Opt::to, 0, "to", "YYYY-MM-DD", "bookings of this day or earlier", sub::statement},
    {Opt::entries, 0, "entries", nullptr, "one row for a batch, not one for each of its payments",
     sub::statement},
    {Opt::balances, 0, "balances", nullptr, "show balances in place of bookings", sub::statement},
    {Opt::sums, 0, "check", nullptr, "show for each statement whether its sums meet", sub::statement},
    {Opt::merge_pages, 0, "merge-pages", nullptr, "take the pages of a statement as one", sub::statement},
    {Opt::pending, 0, "pending", nullptr, "show pending and informative entries, too", sub::statement},
    {Opt::own, 0, "own", nullptr, "begin each booking with the account of the statement", sub::statement},
    {Opt::plot, 0, "plot", "FILE", "draw the balance over time into an SVG file", sub::statement},
    {Opt::format, 0, "format", "camt|mt940|strict-mt940", "form of the files; their content tells by default",
     sub::statement},

    {Opt::only, 0, "only", "refused", "refused payments only", sub::report},
    {Opt::join, 0, "join", "FILE", "append the status to the rows of this CSV, by their id", sub::report},

    {Opt::basic, 0, "basic", nullptr, "letters of the basic set only: umlauts as ae, oe, ue", sub::text},
    {Opt::limit, 0, "limit", "N", "cut to N characters", sub::text},
    {Opt::changes, 0, "report", nullptr,
     "behind each text: characters changed, replaced, cut, and where the first is", sub::text},

    {Opt::man, 0, "man", nullptr, "print the manual page", sub::help},
    {Opt::completion, 0, "completion", "bash|zsh|fish", "print the completion for a shell", sub::help},

    {Opt::errors, 0, "errors", "text|json", "form of what is told on standard error",
     sub::everything & ~(sub::help | sub::version)},
    {Opt::help, 'h', "help", nullptr, "show what the subcommand does", sub::everything},
};

constexpr bool is_in_order() {
    std::size_t i = 0;
    for (const OptionRow& row : table)
        if (static_cast<std::size_t>(row.id) != i++) return false;
    return i == option_count;
}
static_assert(is_in_order());

// What getopt_long() returns for a long option; below are the letters.
constexpr int first_value = 256;

int find_choice(const OptionRow& row, Text value) {
    Text choices = row.argument;
    for (int i = 0; !choices.empty(); ++i)
        if (take_until(choices, '|') == value) return i;
    return -1;
}

const OptionRow* find_letter(int letter, std::uint32_t subcommand) {
    for (const OptionRow& row : table)
        if (row.letter == letter && (row.subcommands & subcommand) != 0) return &row;
    return nullptr;
}

} // namespace

std::span<const OptionRow> option_table() {
    return table;
}

bool is_choice(const OptionRow& option) {
    return option.argument != nullptr &&
           (option.id == Opt::only || std::strchr(option.argument, '|') != nullptr);
}

Options::Options(Subcommand subcommand, int argc, char** argv) : subcommand_(subcommand) {
    option names[option_count + 1] = {};
    Buffer letters;
    letters << ':';
    std::size_t count = 0;
    for (const OptionRow& row : table) {
        if ((row.subcommands & subcommand) == 0) continue;
        names[count++] = {row.name, row.argument == nullptr ? no_argument : required_argument, nullptr,
                          first_value + static_cast<int>(row.id)};
        if (row.letter == 0) continue;
        letters << row.letter;
        if (row.argument != nullptr) letters << ':';
    }

    opterr = 0;
    optind = 0; // it may not be the first command line that is read
    for (int found = 0; (found = getopt_long(argc, argv, letters.c_str(), names, nullptr)) != -1;) {
        if (found == '?') fail_usage(subcommand, "unknown or ambiguous option", argv[optind - 1]);
        if (found == ':') fail_usage(subcommand, "this option needs an argument:", argv[optind - 1]);
        const OptionRow* row =
            found >= first_value ? &table[found - first_value] : find_letter(found, subcommand);
        if (row->argument != nullptr && is_choice(*row) && find_choice(*row, optarg) < 0) {
            Buffer what;
            what << "--" << row->name << " takes " << row->argument << ", not";
            fail_usage(subcommand, what.view(), optarg);
        }
        values_[index(row->id)] = row->argument != nullptr ? optarg : "";
    }
    operands_ = {argv + optind, static_cast<std::size_t>(argc - optind)};
}

int Options::choice(Opt option) const {
    return given(option) ? find_choice(table[index(option)], value(option)) : -1;
}

long Options::number(Opt option, long least, long otherwise) const {
    if (!given(option)) return otherwise;
    const long number = small_number(value(option));
    if (number < least) {
        Buffer what;
        what << "--" << table[index(option)].name << " takes a whole number from " << least << " on, not";
        fail_usage(subcommand_, what.view(), value(option));
    }
    return number;
}

void fail_usage(Subcommand subcommand, Text what, Text argument) {
    Buffer text, command;
    command << "velmora";
    const SubcommandRow* row = find_subcommand(subcommand);
    if (row != nullptr) command << ' ' << row->name;
    text << what;
    if (!argument.empty()) text << " '" << argument << '\'';
    text << " (velmora help";
    if (row != nullptr) text << ' ' << row->name;
    text << " tells more)";
    fail(Exit::usage, command.view(), text.view());
}

} // namespace velmora::tool
