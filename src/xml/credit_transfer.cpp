// The credit transfer document, pain.001.
#include "xml/document.h"

namespace velmora {
namespace {

// What is the same in every block: the debtor, as far as it is set.
void write_debtor(DocumentWriter& out, const sepa_t& message) {
    out.fixed("\t\t\t<Dbtr>\n");
    out.escaped("\t\t\t\t<Nm>", message.name, "</Nm>\n");
    out.fixed("\t\t\t</Dbtr>\n"
              "\t\t\t<DbtrAcct>\n"
              "\t\t\t\t<Id>\n");
    if (message.iban) out.line("\t\t\t\t\t<IBAN>", message.iban.view(), "</IBAN>\n");
    out.fixed("\t\t\t\t</Id>\n"
              "\t\t\t</DbtrAcct>\n"
              "\t\t\t<DbtrAgt>\n"
              "\t\t\t\t<FinInstnId>\n");
    if (message.bic) write_bic(out, "\t\t\t\t\t", message.bic);
    out.fixed("\t\t\t\t</FinInstnId>\n"
              "\t\t\t</DbtrAgt>\n"
              "\t\t\t<ChrgBr>SLEV</ChrgBr>\n");
}

// Deliberate: the country follows the address lines here, and the closing tag ends without a line feed
// (callers compare documents).
void write_address(DocumentWriter& out, const Transaction& t) {
    if (!has_postal_address(t)) return;
    out.fixed("\t\t\t\t\t<PstlAdr>\n");
    if (uses_structured_address(*selected_rulebook())) {
        write_structured_address(out, t);
    } else {
        write_address_lines(out, t);
        write_country(out, t);
    }
    out.fixed("\t\t\t\t\t</PstlAdr>");
}

void write_transaction(DocumentWriter& out, const Transaction& t) {
    out.fixed("\t\t\t<CdtTrfTxInf>\n");
    write_payment_id(out, t);
    out.amount("\t\t\t\t<Amt>\n"
               "\t\t\t\t\t<InstdAmt Ccy=\"EUR\">",
               t.amount,
               "</InstdAmt>\n"
               "\t\t\t\t</Amt>\n");
    if (t[Field::bic]) {
        out.fixed("\t\t\t\t<CdtrAgt>\n"
                  "\t\t\t\t<FinInstnId>\n");
        write_bic(out, "\t\t\t\t\t", t[Field::bic]);
        out.fixed("\t\t\t\t</FinInstnId>\n"
                  "\t\t\t\t</CdtrAgt>\n");
    }
    out.fixed("\t\t\t\t<Cdtr>\n");
    out.escaped("\t\t\t\t\t<Nm>", t[Field::name], "</Nm>\n");
    write_address(out, t);
    out.fixed("\t\t\t\t</Cdtr>\n"
              "\t\t\t\t<CdtrAcct>\n"
              "\t\t\t\t<Id>\n");
    out.line("\t\t\t\t\t<IBAN>", t[Field::iban].view(), "</IBAN>\n");
    out.fixed("\t\t\t\t</Id>\n"
              "\t\t\t\t</CdtrAcct>\n");
    if (t[Field::purpose])
        out.line("\t\t\t\t<Purp>\n"
                 "\t\t\t\t\t<Cd>",
                 t[Field::purpose].view(),
                 "</Cd>\n"
                 "\t\t\t\t</Purp>\n");
    out.fixed("\t\t\t\t<RmtInf>\n");
    out.escaped("\t\t\t\t\t<Ustrd>", t[Field::remittance], "</Ustrd>\n");
    out.fixed("\t\t\t\t</RmtInf>\n"
              "\t\t\t</CdtTrfTxInf>\n");
}

void write_block(DocumentWriter& out, const sepa_t& message, const PaymentBlock& block, std::size_t number) {
    write_block_header(out, message, block, number, "TRF");
    out.fixed("\t\t\t<PmtTpInf>\n"
              "\t\t\t\t<SvcLvl>\n"
              "\t\t\t\t\t<Cd>SEPA</Cd>\n"
              "\t\t\t\t</SvcLvl>\n"
              "\t\t\t</PmtTpInf>\n");
    if (uses_schema_of_2019(*selected_rulebook()))
        out.line("\t\t\t<ReqdExctnDt><Dt>", block.date, "</Dt></ReqdExctnDt>\n");
    else
        out.line("\t\t\t<ReqdExctnDt>", block.date, "</ReqdExctnDt>\n");
    write_debtor(out, message);
    for (const Transaction* transaction : block.transactions) {
        out.reserve_payment();
        write_transaction(out, *transaction);
    }
    out.fixed("\t\t</PmtInf>\n");
}

} // namespace

const char* write_credit_transfers(DocumentWriter& out, sepa_t* message) {
    const std::time_t now = std::time(nullptr);
    if (!ensure_message_id(message, now)) return "cti_toXML: strdup() failed";
    const Rulebook* rulebook = selected_rulebook();

    write_document_open(out, rulebook->credit_transfer_schema, *rulebook);
    out.fixed("\t<CstmrCdtTrfInitn>\n");
    write_group_header(out, *message, now);
    out.fixed("\t\t\t<InitgPty>\n");
    // Deliberate: the name is not escaped here, unlike everywhere else (callers rely on it).
    if (message->name) out.line("\t\t\t\t<Nm>", message->name.view(), "</Nm>\n");
    out.fixed("\t\t\t</InitgPty>\n"
              "\t\t</GrpHdr>\n");

    if (out.failed) return nullptr;
    PaymentBlocks blocks;
    if (const char* error = blocks.group(*message)) return error;
    std::size_t number = 0;
    for (const PaymentBlock& block : blocks.view())
        write_block(out, *message, block, ++number);
    out.fixed("\t</CstmrCdtTrfInitn>\n");
    return nullptr;
}

} // namespace velmora
