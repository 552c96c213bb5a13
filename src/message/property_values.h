// Checks the value of a payment's property and sets it in the payment.
#pragma once

#include "message/failure.h"
#include "message/properties.h"

namespace velmora {

// A payment on its way into a message.
struct PaymentCheck {
    const Rulebook& rulebook;
    std::uint32_t message_type;
    Failure& failure; // of the message: takes the reason of a refusal
    Payment payment;

    // Checks one key and value and sets it in the payment. False when it is refused.
    bool set(const char* key, const char* value);

private:
    bool set_value(const Property& property, const char* key, const char* value);
    bool set_text(const Property& property, const char* value);
    bool set_address(const Property& property, const char* key, const char* value);
    bool set_country(const Property& property, const char* value);
    bool set_iban(const Property& property, const char* value);
    bool set_bic(const Property& property, const char* value);
    bool set_sequence_type(const Property& property, const char* value);
    bool set_amount(const char* value);
    bool set_smnda(const char* value);
};

} // namespace velmora
