#include "message/property_values.h"

#include <cerrno>
#include <cmath>
#include <cstring>

#include "bank/bic.h"
#include "bank/iban_check.h"
#include "bank/regex.h"
#include "base/amount.h"
#include "base/ascii.h"
#include "velmora.h"

namespace velmora {

bool PaymentCheck::set(const char* key, const char* value) {
    if (const Property* property = find_property(key, message_type, rulebook))
        return set_value(*property, key, value);
    // Deliberate: credit transfers ignore what they do not know; programs hand in keys of their own.
    if (message_type == SEPA_MSGTYPE_CTI) return true;
    return failure.fail_with("Invalid transaction property '%s'", key);
}

bool PaymentCheck::set_value(const Property& property, const char* key, const char* value) {
    switch (property.kind) {
    case Kind::text:
        return set_text(property, value);
    case Kind::address:
        return set_address(property, key, value);
    case Kind::country:
        return set_country(property, value);
    case Kind::iban:
        return set_iban(property, value);
    case Kind::bic:
        return set_bic(property, value);
    case Kind::sequence:
        return set_sequence_type(property, value);
    case Kind::amount:
        return set_amount(value);
    case Kind::smnda:
        return set_smnda(value);
    case Kind::refused:
        break;
    }
    return failure.fail(property.refusal);
}

bool PaymentCheck::set_text(const Property& property, const char* value) {
    if (value == nullptr) return failure.fail(property.refusal);
    const std::string_view text(value, strnlen(value, property.longest + std::size_t{1}));
    if (text.size() < property.shortest || text.size() > property.longest)
        return failure.fail(property.refusal);
    if (const char* c = find_forbidden_character(text, property.characters, rulebook))
        return failure.fail_with("Invalid character '%c' in %s", *c, property.value_name);
    payment.set(property.field, text);
    return true;
}

bool PaymentCheck::set_address(const Property& property, const char* key, const char* value) {
    bind_libc_regex();
    const std::string_view text(value == nullptr ? "" : value,
                                value == nullptr ? 0 : strnlen(value, property.longest + std::size_t{1}));
    if (text.size() < property.shortest || text.size() > property.longest)
        return failure.fail_with("Invalid format for '%s'", key);
    payment.set(property.field, text);
    // Deliberate: any failure of the message counts, also one of an earlier call; its text is the reason
    // then.
    return failure.text() == nullptr;
}

bool PaymentCheck::set_country(const Property& property, const char* value) {
    if (value == nullptr || !is_capital(value[0]) || !is_capital(value[1]) || value[2] != '\0')
        return failure.fail(property.refusal);
    payment.set(property.field, {value, 2});
    return true;
}

bool PaymentCheck::set_iban(const Property& property, const char* value) {
    const char* reason = nullptr;
    if (iban_validate(value, &reason) != 1) return failure.fail(reason);
    payment.set(property.field, value);
    return true;
}

bool PaymentCheck::set_bic(const Property& property, const char* value) {
    const char* upper = upper_case_bic(value, payment.upper_case_bic);
    if (upper == nullptr) return failure.fail("Invalid BIC");
    if (!is_bic(upper)) return failure.fail("Invalid BIC format");
    payment.set(property.field, upper);
    return true;
}

bool PaymentCheck::set_sequence_type(const Property& property, const char* value) {
    const std::string_view text(value == nullptr ? "" : value);
    for (std::size_t i = 0; i < sequence_type_count; ++i) {
        if (!equals_ignoring_case(text, sequence_type_names[i])) continue;
        payment.sequence_type = static_cast<SequenceType>(frst + i);
        return true;
    }
    return failure.fail(property.refusal);
}

bool PaymentCheck::set_amount(const char* value) {
    // From here on cents do not fit into 64 bits and a document would show another amount.
    constexpr double too_large = 92233720368547758.0;
    if (value == nullptr) return failure.fail("Invalid amount");
    char* end = nullptr;
    errno = 0;
    const double amount = __sepa_strtod(value, &end);
    const bool out_of_range = errno == ERANGE;
    if (*end != '\0') return failure.fail("Invalid amount");
    if (amount == 0) return failure.fail(out_of_range ? "Invalid amount" : "Empty amount not allowed");
    if (out_of_range && std::isinf(amount)) return failure.fail("Invalid amount");
    if (amount < 0) return failure.fail("Negative or zero amount not allowed");
    if (amount >= too_large) return failure.fail("Invalid amount");
    payment.amount = round_to_cents(amount);
    return true;
}

bool PaymentCheck::set_smnda(const char* value) {
    if (value == nullptr || std::strcmp(value, "1") != 0)
        return failure.fail_with("Invalid value '%s' for SMNDA flag", value == nullptr ? "(null)" : value);
    payment.same_mandate_new_agent = true;
    return true;
}

} // namespace velmora
