#include "output.h"
#include "rulebook_table.h"
#include "subcommands.h"

namespace velmora::tool {
namespace {

constexpr std::uint32_t before_3_7 = always | address_lines;
constexpr RulebookRow rulebooks[] = {
    {"DE-2.6", "pain.008.002.02", "pain.001.002.03", before_3_7},
    {"DE-2.7", "pain.008.003.02", "pain.001.003.03", before_3_7},
    {"DE-2.8", "pain.008.003.02", "pain.001.003.03", before_3_7},
    {"DE-2.9", "pain.008.003.02", "pain.001.003.03", before_3_7},
    {"DE-3.0", "pain.008.001.02", "pain.001.001.03", before_3_7},
    {"DE-3.1", "pain.008.001.02", "pain.001.001.03", before_3_7},
    {"DE-3.5", "pain.008.001.02", "pain.001.001.03", before_3_7},
    {"DE-3.7", "pain.008.001.08", "pain.001.001.09", always | structured_address},
    {"DE-26.11", "pain.008.001.08", "pain.001.001.09",
     always | address_lines | structured_address | extended},
    {"AT-6", "pain.008.001.02", "pain.001.001.03", before_3_7},
    {"NL-6", "pain.008.001.02", "pain.001.001.03", before_3_7},
};

constexpr KeyRow keys[] = {
    {"iban", "IBAN", "account of the other party", both, always},
    {"amount", "0.01 or more", "euros", both, always},
    {"name", "1-70", "other party", both, always},
    {"bic", "8 or 11", "bank of the other party", both, always},
    {"date", "yyyy-mm-dd", "execution or collection date", both, always},
    {"id", "1-35", "end-to-end identification", both, always},
    {"ref", "0-140", "remittance information", both, always},
    {"purp", "4", "purpose code", credit_transfer, always},
    {"purp", "4", "purpose code", direct_debit, extended},
    {"seq", "FRST, RCUR, OOFF, FNAL", "sequence type", direct_debit, always},
    {"mref", "1-35", "mandate reference", direct_debit, always},
    {"mdate", "yyyy-mm-dd", "signature date of the mandate", direct_debit, always},
    {"old_mref", "1-35", "former mandate reference", direct_debit, always},
    {"old_iban", "IBAN", "former account of the debtor", direct_debit, always},
    {"smnda", "1", "the debtor's account is at another bank now", direct_debit, always},
    {"old_name", "1-70", "former name of the creditor", direct_debit, extended},
    {"old_ci", "creditor identifier", "former creditor identifier", direct_debit, extended},
    {"instant", "1", "instant payment", credit_transfer, extended},
    {"time", "hh:mm or hh:mm:ss", "execution time of an instant payment", credit_transfer, extended},
    {"urgent", "1", "urgent payment", credit_transfer, extended},
    {"category", "4 capitals", "category purpose", both, extended},
    {"reference", "RF reference", "creditor reference (ISO 11649) in place of ref", both, extended},
    {"ultDebtor", "1-70", "ultimate debtor", both, extended},
    {"ultCreditor", "1-70", "ultimate creditor", both, extended},
    {"instrId", "1-35", "instruction identification", both, extended},
    {"addrLine1", "1-70", "address of the other party", both, address_lines},
    {"addrLine2", "1-70", "address of the other party", both, address_lines},
    {"addrDept", "1-70", "department", both, structured_address},
    {"addrSubDept", "1-70", "sub-department", both, structured_address},
    {"addrStreet", "1-70", "street", both, structured_address},
    {"addrNum", "1-16", "house number", both, structured_address},
    {"addrBldg", "1-35", "building", both, structured_address},
    {"addrFloor", "1-70", "floor", both, structured_address},
    {"addrPoBox", "1-16", "post box", both, structured_address},
    {"addrRoom", "1-70", "room", both, structured_address},
    {"addrCode", "1-16", "postal code", both, structured_address},
    {"addrTown", "1-35", "town", both, structured_address},
    {"addrLoc", "1-35", "part of the town", both, structured_address},
    {"addrDstrct", "1-35", "district", both, structured_address},
    {"addrCtrySub", "1-35", "state or canton", both, structured_address},
    {"addrCC", "2 capitals", "country", both, always},
};

constexpr Column rulebook_columns[] = {{"rulebook", Kind::text, true}, {"direct_debit"}, {"credit_transfer"}};
constexpr Column key_columns[] = {{"key", Kind::text, true},
                                  {"limit"},
                                  {"credit_transfer", Kind::boolean},
                                  {"direct_debit", Kind::boolean},
                                  {"meaning"}};

void write_keys(const RulebookRow& rulebook, Output& out) {
    for (const KeyRow& row : keys) {
        const bool pays = find_key(row.name, rulebook, credit_transfer) != nullptr;
        const bool collects = find_key(row.name, rulebook, direct_debit) != nullptr;
        // A key with a row for each kind of message is shown once.
        if (!(pays || collects) || (&row != keys && Text((&row)[-1].name) == row.name)) continue;
        out.text(row.name);
        out.text(row.limit);
        out.boolean(pays);
        out.boolean(collects);
        out.text(row.meaning);
        out.end_row();
    }
}

} // namespace

std::span<const RulebookRow> rulebook_table() {
    return rulebooks;
}

std::span<const KeyRow> key_table() {
    return keys;
}

const RulebookRow* find_rulebook(Text name) {
    for (const RulebookRow& row : rulebooks)
        if (row.name == name) return &row;
    return nullptr;
}

const KeyRow* find_key(Text name, const RulebookRow& rulebook, std::uint8_t messages) {
    for (const KeyRow& row : keys)
        if (equals_ignoring_case(row.name, name) && (row.group & rulebook.keys) != 0 &&
            (row.messages & messages) != 0)
            return &row;
    return nullptr;
}

Exit run_rulebooks(const Options& options) {
    const std::span<char*> operands = options.operands();
    if (operands.size() > 1) fail_usage(sub::rulebooks, "one rulebook at a time, not also", operands[1]);
    if (operands.empty()) {
        Output out(options, wanted_form(options), rulebook_columns);
        out.header();
        for (const RulebookRow& row : rulebooks) {
            out.text(row.name);
            out.text(row.direct_debit);
            out.text(row.credit_transfer);
            out.end_row();
        }
        out.finish();
        return Exit::good;
    }
    const RulebookRow* rulebook = find_rulebook(operands[0]);
    if (rulebook == nullptr) fail_usage(sub::rulebooks, "no rulebook", operands[0]);
    Output out(options, wanted_form(options), key_columns);
    out.header();
    write_keys(*rulebook, out);
    out.finish();
    return Exit::good;
}

} // namespace velmora::tool
