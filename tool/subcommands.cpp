#include "subcommands.h"

namespace velmora::tool {
namespace {

constexpr SubcommandRow table[] = {
    {sub::check, "check", "iban|bic|account|reference|creditor [VALUE|FILE|-]...",
     "check IBANs, BICs, German accounts, creditor references and identifiers",
     "Says whether a value is valid, and if not, why and where. An account is given as BANK CODE/ACCOUNT. "
     "What is "
     "there are values; with --filter, --column, --input or --jobs they are files, and - is standard input.\n"
     "With --filter each line of standard input gets exactly one line, in order and without a header, "
     "whatever "
     "bytes it holds: so other programs can use it as a function. With --column the answer is appended to "
     "the rows "
     "of a table.",
     "value, valid, code, position, text, bank, bic, city; with --suggest: suggestions",
     "velmora check iban DE89370400440532013000\n"
     "velmora check iban --filter < ibans.txt\n"
     "velmora check iban --column iban --jobs 4 customers.csv",
     run_check},
    {sub::convert, "convert", "[BANK_CODE ACCOUNT|FILE|-]...", "German bank codes and accounts to IBANs",
     "Builds the IBAN by the rule of the bank. The column account says what the check digit of the account "
     "gave; "
     "the rules of most banks build IBANs for accounts whose check digit is wrong, too.",
     "iban, bic, status, account (valid, invalid, unchecked), text",
     "velmora convert 37040044 532013000\n"
     "velmora convert --columns blz,account old.csv",
     run_convert},
    {sub::bank, "bank", "[CODE|BIC|IBAN|FILE|-]...", "look up banks in the directory",
     "Finds banks by their national code, BIC or the IBAN of an account, or searches names and cities. sct, "
     "sdd, "
     "cor1 and b2b say in which SEPA schemes the bank can be reached.",
     "country, code, bic, name, postcode, city, sct, sdd, cor1, b2b",
     "velmora bank 37040044 COBADEFFXXX\n"
     "velmora bank --search münchen",
     run_bank},
    {sub::pay, "pay", "FILE|-", "a table of payments to a credit transfer file (pain.001)",
     "Reads payments from a CSV or TSV whose header names the keys of the rulebook: name, iban, amount, "
     "date, id, "
     "ref and so on. An empty cell is a key that the payment does not have. Amounts have a decimal point or, "
     "in a CSV "
     "with semicolons, a decimal comma; what could mean two things is refused, and nothing is rounded.\n"
     "One refused row, and nothing is written. Each is told with its line, column and reason. The file "
     "appears "
     "under its name when it is whole; without --out it goes to standard output.\n"
     "Warnings do not keep a file from being written: a date more than 15 days ahead, a single payment, "
     "equal "
     "identifications, and the same amount to the same account twice.",
     "files, blocks, payments, sum (with --out or --dry-run)",
     "velmora pay --name 'Muster GmbH' --iban DE02120300000000202051 --out pay.xml payments.csv\n"
     "velmora pay --name 'Muster GmbH' --iban DE02120300000000202051 --dry-run payments.csv",
     run_payments},
    {sub::collect, "collect", "FILE|-", "a table of payments to a direct debit file (pain.008)",
     "As velmora pay, for direct debits: further keys are seq, mref, mdate and those of changed mandates.",
     "files, blocks, payments, sum (with --out or --dry-run)",
     "velmora collect --name 'Turnverein e.V.' --iban DE02120300000000202051 --creditor-id "
     "DE98ZZZ09999999999 "
     "--out collect.xml members.csv",
     run_payments},
    {sub::statement, "statement", "FILE|-...", "account statements to tables: camt, MT940, ZIP",
     "Reads camt.052, camt.053, camt.054, MT940 as banks really write it, and ZIP files of them; the content "
     "tells "
     "which. Amounts are exact, and negative for a debit. Every statement is proved: opening balance and "
     "bookings "
     "give the closing balance; one that does not is told with the difference, and the exit code is 1.\n"
     "A file that is damaged gives no rows at all, and the exit code is 3.",
     "booked, valuta, amount, currency, name, account, bank, svwz, eref, mref, cred, gvc, reason; with "
     "--balances: "
     "account, number, page, code, date, amount, currency, interim; with --check: account, number, page, "
     "opening, "
     "bookings, closing, currency, ok, difference",
     "velmora statement c53.zip\n"
     "velmora statement --from 2025-04-01 --output csv *.xml > april.csv\n"
     "velmora statement --check c53.zip\n"
     "velmora statement --plot balance.svg c53.zip > bookings.tsv",
     run_statement},
    {sub::report, "report", "FILE|-...", "what the bank says about a file that was sent (pain.002)",
     "Shows the status of the file, of its blocks and of its payments; RJCT is refused, and the reason says "
     "why. With "
     "--join the status is appended to the rows of the table that the payments came from, by the column id. "
     "The exit "
     "code is 1 when something is refused.",
     "level, status, reason, text, id, amount, name; with --join: status, reason, text",
     "velmora report --only refused pain002.xml\n"
     "velmora report --join payments.csv pain002.xml > answered.csv",
     run_report},
    {sub::text, "text", "[FILE|-]...", "names and texts with the letters that banks take",
     "Writes each line with the characters that the rulebook permits: what it permits stays, other letters "
     "get their "
     "equivalent (\"Łódź\" becomes \"Lodz\"), and what has none becomes a point. Nothing is cut without "
     "--limit.",
     "text; with --report: text, changed, replaced, cut, first",
     "velmora text names.txt\n"
     "velmora text --basic --limit 70 --report < names.txt",
     run_text},
    {sub::methods, "methods", "[METHOD ACCOUNT]...", "check digit methods of German accounts",
     "Lists the methods with the number of banks that use each, or checks accounts by a method: 1 is valid, "
     "0 not "
     "checkable, 2 valid without its sub-account, -1 invalid.",
     "method, checked, banks; with METHOD and ACCOUNT: method, result", "velmora methods 13 532013000",
     run_methods},
    {sub::rulebooks, "rulebooks", "[RULEBOOK]", "rulebooks with their schemas, keys and limits",
     "Lists the rulebooks with the schemas of their files, or the keys that payments have under one of them.",
     "rulebook, direct_debit, credit_transfer; for one rulebook: key, limit, credit_transfer, direct_debit, "
     "meaning",
     "velmora rulebooks DE-3.7", run_rulebooks},
    {sub::help, "help", "[SUBCOMMAND]", "tell what a subcommand does",
     "Shows all subcommands or one of them; prints the manual page or the completion for a shell.", nullptr,
     "velmora help check\n"
     "velmora help --completion bash > ~/.local/share/bash-completion/completions/velmora",
     run_help},
    {sub::version, "version", "", "version, and the dates of the bank data",
     "Shows the version of the library and from when the data of its bank directory are.", nullptr, nullptr,
     run_version},
};

} // namespace

std::span<const SubcommandRow> subcommand_table() {
    return table;
}

const SubcommandRow* find_subcommand(Subcommand id) {
    for (const SubcommandRow& row : table)
        if (row.id == id) return &row;
    return nullptr;
}

const SubcommandRow* find_subcommand(Text name) {
    for (const SubcommandRow& row : table)
        if (row.name == name) return &row;
    return nullptr;
}

} // namespace velmora::tool
