#include "message/property_values.h"

#include <cerrno>
#include <cstring>

#include "bank/bic.h"
#include "bank/iban_check.h"
#include "bank/regex.h"
#include "base/amount.h"
#include "base/ascii.h"
#include "base/calendar.h"
#include "message/creditor_identifier.h"
#include "message/reference.h"
#include "message/text_check.h"
#include "velmora.h"

namespace velmora {

bool PaymentCheck::set(const char* key, const char* value) {
    if (const Property* property = find_property(key, message_type_, rulebook_))
        return set_value(*property, key, value);
    // Deliberate: most rulebooks let credit transfers ignore what they do not know; programs hand in keys of
    // their own.
    if (message_type_ == SEPA_MSGTYPE_CTI && !is_strict(rulebook_)) return true;
    return failure_.fail_with("Invalid transaction property '%s'", key);
}

bool PaymentCheck::set(Field field, const char* value) {
    const Property* property = find_property(field, message_type_, rulebook_);
    return property == nullptr || set_value(*property, property->key, value);
}

bool PaymentCheck::set_value(const Property& property, const char* key, const char* value) {
    switch (property.kind) {
    case Kind::text:
    case Kind::identification:
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
    case Kind::date:
        return set_date(property, value);
    case Kind::time:
        return set_time(property, value);
    case Kind::category:
        return set_category(property, value);
    case Kind::reference:
        return set_reference(property, value);
    case Kind::creditor_identifier:
        return set_creditor_identifier(property, value);
    case Kind::smnda:
        return set_flag(property, value, payment.same_mandate_new_agent);
    case Kind::instant:
        return set_flag(property, value, payment.instant);
    case Kind::urgent:
        return set_flag(property, value, payment.urgent);
    case Kind::refused:
        break;
    }
    return failure_.fail(property.refusal);
}

bool PaymentCheck::set_text(const Property& property, const char* value) {
    const auto [text, fault, character] =
        check_text(value, property.shortest, property.longest, property.characters, rulebook_);
    if (fault == TextFault::length) return failure_.fail(property.refusal);
    if (fault == TextFault::character)
        return failure_.fail_with("Invalid character '%.*s' in %s", static_cast<int>(character.size()),
                                  character.data(), property.value_name);
    if (fault != TextFault::none) return fail_text(failure_, fault, property.key);
    if (property.kind == Kind::identification && is_strict(rulebook_) && has_misplaced_slash(text))
        return failure_.fail_with("Slash not allowed here in %s", property.key);
    payment.set(property.field, text);
    return true;
}

bool PaymentCheck::set_address(const Property& property, const char* key, const char* value) {
    bind_libc_regex();
    const CharacterSet set = checks_address_characters(rulebook_) ? CharacterSet::name : CharacterSet::any;
    const auto [text, fault, character] =
        check_text(value, property.shortest, property.longest, set, rulebook_);
    if (fault == TextFault::length) return failure_.fail_with("Invalid format for '%s'", key);
    if (fault == TextFault::character)
        return failure_.fail_with("Invalid character '%.*s' in address", static_cast<int>(character.size()),
                                  character.data());
    if (fault != TextFault::none) return fail_text(failure_, fault, property.key);
    // Deliberate: any failure of the message refuses an address, also one of an earlier call; its text is the
    // reason then. Programs begin a new message for it.
    if (!is_strict(rulebook_) && failure_.standing_text() != nullptr)
        return failure_.fail(failure_.standing_text());
    payment.set(property.field, text);
    return true;
}

bool PaymentCheck::set_country(const Property& property, const char* value) {
    if (value == nullptr || !is_capital(value[0]) || !is_capital(value[1]) || value[2] != '\0')
        return failure_.fail(property.refusal);
    payment.set(property.field, {value, 2});
    return true;
}

bool PaymentCheck::set_iban(const Property& property, const char* value) {
    const char* reason = nullptr;
    if (iban_validate(value, &reason, iban_countries_of(rulebook_)) != 1) return failure_.fail(reason);
    payment.set(property.field, value);
    return true;
}

bool PaymentCheck::set_bic(const Property& property, const char* value) {
    const char* upper = upper_case_bic(value, payment.upper_case_bic);
    if (upper == nullptr) return failure_.fail("Invalid BIC");
    if (!is_bic(upper)) return failure_.fail("Invalid BIC format");
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
    return failure_.fail(property.refusal);
}

bool PaymentCheck::set_amount(const char* value) {
    // From here on cents do not fit into 64 bits and a document would show another amount.
    constexpr double too_large = 92233720368547758.0;
    if (value == nullptr) return failure_.fail("Invalid amount");
    char* end = nullptr;
    errno = 0;
    const double amount = __sepa_strtod(value, &end);
    const bool out_of_range = errno == ERANGE;
    if (*end != '\0') return failure_.fail("Invalid amount");
    if (amount == 0) return failure_.fail(out_of_range ? "Invalid amount" : "Empty amount not allowed");
    if (amount < 0)
        return failure_.fail(out_of_range ? "Invalid amount" : "Negative or zero amount not allowed");
    if (amount >= too_large)
        return failure_.fail(is_strict(rulebook_) ? "Amount too large" : "Invalid amount");
    payment.amount = round_to_cents(amount);
    return true;
}

bool PaymentCheck::set_date(const Property& property, const char* value) {
    const std::string_view text(value == nullptr ? "" : value,
                                value == nullptr ? 0 : strnlen(value, property.longest + std::size_t{1}));
    if (text.size() != property.longest) return failure_.fail(property.refusal);
    if (is_strict(rulebook_) && !is_calendar_date(text)) return failure_.fail("Invalid date");
    payment.set(property.field, text);
    return true;
}

bool PaymentCheck::set_time(const Property& property, const char* value) {
    if (value == nullptr) return failure_.fail(property.refusal);
    const std::size_t length = strnlen(value, property.longest + std::size_t{1});
    if (length != property.shortest && length != property.longest) return failure_.fail(property.refusal);
    std::memcpy(payment.normal_time, "00:00:00", property.longest);
    std::memcpy(payment.normal_time, value, length);
    const std::string_view time(payment.normal_time, property.longest);
    if (!is_time_of_day(time)) return failure_.fail(property.refusal);
    payment.set(property.field, time);
    return true;
}

bool PaymentCheck::set_category(const Property& property, const char* value) {
    const std::size_t length = value == nullptr ? 0 : strnlen(value, property.longest + std::size_t{1});
    bool is_code = length == property.longest;
    for (std::size_t i = 0; is_code && i < length; ++i)
        is_code = is_capital(value[i]);
    if (!is_code) return failure_.fail(property.refusal);
    payment.set(property.field, {value, length});
    return true;
}

bool PaymentCheck::set_reference(const Property& property, const char* value) {
    const std::size_t length =
        value == nullptr ? 0 : compact(value, payment.normal_reference, longest_reference);
    const std::string_view reference(payment.normal_reference, length);
    switch (length > longest_reference ? ReferenceFault::form : reference_fault(reference)) {
    case ReferenceFault::form:
        return failure_.fail("Invalid creditor reference");
    case ReferenceFault::check_digits:
        return failure_.fail("Invalid creditor reference checksum");
    case ReferenceFault::none:
        break;
    }
    payment.set(property.field, reference);
    return true;
}

bool PaymentCheck::set_creditor_identifier(const Property& property, const char* value) {
    const std::string_view text(value == nullptr ? "" : value);
    if (const char* fault = creditor_identifier_fault(text, rulebook_)) return failure_.fail(fault);
    payment.set(property.field, text);
    return true;
}

bool PaymentCheck::set_flag(const Property& property, const char* value, bool& flag) {
    if (value == nullptr || std::strcmp(value, "1") != 0)
        return failure_.fail_with(property.refusal, value == nullptr ? "(null)" : value);
    flag = true;
    return true;
}

} // namespace velmora
