#include "xml/document.h"

#include <unistd.h>

#include <atomic>
#include <cstdio>

#include "base/local_time.h"

namespace velmora {
namespace {

// Counts generated message ids, so that those of one second differ.
std::atomic<unsigned> message_id_counter = 0;

// Sets the date of payments without one to today, unless the caller did. False without memory.
bool ensure_date(sepa_t* message, std::time_t now) {
    if (message->date) return true;
    const Day today = local_day(now);
    char text[16];
    const int length = std::snprintf(text, sizeof text, "%04i-%02i-%02i", today.year, today.month, today.day);
    return message->date.assign({text, static_cast<std::size_t>(length)});
}

// Generates a message identification unless one is set. False without memory.
bool ensure_message_id(sepa_t* message, std::time_t now) {
    if (message->message_id) return true;
    const std::tm local = local_time(now);
    const unsigned count = message_id_counter.fetch_add(1, std::memory_order_relaxed);
    const unsigned number = (count + static_cast<unsigned>(getpid()) * 100u) % 10000000u;
    char id[36];
    const int length =
        std::snprintf(id, sizeof id, "SEPA-%04i%02i%02i%02i%02i%02i-%07u", local.tm_year + 1900,
                      local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec, number);
    return length > 0 && message->message_id.assign(id);
}

// Bytes that the text will hardly exceed.
std::size_t expected_size(const PaymentList& payments, std::size_t blocks) {
    constexpr std::size_t of_a_document = 1024, of_a_block = 2048, of_a_payment = 900, of_a_text = 50;
    const std::size_t escapes = payments.text_size() / 16;
    return of_a_document + blocks * of_a_block + payments.count() * of_a_payment +
           payments.text_count() * of_a_text + payments.text_size() + escapes;
}

const char* write(sepa_t* message, char*& text) {
    const bool is_direct_debit = message->type == SEPA_MSGTYPE_DDI;
    const Rulebook& rulebook = rulebook_of(*message);
    const std::time_t now = std::time(nullptr);
    if (!ensure_date(message, now)) return "malloc() failed";
    if (is_direct_debit)
        if (const char* fault = fault_in_direct_debits(*message, rulebook)) return fault;
    if (!ensure_message_id(message, now))
        return is_direct_debit ? "ddi_toXML: strdup() failed" : "cti_toXML: strdup() failed";

    PaymentBlocks blocks;
    if (const char* error = blocks.group(*message)) return error;
    DocumentWriter out(expected_size(message->payments, blocks.view().size()));
    const Document document{*message, rulebook, now, blocks.view()};
    if (is_direct_debit)
        write_direct_debits(out, document);
    else
        write_credit_transfers(out, document);
    text = out.release();
    return text == nullptr ? "Out of memory" : nullptr;
}

void write_document_element(DocumentWriter& out, const Rulebook& rulebook, std::string_view schema) {
    constexpr std::string_view iso_20022 = "urn:iso:std:iso:20022:tech:xsd:";
    out.line("<Document xmlns=\"", iso_20022, schema,
             "\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"");
    if (names_schema_location(rulebook))
        out.line(" xsi:schemaLocation=\"", iso_20022, schema, " ", schema, ".xsd\"");
    out.line(">\n");
}

void write_group_header(DocumentWriter& out, const Document& document) {
    std::tm utc{};
    gmtime_r(&document.now, &utc);
    char created[80];
    std::snprintf(created, sizeof created, "%04i-%02i-%02iT%02i:%02i:%02iZ", utc.tm_year + 1900,
                  utc.tm_mon + 1, utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec);

    const sepa_t& message = document.message;
    out.line("\t\t<GrpHdr>\n"
             "\t\t\t<MsgId>",
             message.message_id.view(), "</MsgId>\n");
    out.line("\t\t\t<CreDtTm>", created, "</CreDtTm>\n");
    out.number("\t\t\t<NbOfTxs>", message.payments.count(), "</NbOfTxs>\n");
    out.amount("\t\t\t<CtrlSum>", message.control_sum, "</CtrlSum>\n");
    out.line("\t\t\t<InitgPty>\n");
    // Deliberate: credit transfers have the name as it stands here, escaped everywhere else; files are
    // compared.
    if (message.type == SEPA_MSGTYPE_DDI)
        out.escaped("\t\t\t\t<Nm>", message.name.view(), "</Nm>\n");
    else if (message.name)
        out.line("\t\t\t\t<Nm>", message.name.view(), "</Nm>\n");
    out.line("\t\t\t</InitgPty>\n"
             "\t\t</GrpHdr>\n");
}

} // namespace

void write_opening(DocumentWriter& out, const Document& document, std::string_view schema,
                   std::string_view root) {
    out.line("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
    write_document_element(out, document.rulebook, schema);
    out.line("\t<", root, ">\n");
    write_group_header(out, document);
}

void write_block_header(DocumentWriter& out, const sepa_t& message, const PaymentBlock& block,
                        std::size_t number, std::string_view payment_method) {
    out.line("\t\t<PmtInf>\n"
             "\t\t\t<PmtInfId>",
             message.message_id.view(), "-P");
    out.number("", number, "</PmtInfId>\n");
    out.line("\t\t\t<PmtMtd>", payment_method, "</PmtMtd>\n");
    out.line("\t\t\t<BtchBookg>", message.batch_booking ? "true" : "false", "</BtchBookg>\n");
    out.number("\t\t\t<NbOfTxs>", block.payments.size(), "</NbOfTxs>\n");
    out.amount("\t\t\t<CtrlSum>", block.sum, "</CtrlSum>\n");
}

void write_own_side(DocumentWriter& out, const Document& document, const OwnSide& elements) {
    const sepa_t& message = document.message;
    out.line("\t\t\t<", elements.party, ">\n");
    out.escaped("\t\t\t\t<Nm>", message.name.view(), "</Nm>\n");
    out.line("\t\t\t</", elements.party, ">\n");
    out.line("\t\t\t<", elements.account, ">\n\t\t\t\t<Id>\n");
    if (message.iban) out.line("\t\t\t\t\t<IBAN>", message.iban.view(), "</IBAN>\n");
    out.line("\t\t\t\t</Id>\n\t\t\t</", elements.account, ">\n");
    out.line("\t\t\t<", elements.agent, ">\n\t\t\t\t<FinInstnId>\n");
    if (message.bic) write_bic(out, document.rulebook, "\t\t\t\t\t", message.bic.view());
    out.line("\t\t\t\t</FinInstnId>\n\t\t\t</", elements.agent, ">\n");
    out.line("\t\t\t<ChrgBr>SLEV</ChrgBr>\n");
}

void write_bic(DocumentWriter& out, const Rulebook& rulebook, std::string_view tabs, std::string_view bic) {
    if (uses_schema_of_2019(rulebook))
        out.line(tabs, "<BICFI>", bic, "</BICFI>\n");
    else
        out.line(tabs, "<BIC>", bic, "</BIC>\n");
}

void write_payment_id(DocumentWriter& out, const Payment& payment) {
    const std::string_view id = payment[Field::end_to_end_id];
    out.line("\t\t\t\t<PmtId>\n"
             "\t\t\t\t\t<EndToEndId>",
             id.data() != nullptr ? id : "NOTPROVIDED",
             "</EndToEndId>\n"
             "\t\t\t\t</PmtId>\n");
}

void write_structured_address(DocumentWriter& out, const Payment& payment) {
    struct Element {
        char open[20], close[17];
    };
    // In the order of the fields from first_structured_field on.
    static constexpr Element elements[structured_field_count] = {
        {"\t\t\t\t\t\t<Dept>", "</Dept>\n"},
        {"\t\t\t\t\t\t<SubDept>", "</SubDept>\n"},
        {"\t\t\t\t\t\t<StrtNm>", "</StrtNm>\n"},
        {"\t\t\t\t\t\t<BldgNb>", "</BldgNb>\n"},
        {"\t\t\t\t\t\t<BldgNm>", "</BldgNm>\n"},
        {"\t\t\t\t\t\t<Flr>", "</Flr>\n"},
        {"\t\t\t\t\t\t<PstBx>", "</PstBx>\n"},
        {"\t\t\t\t\t\t<Room>", "</Room>\n"},
        {"\t\t\t\t\t\t<PstCd>", "</PstCd>\n"},
        {"\t\t\t\t\t\t<TwnNm>", "</TwnNm>\n"},
        {"\t\t\t\t\t\t<TwnLctnNm>", "</TwnLctnNm>\n"},
        {"\t\t\t\t\t\t<DstrctNm>", "</DstrctNm>\n"},
        {"\t\t\t\t\t\t<CtrySubDvsn>", "</CtrySubDvsn>\n"},
    };
    for (std::size_t i = 0; i < structured_field_count; ++i) {
        const auto field = static_cast<Field>(static_cast<std::size_t>(first_structured_field) + i);
        out.escaped(elements[i].open, payment[field], elements[i].close);
    }
    write_country(out, payment);
}

void write_country(DocumentWriter& out, const Payment& payment) {
    out.escaped("\t\t\t\t\t\t<Ctry>", payment[Field::country], "</Ctry>\n");
}

void write_address_lines(DocumentWriter& out, const Payment& payment) {
    out.escaped("\t\t\t\t\t\t<AdrLine>", payment[Field::address_line_1], "</AdrLine>\n");
    out.escaped("\t\t\t\t\t\t<AdrLine>", payment[Field::address_line_2], "</AdrLine>\n");
}

} // namespace velmora

using namespace velmora;

char* sepa_toXML(sepa_t* message) {
    if (message == nullptr) return nullptr;
    char* text = nullptr;
    if (const char* error = write(message, text)) message->failure.fail(error);
    return text;
}
