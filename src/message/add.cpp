// Adding payments.
#include "message/message.h"
#include "message/property_values.h"

using namespace velmora;

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

// What a direct debit lacks as a whole, or null.
const char* missing_in_direct_debit(const Payment& payment, const Rulebook& rulebook) {
    constexpr FieldSet lines = fields(Field::address_line_1, Field::address_line_2);
    if (is_outside_eea(payment[Field::bic])) {
        if (requires_address_line_outside_eea(rulebook) && !payment.has(lines))
            return "Address required for BICs outside EEA";
        // Deliberate: the text asks for both, either is enough; files with one of them are in use.
        if (requires_structured_address_outside_eea(rulebook) &&
            !payment.has(fields(Field::town, Field::country)))
            return "Structured address required for BICs outside EEA (at least town and country)";
    }
    return payment.sequence_type == no_sequence_type ? "Sequence type missing" : nullptr;
}

// What a payment lacks as a whole, or null.
const char* missing_in(const Payment& payment, std::uint32_t message_type, const Rulebook& rulebook) {
    if (!payment.has(Field::iban)) return "IBAN missing";
    if (!payment.has(Field::bic) && requires_bic(rulebook)) return "BIC missing";
    if (message_type == SEPA_MSGTYPE_DDI)
        if (const char* missing = missing_in_direct_debit(payment, rulebook)) return missing;
    return payment.amount == 0 ? "Amount missing" : nullptr;
}

bool add(sepa_t& message, const char* const* pairs) {
    Failure& failure = message.failure;
    if (pairs == nullptr) return failure.fail("No key-value list submitted");
    PaymentCheck check{rulebook_of(message), message.type, failure, {}};
    for (const char* const* pair = pairs; pair[0] != nullptr; pair += 2)
        if (!check.set(pair[0], pair[1])) return false;
    if (const char* missing = missing_in(check.payment, message.type, check.rulebook))
        return failure.fail(missing);
    if (!message.payments.append(check.payment)) return failure.fail("Out of memory");
    message.control_sum += check.payment.amount;
    return true;
}

} // namespace

int sepa_add(sepa_t* message, const char* const* pairs) {
    return message != nullptr && add(*message, pairs);
}
