// Adding payments, and trying them.
#include "base/amount.h"
#include "message/payment_rules.h"
#include "message/property_values.h"

using namespace velmora;

namespace {

// Fills the payment of `check`. False when something is refused.
bool read_payment(PaymentCheck& check, sepa_t& message, const char* const* pairs, const Rulebook& rulebook) {
    if (pairs == nullptr) return message.failure.fail("No key-value list submitted");
    for (const char* const* pair = pairs; pair[0] != nullptr; pair += 2)
        if (!check.set(pair[0], pair[1])) return false;
    return check_payment(check.payment, message, rulebook);
}

// Whether another rulebook would leave something of an accepted payment out.
bool is_extended(const Payment& payment, bool is_direct_debit) {
    constexpr FieldSet lines_beside_structure = fields(Field::address_line_1, Field::address_line_2);
    constexpr FieldSet extended = ~(fields(first_extended_field) - 1) | lines_beside_structure;
    return payment.instant || payment.urgent || payment.has(extended) ||
           (is_direct_debit && payment.has(Field::purpose));
}

bool add(sepa_t& message, const char* const* pairs, const Rulebook& rulebook) {
    PaymentCheck check(rulebook, message.type, message.failure);
    if (!read_payment(check, message, pairs, rulebook)) return false;
    Payment& payment = check.payment;
    // What is only meant for instant payments makes it one, whatever the default becomes.
    if (payment.has(Field::execution_time)) payment.instant = true;
    if (!message.payments.append(payment)) return message.failure.fail("Out of memory");
    message.control_sum += payment.amount;
    message.cents = add_cents(message.cents, to_cents(payment.amount));
    if (!is_strict(rulebook)) message.has_loose_values = true;
    if (knows_extended_keys(rulebook) && is_extended(payment, message.type == SEPA_MSGTYPE_DDI))
        message.has_extended_payments = true;
    return true;
}

} // namespace

int sepa_add(sepa_t* message, const char* const* pairs) {
    if (message == nullptr) return 0;
    const Rulebook& rulebook = rulebook_of(*message);
    if (add(*message, pairs, rulebook)) return 1;
    if (counts_characters(rulebook)) message->failure.keep_whole_characters();
    return 0;
}

int sepa_test(sepa_t* message, const char* const* pairs) {
    if (message == nullptr) return 0;
    const Rulebook& rulebook = rulebook_of(*message);
    PaymentCheck check(rulebook, message->type, message->failure);
    message->failure.begin_test();
    const bool is_accepted = read_payment(check, *message, pairs, rulebook);
    if (!is_accepted && counts_characters(rulebook)) message->failure.keep_whole_characters();
    message->failure.end_test();
    return is_accepted;
}
