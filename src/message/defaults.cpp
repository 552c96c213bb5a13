// What holds for the payments of a message that do not say otherwise.
#include <cstring>

#include "base/calendar.h"
#include "message/message.h"
#include "message/property_values.h"

using namespace velmora;

namespace {

// Without a value the default goes.
bool store(sepa_t& message, OwnedText& field, const char* value) {
    if (value == nullptr) return field.reset(), true;
    return field.assign(value) || message.failure.fail("Out of memory");
}

bool set_created(sepa_t& message, const char* value) {
    constexpr std::string_view form = "0000-00-00T00:00:00Z";
    if (value != nullptr) {
        const std::string_view text(value, strnlen(value, form.size() + 1));
        if (!has_form(text, form) || !is_calendar_date({value, 10}) || !is_time_of_day({value + 11, 8}))
            return message.failure.fail("Invalid creation time");
    }
    return store(message, message.defaults.created, value);
}

// An instant payment is not urgent: of two such defaults the second is refused.
bool set_flag(sepa_t& message, const Property& property, bool& flag, bool value, bool other) {
    if (value && other) return message.failure.fail_with(property.refusal, "1");
    flag = value;
    return true;
}

bool set_default(sepa_t& message, const char* key, const char* value, const Rulebook& rulebook) {
    if (!knows_extended_keys(rulebook))
        return message.failure.fail("Not supported by the selected SEPA rulebook");
    if (key == nullptr) return message.failure.fail_with("Invalid message property '%s'", "(null)");
    if (equals_ignoring_case(key, "created")) return set_created(message, value);

    Defaults& defaults = message.defaults;
    const Property* property = find_property(key, message.type, rulebook);
    PaymentCheck check(rulebook, message.type, message.failure);
    const Field own_party =
        message.type == SEPA_MSGTYPE_DDI ? Field::ultimate_creditor : Field::ultimate_debtor;
    OwnedText* text = nullptr;
    if (property != nullptr && property->field == Field::execution_time) text = &defaults.time;
    if (property != nullptr && property->field == Field::category_purpose) text = &defaults.category;
    if (property != nullptr && property->field == own_party) text = &defaults.ultimate_party;
    const bool is_instant = property != nullptr && property->kind == Kind::instant;
    const bool is_urgent = property != nullptr && property->kind == Kind::urgent;
    if (text == nullptr && !is_instant && !is_urgent)
        return message.failure.fail_with("Invalid message property '%s'", key);

    if (value != nullptr && !check.set(key, value)) return false;
    if (is_instant)
        return set_flag(message, *property, defaults.instant, check.payment.instant, defaults.urgent);
    if (is_urgent)
        return set_flag(message, *property, defaults.urgent, check.payment.urgent, defaults.instant);
    if (value == nullptr) return store(message, *text, nullptr);
    return text->assign(check.payment[property->field]) || message.failure.fail("Out of memory");
}

} // namespace

int sepa_set(sepa_t* message, const char* key, const char* value) {
    if (message == nullptr) return 0;
    const Rulebook& rulebook = rulebook_of(*message);
    if (set_default(*message, key, value, rulebook)) return 1;
    if (counts_characters(rulebook)) message->failure.keep_whole_characters();
    return 0;
}
