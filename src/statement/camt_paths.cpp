#include "statement/camt_paths.h"

#include <cstddef>
#include <cstring>

#include "statement/camt_fields.h"
#include "xml/characters.h"

namespace velmora::camt {
namespace {

// Names with "|" between them are one element under several names: those of the three messages and of their
// versions.
struct Row {
    std::string_view path;
    Action action;
    std::size_t offset;
};

#define TO(field) offsetof(Fields, field)

constexpr Row message_rows[] = {
    {"GrpHdr/MsgId", Action::keep_text, TO(message.id)},
    {"GrpHdr/CreDtTm", Action::keep_text, TO(message.created)},
    {"GrpHdr/MsgPgntn/PgNb", Action::keep_trimmed, TO(message.page.number)},
    {"GrpHdr/MsgPgntn/LastPgInd", Action::keep_flag, TO(message.page.is_last)},
};

constexpr Row statement_rows[] = {
    {"Id", Action::keep_text, TO(statement.id)},
    {"StmtPgntn|RptPgntn|NtfctnPgntn/PgNb", Action::keep_trimmed, TO(statement.page.number)},
    {"StmtPgntn|RptPgntn|NtfctnPgntn/LastPgInd", Action::keep_flag, TO(statement.page.is_last)},
    {"ElctrncSeqNb", Action::keep_trimmed, TO(statement.electronic_number)},
    {"LglSeqNb", Action::keep_trimmed, TO(statement.legal_number)},
    {"CreDtTm", Action::keep_text, TO(statement.created)},
    {"FrToDt/FrDtTm|FrDt", Action::keep_text, TO(statement.from)},
    {"FrToDt/ToDtTm|ToDt", Action::keep_text, TO(statement.to)},
    {"CpyDplctInd", Action::keep_code, TO(statement.copy)},
    {"Acct/Id/IBAN", Action::keep_unspaced, TO(statement.iban)},
    {"Acct/Id/Othr/Id", Action::keep_trimmed, TO(statement.account)},
    {"Acct/Ccy", Action::keep_currency, TO(statement.currency)},
    {"Acct/Ownr/Nm", Action::keep_trimmed, TO(statement.owner)},
    {"Acct/Ownr/Pty/Nm", Action::keep_trimmed, TO(statement.owner)},
    {"Acct/Svcr/FinInstnId/BICFI|BIC", Action::keep_bic, TO(statement.bic)},
    {"TxsSummry/TtlNtries/NbOfNtries", Action::keep_long_count, TO(statement.all.count)},
    {"TxsSummry/TtlNtries/Sum", Action::keep_sum, TO(statement.all.sum)},
    {"TxsSummry/TtlCdtNtries/NbOfNtries", Action::keep_long_count, TO(statement.credits.count)},
    {"TxsSummry/TtlCdtNtries/Sum", Action::keep_sum, TO(statement.credits.sum)},
    {"TxsSummry/TtlDbtNtries/NbOfNtries", Action::keep_long_count, TO(statement.debits.count)},
    {"TxsSummry/TtlDbtNtries/Sum", Action::keep_sum, TO(statement.debits.sum)},
    {"AddtlStmtInf|AddtlRptInf|AddtlNtfctnInf", Action::keep_text, TO(statement.text)},
};

constexpr Row balance_rows[] = {
    {"Tp/CdOrPrtry/Cd|Prtry", Action::keep_code, TO(balance.code)},
    {"Tp/SubTp/Cd|Prtry", Action::keep_code, TO(balance.sub_type)},
    {"Amt", Action::keep_amount, TO(balance.amount)},
    {"CdtDbtInd", Action::keep_sign, TO(balance.sign)},
    {"Dt/Dt|DtTm", Action::keep_date, TO(balance.date)},
};

constexpr Row entry_rows[] = {
    {"NtryRef", Action::keep_text, TO(entry.reference)},
    {"RvslInd", Action::keep_flag, TO(entry.reversal)},
    {"Sts", Action::keep_code, TO(entry.status)},
    {"Sts/Cd|Prtry", Action::keep_code, TO(entry.status)},
    {"BookgDt/Dt|DtTm", Action::keep_date, TO(entry.booked)},
    {"ValDt/Dt|DtTm", Action::keep_date, TO(entry.valuta)},
    {"AcctSvcrRef", Action::keep_text, TO(entry.details.bank_reference)},
    {"NtryDtls", Action::begin_details, 0},
    {"NtryDtls/Btch/MsgId", Action::keep_text, TO(entry.batch.message_id)},
    {"NtryDtls/Btch/PmtInfId", Action::keep_text, TO(entry.batch.payment_id)},
    {"NtryDtls/Btch/NbOfTxs", Action::keep_count, TO(entry.batch.count)},
    {"AddtlNtryInf", Action::keep_text, TO(entry.text)},
};

constexpr Row part_rows[] = {
    {"Refs/MsgId", Action::keep_text, TO(part.message_id)},
    {"Refs/AcctSvcrRef", Action::keep_text, TO(part.details.bank_reference)},
    {"Refs/PmtInfId", Action::keep_text, TO(part.payment_id)},
    {"Refs/InstrId", Action::keep_text, TO(part.instruction_id)},
    {"Refs/EndToEndId", Action::keep_text, TO(part.end_to_end_id)},
    {"Refs/UETR", Action::keep_trimmed, TO(part.uetr)},
    {"Refs/TxId", Action::keep_text, TO(part.transaction_id)},
    {"Refs/MndtId", Action::keep_trimmed, TO(part.mandate_id)},
    {"Refs/Prtry/Ref", Action::keep_text, TO(part.proprietary_reference)},
    {"Purp/Cd", Action::keep_trimmed, TO(part.purpose)},
    {"Purp/Prtry", Action::keep_text, TO(part.proprietary_purpose)},
    {"RmtInf/Ustrd", Action::add_remittance, 0},
    {"RmtInf/Strd/CdtrRefInf/Ref", Action::keep_text, TO(part.creditor_reference)},
    {"RtrInf", Action::note_presence, TO(part.is_return)},
    {"RtrInf/Rsn/Cd|Prtry", Action::keep_trimmed, TO(part.return_reason)},
    {"RtrInf/AddtlInf", Action::add_return_text, 0},
    {"AddtlTxInf", Action::keep_text, TO(part.text)},
};

// Offsets inside Details.
#define TO_DETAIL(field) offsetof(Details, field)
constexpr Row details_rows[] = {
    {"Amt", Action::keep_amount, TO_DETAIL(amount)},
    {"CdtDbtInd", Action::keep_sign, TO_DETAIL(sign)},
    {"BkTxCd/Domn/Cd", Action::keep_code, TO_DETAIL(codes.domain)},
    {"BkTxCd/Domn/Fmly/Cd", Action::keep_code, TO_DETAIL(codes.family)},
    {"BkTxCd/Domn/Fmly/SubFmlyCd", Action::keep_code, TO_DETAIL(codes.sub_family)},
    {"BkTxCd/Prtry/Cd", Action::keep_trimmed, TO_DETAIL(codes.proprietary)},
    {"BkTxCd/Prtry/Issr", Action::keep_trimmed, TO_DETAIL(codes.issuer)},
    {"AmtDtls/InstdAmt/Amt", Action::keep_amount, TO_DETAIL(instructed)},
    {"AmtDtls/InstdAmt/CcyXchg/XchgRate", Action::keep_text, TO_DETAIL(exchange_rate)},
    {"AmtDtls/TxAmt/Amt", Action::keep_amount, TO_DETAIL(transaction)},
    {"AmtDtls/TxAmt/CcyXchg/XchgRate", Action::keep_text, TO_DETAIL(exchange_rate)},
    {"AmtDtls/CntrValAmt/CcyXchg/XchgRate", Action::keep_text, TO_DETAIL(exchange_rate)},
    {"Chrgs", Action::begin_charges, TO_DETAIL(charges)},
    {"Chrgs/TtlChrgsAndTaxAmt", Action::keep_amount, TO_DETAIL(charges.total)},
    {"Chrgs/Amt", Action::keep_amount, TO_DETAIL(charges.single.amount)},
    {"Chrgs/CdtDbtInd", Action::keep_sign, TO_DETAIL(charges.single.sign)},
    {"Chrgs/Rcrd", Action::begin_charge, TO_DETAIL(charges)},
    {"Chrgs/Rcrd/Amt", Action::keep_amount, TO_DETAIL(charges.record.amount)},
    {"Chrgs/Rcrd/CdtDbtInd", Action::keep_sign, TO_DETAIL(charges.record.sign)},
    {"Chrgs/Rcrd/ChrgInclInd", Action::keep_flag, TO_DETAIL(charges.record.is_included)},
};

// Offsets inside Party. The party of versions before 001.08 has no "Pty".
#define TO_PARTY(field) offsetof(Party, field)
constexpr Row party_rows[] = {
    {"Nm", Action::keep_trimmed, TO_PARTY(name)},
    {"Pty/Nm", Action::keep_deep, TO_PARTY(name)},
    {"Agt/FinInstnId/Nm", Action::keep_trimmed, TO_PARTY(agent_name)},
    {"Id/PrvtId/Othr/Id", Action::keep_text, TO_PARTY(private_id)},
    {"Pty/Id/PrvtId/Othr/Id", Action::keep_text, TO_PARTY(private_id)},
    {"Id/OrgId/Othr/Id", Action::keep_text, TO_PARTY(organisation_id)},
    {"Pty/Id/OrgId/Othr/Id", Action::keep_text, TO_PARTY(organisation_id)},
};
constexpr Row ultimate_party_rows[] = {
    {"Nm", Action::keep_trimmed, TO_PARTY(ultimate_name)},
    {"Pty/Nm", Action::keep_deep, TO_PARTY(ultimate_name)},
};
constexpr Row party_account_rows[] = {
    {"Id/IBAN", Action::keep_unspaced, TO_PARTY(iban)},
    {"Id/Othr/Id", Action::keep_trimmed, TO_PARTY(account)},
};
constexpr Row party_agent_rows[] = {
    {"FinInstnId/BICFI|BIC", Action::keep_trimmed, TO_PARTY(bic)},
    {"FinInstnId/ClrSysMmbId/MmbId", Action::keep_trimmed, TO_PARTY(clearing_member)},
};

constexpr int max_nodes = 400;
constexpr int max_branches = 400;
constexpr std::size_t max_name = 21;
constexpr unsigned table_size = 1024;

// From an element to one inside it.
struct Branch {
    NodeNumber parent;
    NodeNumber child;
    std::uint8_t length;
    char name[max_name + 8]; // as much as a comparison may read
};

constexpr unsigned hash(NodeNumber parent, const char* name, std::size_t length) {
    const auto byte = [&](std::size_t at) {
        return static_cast<unsigned>(static_cast<unsigned char>(name[at]));
    };
    const unsigned letters = byte(0) + byte(length / 2) * 7 + byte(length - 1) * 59;
    return (letters + static_cast<unsigned>(length) * 131 + parent * 37u) % table_size;
}

struct Graph {
    Node nodes[max_nodes] = {};
    Branch branches[max_branches] = {};
    std::uint16_t table[table_size] = {}; // numbers of branches, from 1; collisions go to the next place
    NodeNumber node_count = 1;            // the first is "outside"
    std::uint16_t branch_count = 0;

    constexpr NodeNumber find(NodeNumber parent, const char* name, std::size_t length) const {
        for (unsigned at = hash(parent, name, length); table[at] != 0; at = (at + 1) % table_size) {
            const Branch& branch = branches[table[at] - 1];
            if (branch.parent != parent || branch.length != length) continue;
            std::size_t same = 0;
            while (same < length && branch.name[same] == name[same])
                ++same;
            if (same == length) return branch.child;
        }
        return no_node;
    }

    constexpr void add_branch(NodeNumber parent, std::string_view name, NodeNumber child) {
        Branch& branch = branches[branch_count++];
        branch.parent = parent;
        branch.child = child;
        branch.length = static_cast<std::uint8_t>(name.size());
        for (std::size_t i = 0; i < name.size(); ++i)
            branch.name[i] = name[i];
        unsigned at = hash(parent, name.data(), name.size());
        while (table[at] != 0)
            at = (at + 1) % table_size;
        table[at] = branch_count;
    }

    // The element under one of the names; a new one gets them all.
    constexpr NodeNumber step(NodeNumber parent, std::string_view names) {
        const NodeNumber known = find(parent, names.data(), first_of(names, '|'));
        if (known != no_node) return known;
        const NodeNumber child = node_count++;
        while (!names.empty()) {
            const std::size_t length = first_of(names, '|');
            add_branch(parent, {names.data(), length}, child);
            names.remove_prefix(length == names.size() ? length : length + 1);
        }
        return child;
    }

    constexpr NodeNumber add(NodeNumber node, std::string_view path, Action action, std::size_t offset = 0) {
        while (!path.empty()) {
            const std::size_t length = first_of(path, '/');
            node = step(node, {path.data(), length});
            path.remove_prefix(length == path.size() ? length : length + 1);
        }
        nodes[node] = {action, static_cast<std::uint16_t>(offset)};
        return node;
    }

    template <std::size_t size>
    constexpr void add(NodeNumber node, const Row (&rows)[size], std::size_t offset = 0) {
        for (const Row& row : rows)
            add(node, row.path, row.action, offset + row.offset);
    }

    static constexpr std::size_t first_of(std::string_view text, char c) {
        std::size_t at = 0;
        while (at < text.size() && text[at] != c)
            ++at;
        return at;
    }

    constexpr void add_party(NodeNumber part, std::string_view party, std::string_view ultimate,
                             std::string_view account, std::string_view agent, std::size_t offset) {
        const NodeNumber parties = add(part, "RltdPties", Action::none);
        const NodeNumber agents = add(part, "RltdAgts", Action::none);
        add(add(parties, party, Action::none), party_rows, offset);
        add(add(parties, ultimate, Action::none), ultimate_party_rows, offset);
        add(add(parties, account, Action::none), party_account_rows, offset);
        add(add(agents, agent, Action::none), party_agent_rows, offset);
    }

    constexpr Graph() {
        const NodeNumber message =
            add(outside, "BkToCstmrStmt|BkToCstmrAcctRpt|BkToCstmrDbtCdtNtfctn", Action::begin_message);
        add(message, message_rows);
        const NodeNumber statement = add(message, "Stmt|Rpt|Ntfctn", Action::begin_statement);
        add(statement, statement_rows);
        add(add(statement, "Bal", Action::begin_balance), balance_rows);
        const NodeNumber entry = add(statement, "Ntry", Action::begin_entry);
        add(entry, entry_rows);
        add(entry, details_rows, TO(entry.details));
        const NodeNumber part = add(entry, "NtryDtls/TxDtls", Action::begin_part);
        add(part, part_rows);
        add(part, details_rows, TO(part.details));
        add_party(part, "Dbtr", "UltmtDbtr", "DbtrAcct", "DbtrAgt", TO(part.debtor));
        add_party(part, "Cdtr", "UltmtCdtr", "CdtrAcct", "CdtrAgt", TO(part.creditor));
    }
};
constexpr Graph graph;
static_assert(sizeof(Fields) < 0xFFFF);

} // namespace

NodeNumber find_child(NodeNumber parent, std::string_view name) {
    if (name.empty()) return no_node;
    for (unsigned at = hash(parent, name.data(), name.size()); graph.table[at] != 0;
         at = (at + 1) % table_size) {
        const Branch& branch = graph.branches[graph.table[at] - 1];
        if (branch.parent == parent && branch.length == name.size() &&
            is_same(branch.name, name.data(), name.size()))
            return branch.child;
    }
    return no_node;
}

const Node& get_node(NodeNumber number) {
    return graph.nodes[number];
}

} // namespace velmora::camt
