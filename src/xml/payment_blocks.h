// Payments grouped into the blocks of a document.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "message/message.h"

namespace velmora {

// Payments with the same date and, in a direct debit document, the same sequence type.
struct PaymentBlock {
    std::string_view date;                          // ten characters
    SequenceType sequence_type;                     // no_sequence_type in a credit transfer document
    double sum;                                     // added in the order of adding
    std::span<const StoredPayment* const> payments; // in the order of adding
};

// The blocks of a document in the order of writing: by date, then by sequence type.
class PaymentBlocks {
public:
    PaymentBlocks() = default;
    PaymentBlocks(const PaymentBlocks&) = delete;
    PaymentBlocks& operator=(const PaymentBlocks&) = delete;
    ~PaymentBlocks();

    // Groups the message's payments; those without a date take the message's. Null on success, otherwise
    // what went wrong.
    const char* group(const sepa_t& message);

    std::span<const PaymentBlock> view() const { return {blocks_, count_}; }

private:
    PaymentBlock* blocks_ = nullptr;
    const StoredPayment** payments_ = nullptr;
    std::size_t count_ = 0;
};

} // namespace velmora
