// The help, the manual page and the completions, made of the tables.
#include "subcommands.h"

#include <unistd.h>
#include <velmora.h>

#include "rulebook_table.h"

namespace velmora::tool {
namespace {

constexpr std::size_t page_width = 100;

void append_spaces(Buffer& out, std::size_t count) {
    while (count-- > 0)
        out << ' ';
}

// In lines of at most the page's width, further ones indented.
void append_wrapped(Buffer& out, Text text, std::size_t column, std::size_t indent) {
    while (!text.empty()) {
        const Text word = take_until(text, ' ');
        if (column > indent && column + 1 + word.size() > page_width) {
            out << '\n';
            append_spaces(out, indent);
            column = indent;
        } else if (column > indent) {
            out << ' ';
            ++column;
        }
        out << word;
        column += word.size();
    }
    out << '\n';
}

void append_options(Buffer& out, Subcommand subcommand) {
    constexpr std::size_t indent = 30;
    for (const OptionRow& row : option_table()) {
        if ((row.subcommands & subcommand) == 0) continue;
        const std::size_t start = out.size();
        out << "  ";
        if (row.letter != 0)
            out << '-' << row.letter << ", ";
        else
            out << "    ";
        out << "--" << row.name;
        if (row.argument != nullptr) out << ' ' << row.argument;
        if (out.size() - start >= indent) {
            out << '\n';
            append_spaces(out, indent);
        } else {
            append_spaces(out, indent - (out.size() - start));
        }
        append_wrapped(out, row.help, indent, indent);
    }
}

void append_subcommand(Buffer& out, const SubcommandRow& row) {
    out << "Usage: velmora " << row.name << " [OPTION]... " << row.operands << "\n\n";
    Text rest = row.description;
    while (!rest.empty()) {
        append_wrapped(out, take_until(rest, '\n'), 0, 0);
        out << '\n';
    }
    if (row.columns != nullptr) {
        out << "Columns: ";
        append_wrapped(out, row.columns, 9, 9);
        out << '\n';
    }
    out << "Options:\n";
    append_options(out, row.id);
    if (row.examples == nullptr) return;
    out << "\nExamples:\n";
    rest = row.examples;
    while (!rest.empty())
        out << "  " << take_until(rest, '\n') << '\n';
}

void append_overview(Buffer& out) {
    out << "Usage: velmora SUBCOMMAND [OPTION]... [OPERAND]...\n\n"
           "SEPA payments, accounts, banks and statements.\n\n";
    for (const SubcommandRow& row : subcommand_table()) {
        out << "  " << row.name;
        append_spaces(out, 12 - Text(row.name).size());
        out << row.summary << '\n';
    }
    out << "\nvelmora help SUBCOMMAND tells more. Exit codes: 0 all is good, 1 some items are invalid or "
           "refused,\n"
           "2 wrong usage, 3 unreadable or damaged input, 4 output not written, 5 out of memory.\n";
}

// mdoc takes a line that begins with a point, and a backslash, for its own.
void append_mdoc(Buffer& out, Text text) {
    if (!text.empty() && (text.front() == '.' || text.front() == '\'')) out << "\\&";
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        // A new sentence begins a new line, as mdoc wants it.
        const bool ends_sentence =
            c == ' ' && i > 0 && text[i - 1] == '.' && is_letter(piece(text, i, 2).back());
        if (c == '\\')
            out << "\\e";
        else if (c == '-')
            out << "\\-";
        else
            out << (ends_sentence ? '\n' : c);
    }
}

void append_mdoc_lines(Buffer& out, Text rest, Text between) {
    for (bool first = true; !rest.empty(); first = false) {
        if (!first) out << between;
        append_mdoc(out, take_until(rest, '\n'));
        out << '\n';
    }
}

void append_manual(Buffer& out) {
    const char* date = sepa_data_date("DE");
    out << ".\\\" Made by velmora help --man.\n.Dd " << (date == nullptr ? "" : date)
        << "\n.Dt VELMORA 1\n.Os\n.Sh NAME\n.Nm velmora\n.Nd SEPA payments, accounts, banks and statements\n"
           ".Sh SYNOPSIS\n.Nm\n.Ar subcommand\n.Op Ar option ...\n.Op Ar operand ...\n.Sh DESCRIPTION\n";
    append_mdoc_lines(
        out,
        "Payments in CSV become files for the bank, statements of the bank become tables, and columns of "
        "IBANs, BICs and German accounts are checked. The subcommands are:",
        "");
    out << ".Bl -tag -width rulebooks\n";
    for (const SubcommandRow& row : subcommand_table()) {
        out << ".It Cm " << row.name << '\n';
        append_mdoc_lines(out, row.summary, "");
    }
    out << ".El\n";
    for (const SubcommandRow& row : subcommand_table()) {
        out << ".Sh ";
        for (const char c : Text(row.name))
            out << to_upper(c);
        out << "\n.Nm velmora Cm " << row.name << " Op Ar option ...\n";
        append_mdoc_lines(out, row.operands, "");
        out << ".Pp\n";
        append_mdoc_lines(out, row.description, ".Pp\n");
        if (row.columns != nullptr) {
            out << ".Pp\n";
            Buffer columns;
            columns << "Columns of the answer: " << row.columns << '.';
            append_mdoc_lines(out, columns.view(), "");
        }
        out << ".Bl -tag -width indent\n";
        for (const OptionRow& option : option_table()) {
            if ((option.subcommands & row.id) == 0) continue;
            out << ".It ";
            if (option.letter != 0) out << "Fl " << option.letter << " , ";
            out << "Fl \\-" << option.name;
            if (option.argument != nullptr) {
                out << " Ar ";
                append_mdoc(out, option.argument);
            }
            out << '\n';
            append_mdoc_lines(out, option.help, "");
        }
        out << ".El\n";
        if (row.examples != nullptr) {
            out << ".Pp\nExamples:\n.Bd -literal -offset indent\n";
            append_mdoc_lines(out, row.examples, "");
            out << ".Ed\n";
        }
    }
    out << ".Sh ENVIRONMENT\n.Bl -tag -width NO_COLOR\n.It Ev NO_COLOR\nNo colours when it is set and not "
           "empty.\n"
           ".It Ev TZ\nThe local time, which tells what day is today.\n.El\n"
           ".Sh EXIT STATUS\n.Bl -tag -width 1 -compact\n.It 0\nAll is good.\n.It 1\nSome items are invalid "
           "or refused; "
           "the output is complete.\n.It 2\nWrong usage.\n.It 3\nThe input cannot be read or is "
           "damaged.\n.It 4\n"
           "The output could not be written.\n.It 5\nOut of memory.\n.El\n.Sh SEE ALSO\n.Xr velmora 3\n";
}

// What can follow an option.
void append_choices(Buffer& out, const OptionRow& row) {
    if (row.id == Opt::rulebook) {
        for (const RulebookRow& rulebook : rulebook_table())
            out << (&rulebook == rulebook_table().data() ? "" : " ") << rulebook.name;
        return;
    }
    for (Text rest = row.argument == nullptr ? "" : row.argument; !rest.empty();) {
        out << take_until(rest, '|');
        if (!rest.empty()) out << ' ';
    }
}

bool has_choices(const OptionRow& row) {
    return is_choice(row) || row.id == Opt::rulebook;
}

bool takes_file(const OptionRow& row) {
    return row.argument != nullptr && Text(row.argument) == "FILE";
}

// The first operand, where it is a word.
void append_operands(Buffer& out, Subcommand subcommand) {
    if (subcommand != sub::check && subcommand != sub::help && subcommand != sub::rulebooks) return;
    out << " operands='";
    if (subcommand == sub::check) out << "iban bic account reference creditor";
    if (subcommand == sub::help)
        for (const SubcommandRow& row : subcommand_table())
            out << row.name << ' ';
    if (subcommand == sub::rulebooks)
        for (const RulebookRow& rulebook : rulebook_table())
            out << rulebook.name << ' ';
    out << '\'';
}

void append_bash(Buffer& out) {
    out << "# bash completion for velmora\n_velmora() {\n"
           "    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]} options= operands=\n"
           "    # bash takes --name=value apart\n"
           "    if [[ $cur == = ]]; then cur=; elif [[ $prev == = ]]; then prev=${COMP_WORDS[COMP_CWORD-2]}; "
           "fi\n"
           "    case $prev in\n";
    for (const OptionRow& row : option_table()) {
        if (row.argument == nullptr) continue;
        out << "        --" << row.name;
        if (row.letter != 0) out << "|-" << row.letter;
        if (takes_file(row)) {
            out << ") COMPREPLY=($(compgen -f -- \"$cur\")); return ;;\n";
            continue;
        }
        out << ") COMPREPLY=(";
        if (has_choices(row)) {
            out << "$(compgen -W '";
            append_choices(out, row);
            out << "' -- \"$cur\")";
        }
        out << "); return ;;\n";
    }
    out << "    esac\n    if ((COMP_CWORD == 1)); then\n        COMPREPLY=($(compgen -W '";
    for (const SubcommandRow& row : subcommand_table())
        out << row.name << ' ';
    out << "--help --version' -- \"$cur\"))\n        return\n    fi\n    case ${COMP_WORDS[1]} in\n";
    for (const SubcommandRow& row : subcommand_table()) {
        out << "        " << row.name << ") options='";
        for (const OptionRow& option : option_table())
            if ((option.subcommands & row.id) != 0) out << "--" << option.name << ' ';
        out << '\'';
        append_operands(out, row.id);
        out << " ;;\n";
    }
    out << "    esac\n"
           "    if [[ $cur == -* ]]; then\n        COMPREPLY=($(compgen -W \"$options\" -- \"$cur\"))\n"
           "    elif [[ -n $operands ]] && ((COMP_CWORD == 2)); then\n"
           "        COMPREPLY=($(compgen -W \"$operands\" -- \"$cur\"))\n"
           "    else\n        COMPREPLY=($(compgen -f -- \"$cur\"))\n    fi\n}\n"
           "complete -o filenames -F _velmora velmora\n";
}

// Within single quotes of zsh's and fish's.
void append_quoted(Buffer& out, Text text) {
    for (const char c : text) {
        if (c == '[' || c == ']' || c == ':' || c == '\\') out << '\\';
        c == '\'' ? out << "'\\''" : out << c;
    }
}

void append_zsh(Buffer& out) {
    out << "#compdef velmora\n_velmora() {\n    local -a subcommands\n    subcommands=(\n";
    for (const SubcommandRow& row : subcommand_table()) {
        out << "        '" << row.name << ':';
        append_quoted(out, row.summary);
        out << "'\n";
    }
    out << "    )\n    if ((CURRENT == 2)); then\n        _describe subcommand subcommands\n        return\n "
           "   fi\n"
           "    case $words[2] in\n";
    for (const SubcommandRow& row : subcommand_table()) {
        out << "        " << row.name << ")\n            _arguments -S";
        for (const OptionRow& option : option_table()) {
            if ((option.subcommands & row.id) == 0) continue;
            out << " \\\n                '--" << option.name << '[';
            append_quoted(out, option.help);
            out << ']';
            if (option.argument != nullptr) {
                out << ':';
                has_choices(option) ? out << "value" : out << option.argument;
                out << ':';
                if (has_choices(option)) {
                    out << '(';
                    append_choices(out, option);
                    out << ')';
                } else if (takes_file(option)) {
                    out << "_files";
                }
            }
            out << '\'';
        }
        out << " '*:file:_files' ;;\n";
    }
    out << "    esac\n}\n_velmora \"$@\"\n";
}

void append_fish(Buffer& out) {
    out << "complete -c velmora -n __fish_use_subcommand -f\n";
    for (const SubcommandRow& row : subcommand_table()) {
        out << "complete -c velmora -n __fish_use_subcommand -a " << row.name << " -d '";
        append_quoted(out, row.summary);
        out << "'\n";
    }
    for (const OptionRow& option : option_table()) {
        out << "complete -c velmora -n '__fish_seen_subcommand_from";
        for (const SubcommandRow& row : subcommand_table())
            if ((option.subcommands & row.id) != 0) out << ' ' << row.name;
        out << "' -l " << option.name;
        if (option.letter != 0) out << " -s " << option.letter;
        if (option.argument != nullptr) out << (takes_file(option) ? " -r" : " -x");
        if (has_choices(option)) {
            out << " -a '";
            append_choices(out, option);
            out << '\'';
        }
        out << " -d '";
        append_quoted(out, option.help);
        out << "'\n";
    }
}

} // namespace

Exit run_help(const Options& options) {
    Buffer out;
    const std::span<char*> operands = options.operands();
    if (options.given(Opt::man)) {
        append_manual(out);
    } else if (options.given(Opt::completion)) {
        constexpr void (*shells[])(Buffer&) = {append_bash, append_zsh, append_fish};
        shells[options.choice(Opt::completion)](out);
    } else if (operands.empty()) {
        append_overview(out);
    } else {
        const SubcommandRow* row = find_subcommand(Text(operands[0]));
        if (row == nullptr) fail_usage(sub::help, "no subcommand", operands[0]);
        append_subcommand(out, *row);
    }
    write_all(STDOUT_FILENO, out.view());
    return Exit::good;
}

Exit run_version(const Options& options) {
    (void)options;
    Buffer out;
    out << "velmora " VELMORA_VERSION "\n";
    bool first = true;
    for (const char* country : {"DE", "AT", "CH", "LI"}) {
        const char* date = sepa_data_date(country);
        if (date == nullptr) continue;
        out << (first ? "bank data from: " : ", ") << country << ' ' << date;
        first = false;
    }
    if (!first) out << '\n';
    write_all(STDOUT_FILENO, out.view());
    return Exit::good;
}

} // namespace velmora::tool
