// Remittance information, which some German banks still fill with the keywords of MT940.
#pragma once

#include <cstddef>

#include "base/joined_text.h"
#include "velmora.h"

namespace velmora::camt {

// What banks write where the payer gave no reference.
bool is_no_reference(const char* text);

// All unstructured texts of a payment as one.
class Remittance {
public:
    // False without memory.
    bool add(char* text, std::size_t length);

    void clear() {
        text_.clear();
        keywords_at_ = nowhere;
    }

    // Gives the text to a booking and forgets it. If one of the texts began with a keyword, what stands from
    // there on is split by keywords; what the booking knows already stays. False without memory.
    bool take(RecordPool& records, sepa_stmt_tx_t& booking);

private:
    static constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

    JoinedText text_;
    std::size_t keywords_at_ = nowhere;
};

} // namespace velmora::camt
