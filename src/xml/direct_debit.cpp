// The direct debit document, pain.008.
#include "xml/document.h"

namespace velmora {
namespace {

// The code of the message's direct debit type, or null when the rulebook does not have it.
const char* local_instrument(const sepa_t& message) {
    switch (message.direct_debit_type) {
    case SEPA_DDTYPE_CORE:
        return "CORE";
    case SEPA_DDTYPE_COR1:
        return permits_writing_cor1(*selected_rulebook()) ? "COR1" : nullptr;
    case SEPA_DDTYPE_B2B:
        return "B2B";
    default:
        return nullptr;
    }
}

const char* missing_in_header(const sepa_t& message) {
    if (!message.iban) return "Missing creditor IBAN";
    if (!message.bic) return "Missing creditor BIC";
    if (!message.name) return "Missing creditor name";
    if (!message.creditor_identifier) return "Missing creditor identifier";
    if (message.transaction_count == 0) return "No transactions available";
    return nullptr;
}

// What is the same in every block: the creditor.
void write_creditor(DocumentWriter& out, const sepa_t& message) {
    out.fixed("\t\t\t<Cdtr>\n");
    out.escaped("\t\t\t\t<Nm>", message.name, "</Nm>\n");
    out.fixed("\t\t\t</Cdtr>\n"
              "\t\t\t<CdtrAcct>\n"
              "\t\t\t\t<Id>\n");
    out.line("\t\t\t\t\t<IBAN>", message.iban.view(), "</IBAN>\n");
    out.fixed("\t\t\t\t</Id>\n"
              "\t\t\t</CdtrAcct>\n"
              "\t\t\t<CdtrAgt>\n"
              "\t\t\t\t<FinInstnId>\n");
    write_bic(out, "\t\t\t\t\t", message.bic);
    out.fixed("\t\t\t\t</FinInstnId>\n"
              "\t\t\t</CdtrAgt>\n"
              "\t\t\t<ChrgBr>SLEV</ChrgBr>\n"
              "\t\t\t<CdtrSchmeId>\n"
              "\t\t\t\t<Id>\n"
              "\t\t\t\t\t<PrvtId>\n"
              "\t\t\t\t\t\t<Othr>\n");
    out.line("\t\t\t\t\t\t\t<Id>", message.creditor_identifier.view(), "</Id>\n");
    out.fixed("\t\t\t\t\t\t\t<SchmeNm>\n"
              "\t\t\t\t\t\t\t\t<Prtry>SEPA</Prtry>\n"
              "\t\t\t\t\t\t\t</SchmeNm>\n"
              "\t\t\t\t\t\t</Othr>\n"
              "\t\t\t\t\t</PrvtId>\n"
              "\t\t\t\t</Id>\n"
              "\t\t\t</CdtrSchmeId>\n");
}

// What a changed mandate was before.
void write_amendment(DocumentWriter& out, const Transaction& t) {
    out.fixed("\t\t\t\t\t\t<AmdmntInd>true</AmdmntInd>\n"
              "\t\t\t\t\t\t<AmdmntInfDtls>\n");
    if (t[Field::original_mandate_reference])
        out.line("\t\t\t\t\t\t\t<OrgnlMndtId>", t[Field::original_mandate_reference].view(),
                 "</OrgnlMndtId>\n");
    if (t.same_mandate_new_agent != 0 && marks_changed_bank_under_account(*selected_rulebook())) {
        out.fixed("\t\t\t\t\t\t\t<OrgnlDbtrAcct>\n"
                  "\t\t\t\t\t\t\t\t<Id>\n"
                  "\t\t\t\t\t\t\t\t\t<Othr>\n"
                  "\t\t\t\t\t\t\t\t\t\t<Id>SMNDA</Id>\n"
                  "\t\t\t\t\t\t\t\t\t</Othr>\n"
                  "\t\t\t\t\t\t\t\t</Id>\n"
                  "\t\t\t\t\t\t\t</OrgnlDbtrAcct>\n");
    } else if (t.same_mandate_new_agent != 0) {
        out.fixed("\t\t\t\t\t\t\t<OrgnlDbtrAgt>\n"
                  "\t\t\t\t\t\t\t\t<FinInstnId>\n"
                  "\t\t\t\t\t\t\t\t\t<Othr>\n"
                  "\t\t\t\t\t\t\t\t\t\t<Id>SMNDA</Id>\n"
                  "\t\t\t\t\t\t\t\t\t</Othr>\n"
                  "\t\t\t\t\t\t\t\t</FinInstnId>\n"
                  "\t\t\t\t\t\t\t</OrgnlDbtrAgt>\n");
    } else if (t[Field::original_iban]) {
        out.fixed("\t\t\t\t\t\t\t<OrgnlDbtrAcct>\n"
                  "\t\t\t\t\t\t\t\t<Id>\n");
        out.line("\t\t\t\t\t\t\t\t\t<IBAN>", t[Field::original_iban].view(), "</IBAN>\n");
        out.fixed("\t\t\t\t\t\t\t\t</Id>\n"
                  "\t\t\t\t\t\t\t</OrgnlDbtrAcct>\n");
    }
    out.fixed("\t\t\t\t\t\t</AmdmntInfDtls>\n");
}

void write_address(DocumentWriter& out, const Transaction& t) {
    if (!has_postal_address(t)) return;
    out.fixed("\t\t\t\t\t<PstlAdr>\n");
    if (uses_structured_address(*selected_rulebook())) {
        write_structured_address(out, t);
    } else {
        write_country(out, t);
        write_address_lines(out, t);
    }
    out.fixed("\t\t\t\t\t</PstlAdr>\n");
}

void write_transaction(DocumentWriter& out, const Transaction& t) {
    out.fixed("\t\t\t<DrctDbtTxInf>\n");
    write_payment_id(out, t);
    out.amount("\t\t\t\t<InstdAmt Ccy=\"EUR\">", t.amount, "</InstdAmt>\n");
    out.fixed("\t\t\t\t<DrctDbtTx>\n"
              "\t\t\t\t\t<MndtRltdInf>\n");
    out.line("\t\t\t\t\t\t<MndtId>", t[Field::mandate_reference].view(), "</MndtId>\n");
    out.line("\t\t\t\t\t\t<DtOfSgntr>", t[Field::mandate_date].view(), "</DtOfSgntr>\n");
    if (t.is_amended()) write_amendment(out, t);
    out.fixed("\t\t\t\t\t</MndtRltdInf>\n"
              "\t\t\t\t</DrctDbtTx>\n"
              "\t\t\t\t<DbtrAgt>\n"
              "\t\t\t\t\t<FinInstnId>\n");
    if (t[Field::bic])
        write_bic(out, "\t\t\t\t\t\t", t[Field::bic]);
    else
        out.fixed("\t\t\t\t\t\t<Othr>\n"
                  "\t\t\t\t\t\t\t<Id>NOTPROVIDED</Id>\n"
                  "\t\t\t\t\t\t</Othr>\n");
    out.fixed("\t\t\t\t\t</FinInstnId>\n"
              "\t\t\t\t</DbtrAgt>\n"
              "\t\t\t\t<Dbtr>\n");
    out.escaped_line("\t\t\t\t\t<Nm>", t[Field::name].view(), "</Nm>\n");
    write_address(out, t);
    out.fixed("\t\t\t\t</Dbtr>\n"
              "\t\t\t\t<DbtrAcct>\n"
              "\t\t\t\t\t<Id>\n");
    out.line("\t\t\t\t\t\t<IBAN>", t[Field::iban].view(), "</IBAN>\n");
    out.fixed("\t\t\t\t\t</Id>\n"
              "\t\t\t\t</DbtrAcct>\n");
    out.escaped("\t\t\t\t<RmtInf>\n"
                "\t\t\t\t\t<Ustrd>",
                t[Field::remittance],
                "</Ustrd>\n"
                "\t\t\t\t</RmtInf>\n");
    out.fixed("\t\t\t</DrctDbtTxInf>\n");
}

void write_block(DocumentWriter& out, const sepa_t& message, const PaymentBlock& block, std::size_t number,
                 std::string_view instrument) {
    write_block_header(out, message, block, number, "DD");
    out.fixed("\t\t\t<PmtTpInf>\n"
              "\t\t\t\t<SvcLvl>\n"
              "\t\t\t\t\t<Cd>SEPA</Cd>\n"
              "\t\t\t\t</SvcLvl>\n"
              "\t\t\t\t<LclInstrm>\n");
    out.line("\t\t\t\t\t<Cd>", instrument, "</Cd>\n");
    out.fixed("\t\t\t\t</LclInstrm>\n");
    out.line("\t\t\t\t<SeqTp>", sequence_type_names[block.sequence_type - frst], "</SeqTp>\n");
    out.fixed("\t\t\t</PmtTpInf>\n");
    out.line("\t\t\t<ReqdColltnDt>", block.date, "</ReqdColltnDt>\n");
    write_creditor(out, message);
    for (const Transaction* transaction : block.transactions) {
        out.reserve_payment();
        write_transaction(out, *transaction);
    }
    out.fixed("\t\t</PmtInf>\n");
}

} // namespace

const char* write_direct_debits(DocumentWriter& out, sepa_t* message) {
    const std::time_t now = std::time(nullptr);
    if (const char* missing = missing_in_header(*message)) return missing;
    const char* instrument = local_instrument(*message);
    if (instrument == nullptr) return "Unknown/unsupported LocalInstrumentCode (setDDType)";
    if (!ensure_message_id(message, now)) return "ddi_toXML: strdup() failed";
    const Rulebook* rulebook = selected_rulebook();

    write_document_open(out, rulebook->direct_debit_schema, *rulebook);
    out.fixed("\t<CstmrDrctDbtInitn>\n");
    write_group_header(out, *message, now);
    out.fixed("\t\t\t<InitgPty>\n");
    out.escaped("\t\t\t\t<Nm>", message->name, "</Nm>\n");
    out.fixed("\t\t\t</InitgPty>\n"
              "\t\t</GrpHdr>\n");

    if (out.failed) return nullptr;
    PaymentBlocks blocks;
    if (const char* error = blocks.group(*message)) return error;
    std::size_t number = 0;
    for (const PaymentBlock& block : blocks.view())
        write_block(out, *message, block, ++number, instrument);
    out.fixed("\t</CstmrDrctDbtInitn>\n");
    return nullptr;
}

} // namespace velmora
