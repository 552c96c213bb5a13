// The options: one table, out of which the parser, the help, the manual page and the completion are made.
#pragma once

#include <span>

#include "text.h"

namespace velmora::tool {

// Subcommands as bits, so that an option can say which of them know it.
using Subcommand = std::uint32_t;
namespace sub {
enum : Subcommand {
    check = 1,
    convert = 2,
    bank = 4,
    pay = 8,
    collect = 16,
    statement = 32,
    report = 64,
    text = 128,
    methods = 256,
    rulebooks = 512,
    help = 1024,
    version = 2048,
    filters = check | convert | bank | methods,
    payments = pay | collect,
    tables = check | convert | bank | payments | statement | report | methods | rulebooks,
    readers = filters | payments | statement | report | text,
    everything = 4095
};
} // namespace sub

// In the order of the table.
enum class Opt : std::uint8_t {
    output,
    no_header,
    fields,
    mask,
    color,
    input,
    encoding,
    escape,
    filter,
    column,
    columns,
    jobs,
    progress,
    no_progress,
    suggest,
    country,
    search,
    rulebook,
    name,
    iban,
    bic,
    creditor_id,
    date,
    id,
    type,
    seq,
    instant,
    category,
    single_booking,
    decimal,
    ignore,
    out,
    max_payments,
    dry_run,
    strict,
    skip_invalid,
    from,
    to,
    entries,
    balances,
    sums,
    merge_pages,
    pending,
    own,
    plot,
    format,
    only,
    join,
    basic,
    limit,
    changes,
    man,
    completion,
    errors,
    help
};
constexpr std::size_t option_count = static_cast<std::size_t>(Opt::help) + 1;

struct OptionRow {
    Opt id;
    char letter; // of the short form, or 0
    const char* name;
    const char* argument; // null without one; "one|two" names all values there are
    const char* help;
    std::uint32_t subcommands;
};

std::span<const OptionRow> option_table();

// Whether the argument is one of a fixed set.
bool is_choice(const OptionRow& option);

class Options {
public:
    // Reads the options and leaves the operands; ends the program on a wrong one. argv[0] is the subcommand.
    Options(Subcommand subcommand, int argc, char** argv);

    [[nodiscard]] bool given(Opt option) const { return values_[index(option)] != nullptr; }
    // Empty when it was not given.
    [[nodiscard]] Text value(Opt option) const { return given(option) ? c_str(option) : Text(); }
    [[nodiscard]] const char* c_str(Opt option) const { return values_[index(option)]; }
    // The number of the value among those that the table names, or -1.
    [[nodiscard]] int choice(Opt option) const;
    // A whole number from `least` to 999,999,999; `otherwise` when it was not given.
    [[nodiscard]] long number(Opt option, long least, long otherwise) const;
    [[nodiscard]] std::span<char*> operands() const { return operands_; }
    [[nodiscard]] Subcommand subcommand() const { return subcommand_; }

private:
    static std::size_t index(Opt option) { return static_cast<std::size_t>(option); }

    Subcommand subcommand_;
    const char* values_[option_count] = {};
    std::span<char*> operands_;
};

// Tells what is wrong with the command line and ends the program with exit code 2.
[[noreturn]] void fail_usage(Subcommand subcommand, Text what, Text argument = {});

} // namespace velmora::tool
