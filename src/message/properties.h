// The properties of a payment: which keys there are and what their values must look like.
#pragma once

#include <cstdint>

#include "message/characters.h"
#include "message/payment.h"
#include "message/rulebook.h"

namespace velmora {

enum class Kind : std::uint8_t {
    text,
    identification, // a text whose slashes are looked at, too
    address,        // of the structured address
    country,
    iban,
    bic,
    sequence,
    amount,
    date,
    time,
    category,
    reference,
    creditor_identifier,
    smnda,
    instant,
    urgent,
    refused,
};

enum class MessageTypes : std::uint8_t { direct_debits = 1, credit_transfers = 2, both = 3 };

struct Property {
    char key[12];
    MessageTypes messages;
    Traits needs; // of the rulebook; without them the row does not count
    Kind kind;
    Field field;
    CharacterSet characters;
    std::uint8_t shortest, longest; // in bytes or characters
    char refusal[72];               // when the limits are not kept; for refused keys always
    char value_name[36];            // what the value is called in the text about a forbidden character
};

// The row of a key, in any case, for a message type; null when it is not known there.
const Property* find_property(const char* key, std::uint32_t message_type, const Rulebook& rulebook);

// The row of a text that a payment of the message type has.
const Property* find_property(Field field, std::uint32_t message_type, const Rulebook& rulebook);

} // namespace velmora
