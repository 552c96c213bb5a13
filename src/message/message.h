// The message object: header, payments and the text of its last failure.
#pragma once

#include <cstdint>

#include "base/owned_text.h"
#include "message/failure.h"
#include "message/payment_list.h"
#include "message/rulebook.h"
#include "velmora.h"

namespace velmora {

// A message identification that was set and replaced.
struct RetiredId {
    RetiredId* next;
    OwnedText text;
};

// What holds for the payments that do not say otherwise (sepa_set()).
struct Defaults {
    bool instant = false;
    bool urgent = false;
    OwnedText time; // hh:mm:ss
    OwnedText category;
    OwnedText ultimate_party; // on the message's own side
    OwnedText created;        // of the document, instead of the time of writing
};

} // namespace velmora

struct sepa {
    std::uint32_t type = 0;                      // SEPA_MSGTYPE_DDI or SEPA_MSGTYPE_CTI
    const velmora::Rulebook* rulebook = nullptr; // its own; without one the process's counts
    velmora::Failure failure;
    velmora::OwnedText iban; // the message's own account: creditor of a DDI, debtor of a CTI
    velmora::OwnedText bic;
    velmora::OwnedText name;
    velmora::OwnedText creditor_identifier;
    velmora::OwnedText date; // yyyy-mm-dd, for payments without a date of their own
    velmora::OwnedText message_id;
    velmora::RetiredId* retired_ids = nullptr;
    velmora::PaymentList payments;
    velmora::Defaults defaults;
    double control_sum = 0;             // euros, added in the order of adding
    std::int64_t cents = 0;             // the same exactly
    bool has_loose_values = false;      // accepted under a rulebook that is not strict
    bool has_extended_payments = false; // that a rulebook without the extended keys cannot write whole
    std::uint32_t direct_debit_type = SEPA_DDTYPE_CORE;
    std::uint8_t batch_booking = 1;
};

namespace velmora {

// The rulebook that a message is checked and written by.
inline const Rulebook& rulebook_of(const sepa_t& message) {
    return message.rulebook != nullptr ? *message.rulebook : *selected_rulebook();
}

} // namespace velmora
