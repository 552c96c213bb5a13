// ISO 20022 account reports, statements and notifications (camt.052, camt.053, camt.054).
#include <algorithm>
#include <cstring>
#include <string_view>

#include "base/amount.h"
#include "base/ascii.h"
#include "base/exact_amount.h"
#include "statement/camt_paths.h"
#include "statement/camt_reading.h"
#include "statement/load.h"

namespace velmora::camt {
namespace {

using Event = XmlReader::Event;

template <typename Field>
Field& field(Reading& reading, const Node& node) {
    return *reinterpret_cast<Field*>(reinterpret_cast<char*>(&reading.fields) + node.offset);
}

// The text of an element that ends, zero-terminated; one with elements inside has an empty one.
struct Value {
    char* begin;
    std::size_t length;

    std::string_view view() const { return {begin, length}; }
    bool is(std::string_view text) const { return view() == text; }
};

Value text_of(const XmlReader& xml) {
    return {xml.text(), xml.text_length()};
}

Value trimmed_text(XmlReader& xml) {
    xml.trim_text();
    return text_of(xml);
}

Value unspaced_text(XmlReader& xml) {
    xml.unspace_text();
    return text_of(xml);
}

// ------------------------------------------------------------------------------------------------------
// Values

void keep(char*& place, const Value& value) {
    if (place == nullptr && value.length != 0) place = value.begin;
}

// Cuts to the field, whole characters only.
void keep_short(char* place, std::size_t size, const Value& value) {
    if (*place != '\0' || value.length == 0) return;
    std::size_t length = value.length;
    if (length >= size)
        for (length = size - 1; length != 0 && (value.begin[length] & 0xC0) == 0x80;)
            --length;
    std::memcpy(place, value.begin, length);
    place[length] = '\0';
}

// Two, or four, digits.
int to_number(const char* digits, int count) {
    int number = 0;
    for (; count != 0; --count, ++digits) {
        if (!is_digit(*digits)) return -1;
        number = number * 10 + (*digits - '0');
    }
    return number;
}

// The date is what the first ten characters tell: no arithmetic of zones.
bool keep_date(Reading& reading, struct tm& place, const Value& value) {
    const char* const text = value.begin;
    if (value.length < 10 || text[4] != '-' || text[7] != '-') return refuse(reading, "not a date");
    const int year = to_number(text, 4), month = to_number(text + 5, 2), day = to_number(text + 8, 2);
    if (year < 0 || month < 1 || month > 12 || day < 1 || day > 31) return refuse(reading, "not a date");
    if (place.tm_mday != 0) return true;
    place.tm_year = year - 1900;
    place.tm_mon = month - 1;
    place.tm_mday = day;
    return true;
}

bool keep_amount(Reading& reading, Amount& place, Value value) {
    if (value.length != 0 && *value.begin == '+') ++value.begin, --value.length;
    if (value.length == 0) return refuse(reading, "not an amount");
    const Decimal decimal = scan_decimal(value.begin);
    if (decimal.empty || decimal.end != value.begin + value.length) return refuse(reading, "not an amount");
    if (place.is_given()) return true;
    place.text = value.begin;
    place.exact = decimal.exact();
    place.nearest = decimal.nearest();
    return true;
}

bool keep_currency_of(Reading& reading, Amount& place) {
    if (place.is_given()) return true;
    const std::string_view currency = reading.xml.attribute("Ccy");
    if (currency.empty()) return true;
    if (currency.size() != sizeof place.currency - 1 ||
        !std::all_of(currency.begin(), currency.end(), is_letter))
        return refuse(reading, "not a currency");
    std::memcpy(place.currency, currency.data(), currency.size());
    return true;
}

bool keep_sign(Reading& reading, Sign& place, const Value& value) {
    const bool is_credit = value.is("CRDT");
    if (!is_credit && !value.is("DBIT")) return refuse(reading, "neither CRDT nor DBIT");
    if (place == Sign::unknown) place = is_credit ? Sign::credit : Sign::debit;
    return true;
}

template <typename Number>
void keep_count(Number& place, const Value& value) {
    Number number = 0;
    if (place != 0) return;
    for (const char c : value.view())
        if (!is_digit(c) || __builtin_mul_overflow(number, Number{10}, &number) ||
            __builtin_add_overflow(number, static_cast<Number>(c - '0'), &number))
            return;
    place = number;
}

// Sums have a sign of their own.
bool keep_sum(Reading& reading, double& place, const Value& value) {
    Amount sum{};
    const bool is_negative = value.length != 0 && *value.begin == '-';
    if (!keep_amount(reading, sum, is_negative ? Value{value.begin + 1, value.length - 1} : value))
        return false;
    if (place == 0 && sum.nearest != 0) place = is_negative ? -sum.nearest : sum.nearest;
    return true;
}

// ------------------------------------------------------------------------------------------------------
// Elements

// The last two digits of "urn:iso:std:iso:20022:tech:xsd:camt.053.001.08", 0 for other namespaces.
std::uint16_t version_of(std::string_view name_space) {
    constexpr std::string_view iso = "urn:iso:std:iso:20022:tech:xsd:camt.05";
    if (!name_space.starts_with(iso) || name_space.size() < iso.size() + 3) return 0;
    const char* const digits = name_space.data() + name_space.size() - 3;
    if (digits[0] != '.') return 0;
    const int version = to_number(digits + 1, 2);
    return static_cast<std::uint16_t>(version < 0 ? 0 : version);
}

void begin_message(Reading& reading) {
    const std::string_view name = reading.xml.name();
    Message& message = reading.fields.message;
    message = {};
    message.kind = name == "BkToCstmrStmt" ? 53 : name == "BkToCstmrAcctRpt" ? 52 : 54;
    message.version = version_of(reading.xml.name_space());
}

void begin_entry(Reading& reading) {
    reading.fields.entry = {};
    reading.fields.part = {};
    reading.remittance.clear();
    reading.return_text.clear();
}

// An entry may have several, each with a batch of its own.
void begin_details(Entry& entry) {
    if (!entry.first_batch.is_given()) entry.first_batch = entry.batch;
    entry.batch = {};
}

void end_charge(Charges& charges) {
    const Charge& charge = charges.record;
    if (charge.amount.is_given() && charge.is_included == 0)
        charges.records.add(charge.amount, charge.sign == Sign::credit ? Sign::credit : Sign::debit);
}

void end_charges(Charges& charges) {
    const Charge& charge = charges.single;
    if (charge.amount.is_given())
        charges.singles.add(charge.amount, charge.sign == Sign::credit ? Sign::credit : Sign::debit);
    // The total has no sign of its own.
    const bool is_credit = charges.records.value() > 0 || charges.singles.value() > 0;
    if (charges.total.is_given()) charges.totals.add(charges.total, is_credit ? Sign::credit : Sign::debit);
}

bool begin_element(Reading& reading, const Node& node) {
    switch (node.action) {
    case Action::begin_message:
        begin_message(reading);
        return true;
    case Action::begin_statement:
        return begin_statement(reading);
    case Action::begin_balance:
        reading.fields.balance = {};
        return true;
    case Action::begin_entry:
        begin_entry(reading);
        return true;
    case Action::begin_details:
        begin_details(reading.fields.entry);
        return true;
    case Action::begin_part:
        return begin_part(reading);
    case Action::begin_charges:
        field<Charges>(reading, node).total = {};
        field<Charges>(reading, node).single = {};
        return true;
    case Action::begin_charge:
        field<Charges>(reading, node).record = {};
        return true;
    case Action::note_presence:
        field<std::uint8_t>(reading, node) = 1;
        return true;
    case Action::keep_amount:
        return keep_currency_of(reading, field<Amount>(reading, node));
    default:
        return true;
    }
}

bool end_element(Reading& reading, const Node& node) {
    XmlReader& xml = reading.xml;
    switch (node.action) {
    case Action::keep_text:
        keep(field<char*>(reading, node), text_of(xml));
        return true;
    case Action::keep_trimmed:
        keep(field<char*>(reading, node), trimmed_text(xml));
        return true;
    case Action::keep_deep:
        if (const Value value = trimmed_text(xml); value.length != 0)
            field<char*>(reading, node) = value.begin;
        return true;
    case Action::keep_unspaced:
        keep(field<char*>(reading, node), unspaced_text(xml));
        return true;
    case Action::keep_code:
        keep_short(&field<char>(reading, node), sizeof Codes::domain, trimmed_text(xml));
        return true;
    case Action::keep_bic:
        keep_short(&field<char>(reading, node), sizeof Statement::bic, trimmed_text(xml));
        return true;
    case Action::keep_currency:
        keep_short(&field<char>(reading, node), sizeof Statement::currency, trimmed_text(xml));
        return true;
    case Action::keep_date:
        return keep_date(reading, field<struct tm>(reading, node), trimmed_text(xml));
    case Action::keep_amount:
        return keep_amount(reading, field<Amount>(reading, node), trimmed_text(xml));
    case Action::keep_sign:
        return keep_sign(reading, field<Sign>(reading, node), trimmed_text(xml));
    case Action::keep_flag: {
        const Value value = trimmed_text(xml);
        if (value.is("true") || value.is("1")) field<std::uint8_t>(reading, node) = 1;
        return true;
    }
    case Action::keep_count:
        keep_count(field<std::uint32_t>(reading, node), trimmed_text(xml));
        return true;
    case Action::keep_long_count:
        keep_count(field<std::uint64_t>(reading, node), trimmed_text(xml));
        return true;
    case Action::keep_sum:
        return keep_sum(reading, field<double>(reading, node), trimmed_text(xml));
    case Action::add_remittance:
        return xml.text_length() == 0 || reading.remittance.add(xml.text(), xml.text_length()) ||
               out_of_memory(reading);
    case Action::add_return_text:
        return xml.text_length() == 0 || reading.return_text.add(xml.text(), xml.text_length(), '\n') ||
               out_of_memory(reading);
    case Action::begin_charge:
        end_charge(field<Charges>(reading, node));
        return true;
    case Action::begin_charges:
        end_charges(field<Charges>(reading, node));
        return true;
    case Action::begin_balance:
        return end_balance(reading);
    case Action::begin_entry:
        return end_entry(reading);
    case Action::begin_statement:
        return end_statement(reading);
    default:
        return true;
    }
}

bool read_elements(Reading& reading, bool& has_message) {
    const auto begin = [&](const Node& node) {
        has_message |= node.action == Action::begin_message;
        return begin_element(reading, node);
    };
    return follow_paths(reading.xml, graph, begin,
                        [&](const Node& node) { return end_element(reading, node); });
}

} // namespace

bool refuse(Reading& reading, const char* reason) {
    return reading.xml.refuse(reason) != Event::error;
}

bool out_of_memory(Reading& reading) {
    return reading.parser.error.fail("Out of memory") == 1;
}

} // namespace velmora::camt

int velmora::load_camt(sepa_stmt_parser_t& parser) {
    camt::Reading reading(parser);
    bool has_message = false;
    if (!reading.xml.open(parser.input->text) || !camt::read_elements(reading, has_message)) {
        // What is no fault of the document has been told already.
        if (reading.xml.error().text[0] != '\0') parser.error = reading.xml.error();
        return 0;
    }
    if (!has_message) return parser.error.fail("Not a camt.052, camt.053 or camt.054 document");
    return 1;
}
