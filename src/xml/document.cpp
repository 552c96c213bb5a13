#include "xml/document.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>

#include "base/local_time.h"
#include "message/payment_rules.h"

namespace velmora {
namespace {

// What a payment block's identification may have.
constexpr std::size_t longest_block_id = 35;

// A day as yyyy-mm-dd.
class DateText {
public:
    explicit DateText(const Day& day)
        : length_(static_cast<std::size_t>(
              std::snprintf(text_, sizeof text_, "%04i-%02i-%02i", day.year, day.month, day.day))) {}

    std::string_view view() const { return {text_, length_}; }

private:
    char text_[40];
    std::size_t length_;
};

// Counts generated message ids, so that those of one second differ.
std::atomic<unsigned> message_id_counter = 0;

// Sets the date of payments without one to today, unless the caller did. False without memory.
bool ensure_date(sepa_t* message, std::time_t now) {
    return message->date || message->date.assign(DateText(local_day(now)).view());
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

bool has_extended_values(const sepa_t& message) {
    const Defaults& defaults = message.defaults;
    return message.has_extended_payments || defaults.instant || defaults.urgent || defaults.category ||
           defaults.ultimate_party;
}

// The text of the document, or null with the failure told.
char* write(sepa_t* message) {
    Failure& failure = message->failure;
    const bool is_direct_debit = message->type == SEPA_MSGTYPE_DDI;
    const Rulebook& rulebook = rulebook_of(*message);
    const std::time_t now = std::time(nullptr);
    if (!ensure_date(message, now)) return failure.fail("malloc() failed"), nullptr;
    if (const char* fault = is_direct_debit ? fault_in_direct_debits(*message, rulebook)
                                            : fault_in_credit_transfers(*message, rulebook))
        return failure.fail(fault), nullptr;
    if (is_strict(rulebook) && message->has_loose_values && !recheck_strictly(*message, rulebook))
        return nullptr;
    // Nothing is left out in silence, least of all how fast or under which reference to pay.
    if (!knows_extended_keys(rulebook) && has_extended_values(*message))
        return failure.fail("Not supported by the selected SEPA rulebook"), nullptr;
    if (!ensure_message_id(message, now))
        return failure.fail(is_direct_debit ? "ddi_toXML: strdup() failed" : "cti_toXML: strdup() failed"),
               nullptr;

    PaymentBlocks blocks;
    if (const char* fault = blocks.group(*message, rulebook, message->date.view()))
        return failure.fail(fault), nullptr;
    DocumentWriter out(expected_size(message->payments, blocks.view().size()));
    const Document document{*message, rulebook, now, blocks.view()};
    if (is_direct_debit)
        write_direct_debits(out, document);
    else
        write_credit_transfers(out, document);
    char* text = out.release();
    if (text == nullptr) failure.fail("Out of memory");
    return text;
}

void write_document_element(DocumentWriter& out, const Rulebook& rulebook, std::string_view schema) {
    constexpr std::string_view iso_20022 = "urn:iso:std:iso:20022:tech:xsd:";
    out.line("<Document xmlns=\"", iso_20022, schema,
             "\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"");
    if (names_schema_location(rulebook))
        out.line(" xsi:schemaLocation=\"", iso_20022, schema, " ", schema, ".xsd\"");
    out.line(">\n");
}

void write_creation_time(DocumentWriter& out, const Document& document) {
    std::tm utc{};
    gmtime_r(&document.now, &utc);
    char now[80];
    std::snprintf(now, sizeof now, "%04i-%02i-%02iT%02i:%02i:%02iZ", utc.tm_year + 1900, utc.tm_mon + 1,
                  utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec);
    const OwnedText& created = document.message.defaults.created;
    const bool is_given = created && knows_extended_keys(document.rulebook);
    out.line("\t\t\t<CreDtTm>", is_given ? created.view() : now, "</CreDtTm>\n");
}

void write_control_sum(DocumentWriter& out, const Rulebook& rulebook, double euros, std::int64_t cents) {
    if (is_strict(rulebook))
        out.cents("\t\t\t<CtrlSum>", cents, "</CtrlSum>\n");
    else
        out.amount("\t\t\t<CtrlSum>", euros, "</CtrlSum>\n");
}

void write_group_header(DocumentWriter& out, const Document& document) {
    const sepa_t& message = document.message;
    out.line("\t\t<GrpHdr>\n"
             "\t\t\t<MsgId>",
             message.message_id.view(), "</MsgId>\n");
    write_creation_time(out, document);
    out.number("\t\t\t<NbOfTxs>", message.payments.count(), "</NbOfTxs>\n");
    write_control_sum(out, document.rulebook, message.control_sum, message.cents);
    out.line("\t\t\t<InitgPty>\n");
    // Deliberate: credit transfers have the name as it stands here, unless the rulebook is strict; files are
    // compared.
    if (message.type == SEPA_MSGTYPE_DDI || is_strict(document.rulebook))
        out.escaped("\t\t\t\t<Nm>", message.name.view(), "</Nm>\n");
    else if (message.name)
        out.line("\t\t\t\t<Nm>", message.name.view(), "</Nm>\n");
    out.line("\t\t\t</InitgPty>\n"
             "\t\t</GrpHdr>\n");
}

void write_creditor_reference(DocumentWriter& out, std::string_view reference) {
    out.line("\t\t\t\t\t<Strd>\n"
             "\t\t\t\t\t\t<CdtrRefInf>\n"
             "\t\t\t\t\t\t\t<Tp>\n"
             "\t\t\t\t\t\t\t\t<CdOrPrtry>\n"
             "\t\t\t\t\t\t\t\t\t<Cd>SCOR</Cd>\n"
             "\t\t\t\t\t\t\t\t</CdOrPrtry>\n"
             "\t\t\t\t\t\t\t\t<Issr>ISO</Issr>\n"
             "\t\t\t\t\t\t\t</Tp>\n"
             "\t\t\t\t\t\t\t<Ref>",
             reference,
             "</Ref>\n"
             "\t\t\t\t\t\t</CdtrRefInf>\n"
             "\t\t\t\t\t</Strd>\n");
}

} // namespace

void write_opening(DocumentWriter& out, const Document& document, std::string_view schema,
                   std::string_view root) {
    out.line("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
    write_document_element(out, document.rulebook, schema);
    out.line("\t<", root, ">\n");
    write_group_header(out, document);
}

void write_block_header(DocumentWriter& out, const Document& document, const PaymentBlock& block,
                        std::size_t number, std::string_view payment_method) {
    const sepa_t& message = document.message;
    char suffix[24];
    const std::string_view id = message.message_id.view();
    const auto suffix_length =
        static_cast<std::size_t>(std::snprintf(suffix, sizeof suffix, "-P%zu", number));
    // The number tells blocks apart whose message identification is cut.
    const std::size_t longest = is_strict(document.rulebook) ? longest_block_id - suffix_length : id.size();
    out.line("\t\t<PmtInf>\n"
             "\t\t\t<PmtInfId>",
             std::string_view(id.data(), std::min(id.size(), longest)),
             std::string_view(suffix, suffix_length),
             "</PmtInfId>\n"
             "\t\t\t<PmtMtd>",
             payment_method,
             "</PmtMtd>\n"
             "\t\t\t<BtchBookg>",
             message.batch_booking ? "true" : "false", "</BtchBookg>\n");
    out.number("\t\t\t<NbOfTxs>", block.payments.size(), "</NbOfTxs>\n");
    write_control_sum(out, document.rulebook, block.sum, block.cents);
}

void write_category(DocumentWriter& out, const PaymentBlock& block) {
    if (block.service.category.empty()) return;
    out.line("\t\t\t\t<CtgyPurp>\n"
             "\t\t\t\t\t<Cd>",
             block.service.category,
             "</Cd>\n"
             "\t\t\t\t</CtgyPurp>\n");
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
    if (message.bic)
        write_bic(out, document.rulebook, "\t\t\t\t\t", message.bic.view());
    else if (permits_unknown_own_bank(document.rulebook))
        out.line("\t\t\t\t\t<Othr>\n"
                 "\t\t\t\t\t\t<Id>NOTPROVIDED</Id>\n"
                 "\t\t\t\t\t</Othr>\n");
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
    out.line("\t\t\t\t<PmtId>\n");
    if (payment.has(Field::instruction_id))
        out.line("\t\t\t\t\t<InstrId>", payment[Field::instruction_id], "</InstrId>\n");
    out.line("\t\t\t\t\t<EndToEndId>", id.data() != nullptr ? id : "NOTPROVIDED",
             "</EndToEndId>\n"
             "\t\t\t\t</PmtId>\n");
}

void write_ultimate_party(DocumentWriter& out, std::string_view name, std::string_view party) {
    if (party.empty()) return;
    out.line("\t\t\t\t<", name, ">\n");
    out.escaped("\t\t\t\t\t<Nm>", party, "</Nm>\n");
    out.line("\t\t\t\t</", name, ">\n");
}

void write_purpose(DocumentWriter& out, const Rulebook& rulebook, const Payment& payment) {
    if (!payment.has(Field::purpose)) return;
    constexpr std::string_view open = "\t\t\t\t<Purp>\n"
                                      "\t\t\t\t\t<Cd>",
                               close = "</Cd>\n"
                                       "\t\t\t\t</Purp>\n";
    if (is_strict(rulebook))
        out.escaped(open, payment[Field::purpose], close);
    else
        out.line(open, payment[Field::purpose], close);
}

void write_strict_remittance(DocumentWriter& out, const Payment& payment) {
    constexpr std::string_view open = "\t\t\t\t<RmtInf>\n", close = "\t\t\t\t</RmtInf>\n";
    if (payment.has(Field::creditor_reference)) {
        out.line(open);
        write_creditor_reference(out, payment[Field::creditor_reference]);
        out.line(close);
    } else if (!payment[Field::remittance].empty()) {
        out.line(open);
        out.escaped("\t\t\t\t\t<Ustrd>", payment[Field::remittance], "</Ustrd>\n");
        out.line(close);
    }
}

void write_structured_address(DocumentWriter& out, const Rulebook& rulebook, const Payment& payment) {
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
    if (permits_hybrid_address(rulebook)) write_address_lines(out, payment);
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
    return message == nullptr ? nullptr : write(message);
}

int sepa_getTotals(sepa_t* message, sepa_totals_t* totals) {
    if (message == nullptr || totals == nullptr) return 0;
    *totals = {message->payments.count(), message->cents, 0};
    const DateText today(local_day(std::time(nullptr)));
    PaymentBlocks blocks;
    const char* fault =
        blocks.group(*message, rulebook_of(*message), message->date ? message->date.view() : today.view());
    if (fault != nullptr) {
        message->failure.begin_test(); // nobody who only asks makes a later call fail
        message->failure.fail(fault);
        message->failure.end_test();
        return 0;
    }
    totals->blocks = blocks.view().size();
    return 1;
}
