// Checks the value of a payment's property and sets it in the payment.
#pragma once

#include "message/failure.h"
#include "message/properties.h"

namespace velmora {

// A payment on its way into a message.
class PaymentCheck {
public:
    PaymentCheck(const Rulebook& rulebook, std::uint32_t message_type, Failure& failure)
        : payment{}, rulebook_(rulebook), message_type_(message_type), failure_(failure) {}

    // Checks one key and value and sets it in the payment. False when it is refused; the failure is told.
    bool set(const char* key, const char* value);

    // The same for a text of a payment that other rules have accepted.
    bool set(Field field, const char* value);

    Payment payment;

private:
    bool set_value(const Property& property, const char* key, const char* value);
    bool set_text(const Property& property, const char* value);
    bool set_address(const Property& property, const char* key, const char* value);
    bool set_country(const Property& property, const char* value);
    bool set_iban(const Property& property, const char* value);
    bool set_bic(const Property& property, const char* value);
    bool set_sequence_type(const Property& property, const char* value);
    bool set_amount(const char* value);
    bool set_date(const Property& property, const char* value);
    bool set_time(const Property& property, const char* value);
    bool set_category(const Property& property, const char* value);
    bool set_reference(const Property& property, const char* value);
    bool set_creditor_identifier(const Property& property, const char* value);
    bool set_flag(const Property& property, const char* value, bool& flag);

    const Rulebook& rulebook_;
    std::uint32_t message_type_;
    Failure& failure_; // of the message
};

} // namespace velmora
