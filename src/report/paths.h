// Which element of a status report means what.
#pragma once

#include "report/reading.h"
#include "xml/path_graph.h"

namespace velmora::report {

using Row = PathRow<Action>;
using Graph = PathGraph<Action, 128, 128, 21>;

#define TO(field) offsetof(Fields, field)

inline constexpr Row group_rows[] = {
    {"OrgnlMsgId", Action::keep_text, TO(item.messageId)},
    {"OrgnlMsgNmId", Action::keep_text, TO(item.messageName)},
    {"OrgnlNbOfTxs", Action::keep_count, TO(item.count)},
    {"OrgnlCtrlSum", Action::keep_sum, TO(item.amount)},
    {"GrpSts", Action::keep_status, TO(item.status)},
};

inline constexpr Row block_rows[] = {
    {"OrgnlPmtInfId", Action::keep_text, TO(item.blockId)},
    {"OrgnlNbOfTxs", Action::keep_count, TO(item.count)},
    {"OrgnlCtrlSum", Action::keep_sum, TO(item.amount)},
    {"PmtInfSts", Action::keep_status, TO(item.status)},
};

inline constexpr Row payment_rows[] = {
    {"StsId", Action::keep_text, TO(item.statusId)},
    {"OrgnlInstrId", Action::keep_text, TO(item.instructionId)},
    {"OrgnlEndToEndId", Action::keep_text, TO(item.endToEndId)},
    {"OrgnlUETR", Action::keep_text, TO(item.uetr)},
    {"TxSts", Action::keep_status, TO(item.status)},
    {"AcctSvcrRef", Action::keep_text, TO(item.reference)},
};

inline constexpr Row original_rows[] = {
    {"Amt/InstdAmt", Action::keep_amount, TO(item.amount)},
    {"ReqdExctnDt", Action::keep_date, TO(item.date)},
    {"ReqdExctnDt/Dt|DtTm", Action::keep_date, TO(item.date)},
    {"ReqdColltnDt", Action::keep_date, TO(item.date)},
    {"MndtRltdInf/MndtId", Action::keep_text, TO(item.mandate)},
    {"MndtRltdInf/DrctDbtMndt/MndtId", Action::keep_text, TO(item.mandate)},
    {"CdtrSchmeId", Action::note_direct_debit, TO(is_direct_debit)},
    {"Dbtr/Nm", Action::keep_text, TO(debtor.name)},
    {"Dbtr/Pty/Nm", Action::keep_text, TO(debtor.name)},
    {"DbtrAcct/Id/IBAN", Action::keep_iban, TO(debtor.iban)},
    {"Cdtr/Nm", Action::keep_text, TO(creditor.name)},
    {"Cdtr/Pty/Nm", Action::keep_text, TO(creditor.name)},
    {"CdtrAcct/Id/IBAN", Action::keep_iban, TO(creditor.iban)},
};

// Of a group, a block and a payment alike.
inline constexpr Row reason_rows[] = {
    {"StsRsnInf/Rsn/Cd|Prtry", Action::add_reason, 0},
    {"StsRsnInf/AddtlInf", Action::add_text, 0},
};

#undef TO

constexpr Graph make_graph() {
    Graph graph;
    const NodeNumber message = graph.add(outside, "CstmrPmtStsRpt", Action::begin_message);
    const NodeNumber group = graph.add(message, "OrgnlGrpInfAndSts", Action::begin_group);
    const NodeNumber block = graph.add(message, "OrgnlPmtInfAndSts", Action::begin_block);
    const NodeNumber payment = graph.add(block, "TxInfAndSts", Action::begin_payment);
    graph.add(group, group_rows);
    graph.add(group, reason_rows);
    graph.add(block, block_rows);
    graph.add(block, reason_rows);
    graph.add(payment, payment_rows);
    graph.add(payment, reason_rows);
    graph.add(graph.add(payment, "OrgnlTxRef", Action::none), original_rows);
    return graph;
}

} // namespace velmora::report
