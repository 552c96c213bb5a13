#include "statement/camt_paths.h"

#include <cstddef>
#include <cstring>

#include "statement/camt_fields.h"
#include "xml/characters.h"

namespace velmora::camt {
namespace {

using Row = PathRow<Action>;

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
    {"NtryDtls/Btch/MsgId", Action::keep_trimmed, TO(entry.batch.message_id)},
    {"NtryDtls/Btch/PmtInfId", Action::keep_trimmed, TO(entry.batch.payment_id)},
    {"NtryDtls/Btch/NbOfTxs", Action::keep_count, TO(entry.batch.count)},
    {"AddtlNtryInf", Action::keep_text, TO(entry.text)},
};

constexpr Row part_rows[] = {
    {"Refs/MsgId", Action::keep_trimmed, TO(part.message_id)},
    {"Refs/AcctSvcrRef", Action::keep_trimmed, TO(part.details.bank_reference)},
    {"Refs/PmtInfId", Action::keep_trimmed, TO(part.payment_id)},
    {"Refs/InstrId", Action::keep_trimmed, TO(part.instruction_id)},
    {"Refs/EndToEndId", Action::keep_trimmed, TO(part.end_to_end_id)},
    {"Refs/UETR", Action::keep_trimmed, TO(part.uetr)},
    {"Refs/TxId", Action::keep_trimmed, TO(part.transaction_id)},
    {"Refs/MndtId", Action::keep_trimmed, TO(part.mandate_id)},
    {"Refs/Prtry/Ref", Action::keep_trimmed, TO(part.proprietary_reference)},
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
    {"Id/PrvtId/Othr/Id", Action::keep_trimmed, TO_PARTY(private_id)},
    {"Pty/Id/PrvtId/Othr/Id", Action::keep_trimmed, TO_PARTY(private_id)},
    {"Id/OrgId/Othr/Id", Action::keep_trimmed, TO_PARTY(organisation_id)},
    {"Pty/Id/OrgId/Othr/Id", Action::keep_trimmed, TO_PARTY(organisation_id)},
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

constexpr void add_party(Graph& graph, NodeNumber part, std::string_view party, std::string_view ultimate,
                         std::string_view account, std::string_view agent, std::size_t offset) {
    const NodeNumber parties = graph.add(part, "RltdPties", Action::none);
    const NodeNumber agents = graph.add(part, "RltdAgts", Action::none);
    graph.add(graph.add(parties, party, Action::none), party_rows, offset);
    graph.add(graph.add(parties, ultimate, Action::none), ultimate_party_rows, offset);
    graph.add(graph.add(parties, account, Action::none), party_account_rows, offset);
    graph.add(graph.add(agents, agent, Action::none), party_agent_rows, offset);
}

constexpr Graph make_graph() {
    Graph graph;
    const NodeNumber message =
        graph.add(outside, "BkToCstmrStmt|BkToCstmrAcctRpt|BkToCstmrDbtCdtNtfctn", Action::begin_message);
    graph.add(message, message_rows);
    const NodeNumber statement = graph.add(message, "Stmt|Rpt|Ntfctn", Action::begin_statement);
    graph.add(statement, statement_rows);
    graph.add(graph.add(statement, "Bal", Action::begin_balance), balance_rows);
    const NodeNumber entry = graph.add(statement, "Ntry", Action::begin_entry);
    graph.add(entry, entry_rows);
    graph.add(entry, details_rows, TO(entry.details));
    const NodeNumber part = graph.add(entry, "NtryDtls/TxDtls", Action::begin_part);
    graph.add(part, part_rows);
    graph.add(part, details_rows, TO(part.details));
    add_party(graph, part, "Dbtr", "UltmtDbtr", "DbtrAcct", "DbtrAgt", TO(part.debtor));
    add_party(graph, part, "Cdtr", "UltmtCdtr", "CdtrAcct", "CdtrAgt", TO(part.creditor));
    return graph;
}
static_assert(sizeof(Fields) < 0xFFFF);

} // namespace

constexpr Graph graph = make_graph();

} // namespace velmora::camt
