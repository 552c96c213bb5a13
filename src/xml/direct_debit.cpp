// The direct debit document, pain.008.
#include "xml/document.h"

namespace velmora {
namespace {

// The code of the message's direct debit type, or null when the rulebook does not have it.
const char* local_instrument(const sepa_t& message, const Rulebook& rulebook) {
    switch (message.direct_debit_type) {
    case SEPA_DDTYPE_CORE:
        return "CORE";
    case SEPA_DDTYPE_COR1:
        return permits_writing_cor1(rulebook) ? "COR1" : nullptr;
    case SEPA_DDTYPE_B2B:
        return "B2B";
    default:
        return nullptr;
    }
}

bool is_amended(const Payment& p) {
    return p.same_mandate_new_agent ||
           p.has(fields(Field::original_mandate_reference, Field::original_iban,
                        Field::original_creditor_name, Field::original_creditor_identifier));
}

// The name and the creditor identifier that a creditor had before.
void write_original_creditor(DocumentWriter& out, const Payment& p) {
    if (!p.has(fields(Field::original_creditor_name, Field::original_creditor_identifier))) return;
    out.line("\t\t\t\t\t\t\t<OrgnlCdtrSchmeId>\n");
    out.escaped("\t\t\t\t\t\t\t\t<Nm>", p[Field::original_creditor_name], "</Nm>\n");
    if (p.has(Field::original_creditor_identifier))
        out.line("\t\t\t\t\t\t\t\t<Id>\n"
                 "\t\t\t\t\t\t\t\t\t<PrvtId>\n"
                 "\t\t\t\t\t\t\t\t\t\t<Othr>\n"
                 "\t\t\t\t\t\t\t\t\t\t\t<Id>",
                 p[Field::original_creditor_identifier],
                 "</Id>\n"
                 "\t\t\t\t\t\t\t\t\t\t\t<SchmeNm>\n"
                 "\t\t\t\t\t\t\t\t\t\t\t\t<Prtry>SEPA</Prtry>\n"
                 "\t\t\t\t\t\t\t\t\t\t\t</SchmeNm>\n"
                 "\t\t\t\t\t\t\t\t\t\t</Othr>\n"
                 "\t\t\t\t\t\t\t\t\t</PrvtId>\n"
                 "\t\t\t\t\t\t\t\t</Id>\n");
    out.line("\t\t\t\t\t\t\t</OrgnlCdtrSchmeId>\n");
}

// What a changed mandate was before.
void write_amendment(DocumentWriter& out, const Rulebook& rulebook, const Payment& p) {
    out.line("\t\t\t\t\t\t<AmdmntInd>true</AmdmntInd>\n"
             "\t\t\t\t\t\t<AmdmntInfDtls>\n");
    if (p.has(Field::original_mandate_reference))
        out.line("\t\t\t\t\t\t\t<OrgnlMndtId>", p[Field::original_mandate_reference], "</OrgnlMndtId>\n");
    write_original_creditor(out, p);
    if (p.same_mandate_new_agent && marks_changed_bank_under_account(rulebook)) {
        out.line("\t\t\t\t\t\t\t<OrgnlDbtrAcct>\n"
                 "\t\t\t\t\t\t\t\t<Id>\n"
                 "\t\t\t\t\t\t\t\t\t<Othr>\n"
                 "\t\t\t\t\t\t\t\t\t\t<Id>SMNDA</Id>\n"
                 "\t\t\t\t\t\t\t\t\t</Othr>\n"
                 "\t\t\t\t\t\t\t\t</Id>\n"
                 "\t\t\t\t\t\t\t</OrgnlDbtrAcct>\n");
    } else if (p.same_mandate_new_agent) {
        out.line("\t\t\t\t\t\t\t<OrgnlDbtrAgt>\n"
                 "\t\t\t\t\t\t\t\t<FinInstnId>\n"
                 "\t\t\t\t\t\t\t\t\t<Othr>\n"
                 "\t\t\t\t\t\t\t\t\t\t<Id>SMNDA</Id>\n"
                 "\t\t\t\t\t\t\t\t\t</Othr>\n"
                 "\t\t\t\t\t\t\t\t</FinInstnId>\n"
                 "\t\t\t\t\t\t\t</OrgnlDbtrAgt>\n");
    } else if (p.has(Field::original_iban)) {
        out.line("\t\t\t\t\t\t\t<OrgnlDbtrAcct>\n"
                 "\t\t\t\t\t\t\t\t<Id>\n");
        out.line("\t\t\t\t\t\t\t\t\t<IBAN>", p[Field::original_iban], "</IBAN>\n");
        out.line("\t\t\t\t\t\t\t\t</Id>\n"
                 "\t\t\t\t\t\t\t</OrgnlDbtrAcct>\n");
    }
    out.line("\t\t\t\t\t\t</AmdmntInfDtls>\n");
}

void write_address(DocumentWriter& out, const Rulebook& rulebook, const Payment& p) {
    if (!has_postal_address(p)) return;
    out.line("\t\t\t\t\t<PstlAdr>\n");
    if (uses_structured_address(rulebook)) {
        write_structured_address(out, rulebook, p);
    } else {
        write_country(out, p);
        write_address_lines(out, p);
    }
    out.line("\t\t\t\t\t</PstlAdr>\n");
}

void write_transaction(DocumentWriter& out, const Document& document, const Payment& p) {
    const Rulebook& rulebook = document.rulebook;
    const bool extended = knows_extended_keys(rulebook);
    out.line("\t\t\t<DrctDbtTxInf>\n");
    write_payment_id(out, p);
    out.amount("\t\t\t\t<InstdAmt Ccy=\"EUR\">", p.amount,
               "</InstdAmt>\n"
               "\t\t\t\t<DrctDbtTx>\n"
               "\t\t\t\t\t<MndtRltdInf>\n");
    out.line("\t\t\t\t\t\t<MndtId>", p[Field::mandate_reference],
             "</MndtId>\n"
             "\t\t\t\t\t\t<DtOfSgntr>",
             p[Field::mandate_date], "</DtOfSgntr>\n");
    if (is_amended(p)) write_amendment(out, rulebook, p);
    out.line("\t\t\t\t\t</MndtRltdInf>\n"
             "\t\t\t\t</DrctDbtTx>\n");
    if (extended)
        write_ultimate_party(out, "UltmtCdtr",
                             own_ultimate_party(p, Field::ultimate_creditor, document.message));
    out.line("\t\t\t\t<DbtrAgt>\n"
             "\t\t\t\t\t<FinInstnId>\n");
    if (p.has(Field::bic))
        write_bic(out, rulebook, "\t\t\t\t\t\t", p[Field::bic]);
    else
        out.line("\t\t\t\t\t\t<Othr>\n"
                 "\t\t\t\t\t\t\t<Id>NOTPROVIDED</Id>\n"
                 "\t\t\t\t\t\t</Othr>\n");
    out.escaped_line("\t\t\t\t\t</FinInstnId>\n"
                     "\t\t\t\t</DbtrAgt>\n"
                     "\t\t\t\t<Dbtr>\n"
                     "\t\t\t\t\t<Nm>",
                     p[Field::name], "</Nm>\n");
    write_address(out, rulebook, p);
    out.line("\t\t\t\t</Dbtr>\n"
             "\t\t\t\t<DbtrAcct>\n"
             "\t\t\t\t\t<Id>\n"
             "\t\t\t\t\t\t<IBAN>",
             p[Field::iban],
             "</IBAN>\n"
             "\t\t\t\t\t</Id>\n"
             "\t\t\t\t</DbtrAcct>\n");
    if (extended) {
        write_ultimate_party(out, "UltmtDbtr", p[Field::ultimate_debtor]);
        write_purpose(out, rulebook, p);
    }
    if (is_strict(rulebook))
        write_strict_remittance(out, p);
    else
        out.escaped("\t\t\t\t<RmtInf>\n"
                    "\t\t\t\t\t<Ustrd>",
                    p[Field::remittance],
                    "</Ustrd>\n"
                    "\t\t\t\t</RmtInf>\n");
    out.line("\t\t\t</DrctDbtTxInf>\n");
}

void write_block(DocumentWriter& out, const Document& document, const PaymentBlock& block,
                 std::size_t number) {
    const sepa_t& message = document.message;
    write_block_header(out, document, block, number, "DD");
    out.line("\t\t\t<PmtTpInf>\n"
             "\t\t\t\t<SvcLvl>\n"
             "\t\t\t\t\t<Cd>SEPA</Cd>\n"
             "\t\t\t\t</SvcLvl>\n"
             "\t\t\t\t<LclInstrm>\n"
             "\t\t\t\t\t<Cd>",
             local_instrument(message, document.rulebook),
             "</Cd>\n"
             "\t\t\t\t</LclInstrm>\n"
             "\t\t\t\t<SeqTp>",
             sequence_type_names[block.sequence_type - frst], "</SeqTp>\n");
    write_category(out, block);
    out.line("\t\t\t</PmtTpInf>\n"
             "\t\t\t<ReqdColltnDt>",
             block.date, "</ReqdColltnDt>\n");
    write_own_side(out, document, OwnSide{"Cdtr", "CdtrAcct", "CdtrAgt"});
    out.line("\t\t\t<CdtrSchmeId>\n"
             "\t\t\t\t<Id>\n"
             "\t\t\t\t\t<PrvtId>\n"
             "\t\t\t\t\t\t<Othr>\n"
             "\t\t\t\t\t\t\t<Id>",
             message.creditor_identifier.view(),
             "</Id>\n"
             "\t\t\t\t\t\t\t<SchmeNm>\n"
             "\t\t\t\t\t\t\t\t<Prtry>SEPA</Prtry>\n"
             "\t\t\t\t\t\t\t</SchmeNm>\n"
             "\t\t\t\t\t\t</Othr>\n"
             "\t\t\t\t\t</PrvtId>\n"
             "\t\t\t\t</Id>\n"
             "\t\t\t</CdtrSchmeId>\n");
}

} // namespace

const char* fault_in_direct_debits(const sepa_t& message, const Rulebook& rulebook) {
    if (!message.iban) return "Missing creditor IBAN";
    if (!message.bic && !permits_unknown_own_bank(rulebook)) return "Missing creditor BIC";
    if (!message.name) return "Missing creditor name";
    if (!message.creditor_identifier) return "Missing creditor identifier";
    if (message.payments.count() == 0) return "No transactions available";
    if (local_instrument(message, rulebook) == nullptr)
        return "Unknown/unsupported LocalInstrumentCode (setDDType)";
    return nullptr;
}

void write_direct_debits(DocumentWriter& out, const Document& document) {
    const Rulebook& rulebook = document.rulebook;
    write_document(
        out, document, rulebook.direct_debit_schema, "CstmrDrctDbtInitn",
        [&](const PaymentBlock& block, std::size_t number) { write_block(out, document, block, number); },
        [&](const Payment& payment) { write_transaction(out, document, payment); });
}

} // namespace velmora
