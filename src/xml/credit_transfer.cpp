// The credit transfer document, pain.001.
#include "xml/document.h"

namespace velmora {
namespace {

// Deliberate: the country follows the address lines here, and the closing tag ends without a line feed; files
// are compared.
void write_address(DocumentWriter& out, const Rulebook& rulebook, const Payment& p) {
    if (!has_postal_address(p)) return;
    out.line("\t\t\t\t\t<PstlAdr>\n");
    if (uses_structured_address(rulebook)) {
        write_structured_address(out, p);
    } else {
        write_address_lines(out, p);
        write_country(out, p);
    }
    out.line("\t\t\t\t\t</PstlAdr>");
}

void write_transaction(DocumentWriter& out, const Rulebook& rulebook, const Payment& p) {
    out.line("\t\t\t<CdtTrfTxInf>\n");
    write_payment_id(out, p);
    out.amount("\t\t\t\t<Amt>\n"
               "\t\t\t\t\t<InstdAmt Ccy=\"EUR\">",
               p.amount,
               "</InstdAmt>\n"
               "\t\t\t\t</Amt>\n");
    if (p.has(Field::bic)) {
        out.line("\t\t\t\t<CdtrAgt>\n"
                 "\t\t\t\t<FinInstnId>\n");
        write_bic(out, rulebook, "\t\t\t\t\t", p[Field::bic]);
        out.line("\t\t\t\t</FinInstnId>\n"
                 "\t\t\t\t</CdtrAgt>\n");
    }
    out.line("\t\t\t\t<Cdtr>\n");
    out.escaped("\t\t\t\t\t<Nm>", p[Field::name], "</Nm>\n");
    write_address(out, rulebook, p);
    out.line("\t\t\t\t</Cdtr>\n"
             "\t\t\t\t<CdtrAcct>\n"
             "\t\t\t\t<Id>\n"
             "\t\t\t\t\t<IBAN>",
             p[Field::iban],
             "</IBAN>\n"
             "\t\t\t\t</Id>\n"
             "\t\t\t\t</CdtrAcct>\n");
    if (p.has(Field::purpose))
        out.line("\t\t\t\t<Purp>\n"
                 "\t\t\t\t\t<Cd>",
                 p[Field::purpose],
                 "</Cd>\n"
                 "\t\t\t\t</Purp>\n");
    out.line("\t\t\t\t<RmtInf>\n");
    out.escaped("\t\t\t\t\t<Ustrd>", p[Field::remittance], "</Ustrd>\n");
    out.line("\t\t\t\t</RmtInf>\n"
             "\t\t\t</CdtTrfTxInf>\n");
}

void write_block(DocumentWriter& out, const Document& document, const PaymentBlock& block,
                 std::size_t number) {
    write_block_header(out, document.message, block, number, "TRF");
    out.line("\t\t\t<PmtTpInf>\n"
             "\t\t\t\t<SvcLvl>\n"
             "\t\t\t\t\t<Cd>SEPA</Cd>\n"
             "\t\t\t\t</SvcLvl>\n"
             "\t\t\t</PmtTpInf>\n");
    if (uses_schema_of_2019(document.rulebook))
        out.line("\t\t\t<ReqdExctnDt><Dt>", block.date, "</Dt></ReqdExctnDt>\n");
    else
        out.line("\t\t\t<ReqdExctnDt>", block.date, "</ReqdExctnDt>\n");
    write_own_side(out, document, {"Dbtr", "DbtrAcct", "DbtrAgt"});
}

} // namespace

void write_credit_transfers(DocumentWriter& out, const Document& document) {
    const Rulebook& rulebook = document.rulebook;
    write_document(
        out, document, rulebook.credit_transfer_schema, "CstmrCdtTrfInitn",
        [&](const PaymentBlock& block, std::size_t number) { write_block(out, document, block, number); },
        [&](const Payment& payment) { write_transaction(out, rulebook, payment); });
}

} // namespace velmora
