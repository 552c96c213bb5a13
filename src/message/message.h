// The message object: header, transactions and the text of its last failure.
#pragma once

#include <cstdint>

#include "base/owned_text.h"
#include "message/transaction.h"
#include "velmora.h"

namespace velmora {

// A message identification that was set and replaced.
struct RetiredId {
    RetiredId* next;
    OwnedText text;
};

} // namespace velmora

struct sepa {
    std::uint32_t type = 0;           // SEPA_MSGTYPE_DDI or SEPA_MSGTYPE_CTI
    const char* last_error = nullptr; // a constant text or error_buffer
    velmora::OwnedText iban;          // the message's own account: creditor of a DDI, debtor of a CTI
    velmora::OwnedText bic;
    velmora::OwnedText name;
    velmora::OwnedText creditor_identifier;
    velmora::OwnedText date; // yyyy-mm-dd, for transactions without a date of their own
    velmora::OwnedText message_id;
    velmora::RetiredId* retired_ids = nullptr;
    char error_buffer[256] = {};
    std::uint32_t transaction_count = 0;
    double control_sum = 0;
    std::uint32_t direct_debit_type = SEPA_DDTYPE_CORE;
    std::uint8_t batch_booking = 1;
    velmora::Transaction* first = nullptr; // in the order of adding
    velmora::Transaction* last = nullptr;
};

namespace velmora {

// Keeps a constant text as the message's last error. Always 0, the result of a failed operation.
int fail(sepa_t* message, const char* text);

// The same for a text with the offending value in it, cut to the message's error buffer.
[[gnu::format(printf, 2, 3)]] int fail_with(sepa_t* message, const char* format, ...);

} // namespace velmora
