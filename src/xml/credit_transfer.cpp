// The credit transfer document, pain.001.
#include <cstdio>

#include "base/calendar.h"
#include "base/local_time.h"
#include "xml/document.h"

namespace velmora {
namespace {

// How far local time is ahead of UTC at a date and time: "+02:00".
struct UtcOffset {
    UtcOffset(std::string_view date, std::string_view time) {
        const Day day{digits_at(date, 0, 4), digits_at(date, 5, 2), digits_at(date, 8, 2)};
        const int minutes = utc_offset_at(day, (digits_at(time, 0, 2) * 60 + digits_at(time, 3, 2)) * 60 +
                                                   digits_at(time, 6, 2));
        const int distance = minutes < 0 ? -minutes : minutes;
        std::snprintf(text, sizeof text, "%c%02d:%02d", minutes < 0 ? '-' : '+', distance / 60,
                      distance % 60);
    }
    char text[32];
};

// Deliberate: the country follows the address lines here, and the closing tag ends without a line feed; files
// are compared.
void write_address(DocumentWriter& out, const Rulebook& rulebook, const Payment& p) {
    if (!has_postal_address(p)) return;
    out.line("\t\t\t\t\t<PstlAdr>\n");
    if (uses_structured_address(rulebook)) {
        write_structured_address(out, rulebook, p);
    } else {
        write_address_lines(out, p);
        write_country(out, p);
    }
    out.line("\t\t\t\t\t</PstlAdr>");
}

void write_transaction(DocumentWriter& out, const Document& document, const Payment& p) {
    const Rulebook& rulebook = document.rulebook;
    const bool extended = knows_extended_keys(rulebook);
    out.line("\t\t\t<CdtTrfTxInf>\n");
    write_payment_id(out, p);
    out.amount("\t\t\t\t<Amt>\n"
               "\t\t\t\t\t<InstdAmt Ccy=\"EUR\">",
               p.amount,
               "</InstdAmt>\n"
               "\t\t\t\t</Amt>\n");
    if (extended)
        write_ultimate_party(out, "UltmtDbtr",
                             own_ultimate_party(p, Field::ultimate_debtor, document.message));
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
    if (extended) write_ultimate_party(out, "UltmtCdtr", p[Field::ultimate_creditor]);
    write_purpose(out, rulebook, p);
    if (is_strict(rulebook)) {
        write_strict_remittance(out, p);
    } else {
        out.line("\t\t\t\t<RmtInf>\n");
        out.escaped("\t\t\t\t\t<Ustrd>", p[Field::remittance], "</Ustrd>\n");
        out.line("\t\t\t\t</RmtInf>\n");
    }
    out.line("\t\t\t</CdtTrfTxInf>\n");
}

// The date of a block, and the time of instant payments that have one.
void write_execution_date(DocumentWriter& out, const Rulebook& rulebook, const PaymentBlock& block) {
    if (!uses_schema_of_2019(rulebook))
        out.line("\t\t\t<ReqdExctnDt>", block.date, "</ReqdExctnDt>\n");
    else if (block.service.time.empty())
        out.line("\t\t\t<ReqdExctnDt><Dt>", block.date, "</Dt></ReqdExctnDt>\n");
    else
        out.line("\t\t\t<ReqdExctnDt><DtTm>", block.date, "T", block.service.time,
                 UtcOffset(block.date, block.service.time).text, "</DtTm></ReqdExctnDt>\n");
}

void write_block(DocumentWriter& out, const Document& document, const PaymentBlock& block,
                 std::size_t number) {
    write_block_header(out, document, block, number, "TRF");
    out.line("\t\t\t<PmtTpInf>\n"
             "\t\t\t\t<SvcLvl>\n"
             "\t\t\t\t\t<Cd>",
             block.service.urgent ? "URGP" : "SEPA",
             "</Cd>\n"
             "\t\t\t\t</SvcLvl>\n");
    if (block.service.instant)
        out.line("\t\t\t\t<LclInstrm>\n"
                 "\t\t\t\t\t<Cd>INST</Cd>\n"
                 "\t\t\t\t</LclInstrm>\n");
    write_category(out, block);
    out.line("\t\t\t</PmtTpInf>\n");
    write_execution_date(out, document.rulebook, block);
    write_own_side(out, document, OwnSide{"Dbtr", "DbtrAcct", "DbtrAgt"});
}

} // namespace

const char* fault_in_credit_transfers(const sepa_t& message, const Rulebook& rulebook) {
    // Deliberate: only strict rulebooks look; files without account, name or payments are in use.
    if (!is_strict(rulebook)) return nullptr;
    if (!message.iban) return "Missing debtor IBAN";
    if (!message.name) return "Missing debtor name";
    return message.payments.count() == 0 ? "No transactions available" : nullptr;
}

void write_credit_transfers(DocumentWriter& out, const Document& document) {
    const Rulebook& rulebook = document.rulebook;
    write_document(
        out, document, rulebook.credit_transfer_schema, "CstmrCdtTrfInitn",
        [&](const PaymentBlock& block, std::size_t number) { write_block(out, document, block, number); },
        [&](const Payment& payment) { write_transaction(out, document, payment); });
}

} // namespace velmora
