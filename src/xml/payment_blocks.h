// Payments grouped into the blocks of a document.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "message/message.h"

namespace velmora {

// How the payments of a block are to be carried out.
struct Service {
    bool instant = false;
    bool urgent = false;
    std::string_view time;     // hh:mm:ss, of instant payments only
    std::string_view category; // four letters
};

// Payments with the same date and service and, in a direct debit document, the same sequence type.
struct PaymentBlock {
    std::string_view date;      // ten characters
    SequenceType sequence_type; // no_sequence_type in a credit transfer document
    Service service;
    double sum;                                     // euros, added in the order of adding
    std::int64_t cents;                             // the same exactly
    std::span<const StoredPayment* const> payments; // in the order of adding
};

// The blocks of a document in the order of writing: by date, then by sequence type, then ordinary payments
// before urgent and instant ones, these by their time, all by category.
class PaymentBlocks {
public:
    PaymentBlocks() = default;
    PaymentBlocks(const PaymentBlocks&) = delete;
    PaymentBlocks& operator=(const PaymentBlocks&) = delete;
    ~PaymentBlocks();

    // Groups the message's payments; those without a date take `default_date`. Null on success, otherwise
    // what went wrong.
    const char* group(const sepa_t& message, const Rulebook& rulebook, std::string_view default_date);

    std::span<const PaymentBlock> view() const { return {blocks_, count_}; }

private:
    PaymentBlock* blocks_ = nullptr;
    const StoredPayment** payments_ = nullptr;
    std::size_t count_ = 0;
};

} // namespace velmora
