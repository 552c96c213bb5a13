#include "message/payment_rules.h"

#include <bit>
#include <cstring>

#include "base/amount.h"
#include "message/property_values.h"

namespace velmora {
namespace {

// SEPA countries outside the European Economic Area.
constexpr char countries_outside_eea[][3] = {"AD", "BL", "CH", "GB", "GG", "GI", "IM", "JE",
                                             "MC", "NC", "PF", "PM", "SM", "TF", "VA", "WF"};

bool is_outside_eea(std::string_view bic) {
    if (bic.size() < 8) return false;
    for (const auto& country : countries_outside_eea)
        if (bic[4] == country[0] && bic[5] == country[1]) return true;
    return false;
}

constexpr FieldSet address_lines = fields(Field::address_line_1, Field::address_line_2);
constexpr FieldSet town_and_country = fields(Field::town, Field::country);
constexpr FieldSet address = address_lines | town_and_country |
                             ((FieldSet{1} << structured_field_count) - 1)
                                 << static_cast<unsigned>(first_structured_field);

const char* fault_in_address(const Payment& payment, bool is_direct_debit, const Rulebook& rulebook) {
    const bool must_be_there = is_direct_debit && is_outside_eea(payment[Field::bic]);
    if (must_be_there && requires_address_line_outside_eea(rulebook) && !payment.has(address_lines))
        return "Address required for BICs outside EEA";
    // Deliberate: the text asks for both, either is enough; files with one of them are in use.
    if (must_be_there && requires_structured_address_outside_eea(rulebook) && !payment.has(town_and_country))
        return "Structured address required for BICs outside EEA (at least town and country)";
    if (requires_complete_address(rulebook) && (must_be_there || payment.has(address)) &&
        (payment.present() & town_and_country) != town_and_country)
        return "Address needs town and country";
    return nullptr;
}

constexpr std::int64_t largest_amount = 99'999'999'999;               // cents
constexpr std::int64_t largest_control_sum = 999'999'999'999'999'999; // as many digits as a document can hold

// What a strict rulebook finds in a payment.
const char* strict_fault(const Payment& payment, const sepa_t& message) {
    const std::int64_t cents = to_cents(payment.amount);
    if (cents > largest_amount || message.cents > largest_control_sum - cents) return "Amount too large";
    const bool is_instant = payment.instant || (message.defaults.instant && !payment.urgent);
    if (payment.has(Field::execution_time) && !is_instant) return "Invalid execution time";
    if (payment.has(Field::creditor_reference) && !payment[Field::remittance].empty())
        return "Only one of ref and reference allowed";
    if (payment.same_mandate_new_agent && payment.has(Field::original_iban))
        return "Only one of smnda and old_iban allowed";
    if (!payment.has(Field::name)) return "Name missing";
    if (message.type == SEPA_MSGTYPE_CTI) return nullptr;
    if (!payment.has(Field::mandate_reference)) return "Mandate reference missing";
    return payment.has(Field::mandate_date) ? nullptr : "Mandate signature date missing";
}

// Sets a header field that is set once more, by its own setter.
bool recheck(sepa_t& message, const OwnedText& field, int (*set)(sepa_t*, const char*)) {
    return !field || set(&message, field.c_str()) == 1;
}

bool recheck(sepa_t& message, const Payment& payment, const Rulebook& rulebook) {
    constexpr std::size_t longest_text = 1024; // more than any rulebook accepts
    PaymentCheck check(rulebook, message.type, message.failure);
    for (FieldSet left = payment.present(); left != 0; left &= left - 1) {
        const auto field = static_cast<Field>(std::countr_zero(left));
        char text[longest_text];
        text[payment[field].copy(text, sizeof text - 1)] = '\0';
        if (!check.set(field, text)) return false;
    }
    return check_payment(payment, message, rulebook);
}

// What is missing in a payment or does not go together, or null.
const char* fault_in_payment(const Payment& payment, const sepa_t& message, const Rulebook& rulebook) {
    const bool is_direct_debit = message.type == SEPA_MSGTYPE_DDI;
    if (!payment.has(Field::iban)) return "IBAN missing";
    if (!payment.has(Field::bic) && requires_bic(rulebook)) return "BIC missing";
    if (const char* fault = fault_in_address(payment, is_direct_debit, rulebook)) return fault;
    if (is_direct_debit && payment.sequence_type == no_sequence_type) return "Sequence type missing";
    if (payment.amount == 0) return "Amount missing";
    return is_strict(rulebook) ? strict_fault(payment, message) : nullptr;
}

} // namespace

bool check_payment(const Payment& payment, sepa_t& message, const Rulebook& rulebook) {
    if (const char* fault = fault_in_payment(payment, message, rulebook)) return message.failure.fail(fault);
    if (payment.urgent && payment.instant && is_strict(rulebook))
        return message.failure.fail_with("Invalid value '%s' for urgent flag", "1");
    return true;
}

bool recheck_strictly(sepa_t& message, const Rulebook& rulebook) {
    if (!recheck(message, message.iban, sepa_setIBAN) || !recheck(message, message.bic, sepa_setBIC) ||
        !recheck(message, message.name, sepa_setName) ||
        (message.type == SEPA_MSGTYPE_DDI &&
         !recheck(message, message.creditor_identifier, sepa_setCreditorIdentifier)) ||
        !recheck(message, message.date, sepa_setDate) ||
        !recheck(message, message.message_id, sepa_setMessageId))
        return false;
    for (const StoredPayment* payment = message.payments.first(); payment != nullptr;
         payment = payment->next())
        if (!recheck(message, payment->read(), rulebook)) return false;
    message.has_loose_values = false;
    return true;
}

} // namespace velmora
