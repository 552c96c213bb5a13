#include "xml/document.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "base/local_time.h"

namespace velmora {
namespace {

constexpr std::uint64_t first_allocation = 256;

// More than the lines of nearly every payment, so that they rarely reallocate the text.
constexpr std::uint64_t room_for_a_payment = 4096;

constexpr std::size_t amount_buffer_size = 128;

// Counts generated message ids, so that those of one second differ.
unsigned message_id_counter = 0;

// Sets the date of payments without one to today, unless the caller did. False without memory.
bool ensure_date(sepa_t* message) {
    if (message->date) return true;
    const std::tm today = local_time(std::time(nullptr));
    char text[11];
    return message->date.assign({text, std::strftime(text, sizeof text, "%Y-%m-%d", &today)});
}

} // namespace

DocumentWriter::~DocumentWriter() {
    if (text.data == nullptr) return;
    explicit_bzero(text.data, text.len);
    std::free(text.data);
}

void DocumentWriter::escaped_line(std::string_view open, std::string_view content, std::string_view close) {
    fixed(open);
    if (!failed && !sepa_buf_append_escaped(&text, content)) failed = out_of_memory = true;
    fixed(close);
}

void DocumentWriter::amount(std::string_view open, double euros, std::string_view close) {
    char buffer[amount_buffer_size];
    const char* end = __sepa_d2str(buffer, sizeof buffer, euros);
    line(open, std::string_view(buffer, end), close);
}

void DocumentWriter::number(std::string_view open, std::size_t number, std::string_view close) {
    char buffer[24];
    const int length = std::snprintf(buffer, sizeof buffer, "%zu", number);
    line(open, std::string_view(buffer, static_cast<std::size_t>(length)), close);
}

void DocumentWriter::reserve_payment() {
    sepa_buf_reserve(&text, room_for_a_payment);
}

char* DocumentWriter::release() {
    char* data = text.data;
    text = {};
    return data;
}

bool ensure_message_id(sepa_t* message, std::time_t now) {
    if (message->message_id) return true;
    const std::tm local = local_time(now);
    const unsigned number = (message_id_counter++ + static_cast<unsigned>(getpid()) * 100u) % 10000000u;
    char id[36];
    const int length =
        std::snprintf(id, sizeof id, "SEPA-%04i%02i%02i%02i%02i%02i-%07u", local.tm_year + 1900,
                      local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec, number);
    return length > 0 && message->message_id.assign(id);
}

void write_document_open(DocumentWriter& out, std::string_view schema, const Rulebook& rulebook) {
    constexpr std::string_view iso_20022 = "urn:iso:std:iso:20022:tech:xsd:";
    out.line("<Document xmlns=\"", iso_20022, schema,
             "\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"");
    if (names_schema_location(rulebook))
        out.line(" xsi:schemaLocation=\"", iso_20022, schema, " ", schema, ".xsd\"");
    out.fixed(">\n");
}

void write_group_header(DocumentWriter& out, const sepa_t& message, std::time_t now) {
    std::tm utc{};
    gmtime_r(&now, &utc);
    char created[80];
    std::snprintf(created, sizeof created, "%04i-%02i-%02iT%02i:%02i:%02iZ", utc.tm_year + 1900,
                  utc.tm_mon + 1, utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec);

    out.fixed("\t\t<GrpHdr>\n");
    out.line("\t\t\t<MsgId>", message.message_id.view(), "</MsgId>\n");
    out.line("\t\t\t<CreDtTm>", created, "</CreDtTm>\n");
    out.number("\t\t\t<NbOfTxs>", message.transaction_count, "</NbOfTxs>\n");
    out.amount("\t\t\t<CtrlSum>", message.control_sum, "</CtrlSum>\n");
}

void write_block_header(DocumentWriter& out, const sepa_t& message, const PaymentBlock& block,
                        std::size_t number, std::string_view payment_method) {
    out.fixed("\t\t<PmtInf>\n");
    out.line("\t\t\t<PmtInfId>", message.message_id.view(), "-P");
    out.number("", number, "</PmtInfId>\n");
    out.line("\t\t\t<PmtMtd>", payment_method, "</PmtMtd>\n");
    out.line("\t\t\t<BtchBookg>", message.batch_booking ? "true" : "false", "</BtchBookg>\n");
    out.number("\t\t\t<NbOfTxs>", block.transactions.size(), "</NbOfTxs>\n");
    out.amount("\t\t\t<CtrlSum>", block.sum, "</CtrlSum>\n");
}

void write_bic(DocumentWriter& out, std::string_view tabs, const OwnedText& bic) {
    if (uses_schema_of_2019(*selected_rulebook()))
        out.line(tabs, "<BICFI>", bic.view(), "</BICFI>\n");
    else
        out.line(tabs, "<BIC>", bic.view(), "</BIC>\n");
}

void write_payment_id(DocumentWriter& out, const Transaction& transaction) {
    const OwnedText& id = transaction[Field::end_to_end_id];
    out.fixed("\t\t\t\t<PmtId>\n");
    out.line("\t\t\t\t\t<EndToEndId>", id ? id.view() : "NOTPROVIDED", "</EndToEndId>\n");
    out.fixed("\t\t\t\t</PmtId>\n");
}

bool has_postal_address(const Transaction& transaction) {
    return transaction[Field::country] || transaction[Field::town] || transaction[Field::address_line_1] ||
           transaction[Field::address_line_2];
}

void write_structured_address(DocumentWriter& out, const Transaction& transaction) {
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
    const OwnedText* fields = &transaction[first_structured_field];
    for (std::size_t i = 0; i < structured_field_count; ++i)
        out.escaped(elements[i].open, fields[i], elements[i].close);
    write_country(out, transaction);
}

void write_country(DocumentWriter& out, const Transaction& transaction) {
    out.escaped("\t\t\t\t\t\t<Ctry>", transaction[Field::country], "</Ctry>\n");
}

void write_address_lines(DocumentWriter& out, const Transaction& transaction) {
    out.escaped("\t\t\t\t\t\t<AdrLine>", transaction[Field::address_line_1], "</AdrLine>\n");
    out.escaped("\t\t\t\t\t\t<AdrLine>", transaction[Field::address_line_2], "</AdrLine>\n");
}

} // namespace velmora

using namespace velmora;

char* sepa_toXML(sepa_t* message) {
    if (message == nullptr) return nullptr;
    if (!ensure_date(message)) {
        fail(message, "malloc() failed");
        return nullptr;
    }
    DocumentWriter out;
    if (!sepa_buf_start(&out.text, first_allocation)) return nullptr;
    out.fixed("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");

    const bool is_direct_debit = message->type == SEPA_MSGTYPE_DDI;
    const char* error =
        is_direct_debit ? write_direct_debits(out, message) : write_credit_transfers(out, message);
    out.fixed("</Document>\n");
    if (error == nullptr && out.out_of_memory) error = "Out of memory";
    if (error != nullptr) fail(message, error);
    return error == nullptr && !out.failed ? out.release() : nullptr;
}
