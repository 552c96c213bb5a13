// The subcommands, with what the help and the manual page say about them.
#pragma once

#include "failure.h"
#include "options.h"

namespace velmora::tool {

struct SubcommandRow {
    Subcommand id;
    const char* name;
    const char* operands;
    const char* summary;
    const char* description; // paragraphs, one a line
    const char* columns;     // of the answer, or null
    const char* examples;    // one a line, or null
    Exit (*run)(const Options& options);
};

std::span<const SubcommandRow> subcommand_table();
const SubcommandRow* find_subcommand(Subcommand id);
const SubcommandRow* find_subcommand(Text name);

Exit run_check(const Options& options);
Exit run_convert(const Options& options);
Exit run_bank(const Options& options);
Exit run_payments(const Options& options);
Exit run_statement(const Options& options);
Exit run_report(const Options& options);
Exit run_text(const Options& options);
Exit run_methods(const Options& options);
Exit run_rulebooks(const Options& options);
Exit run_help(const Options& options);
Exit run_version(const Options& options);

} // namespace velmora::tool
