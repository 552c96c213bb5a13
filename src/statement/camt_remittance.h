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
        has_keywords_ = false;
    }

    // Gives the text to a booking and forgets it. Each of the texts that begins with a keyword is split by
    // keywords; what the booking knows already stays. False without memory.
    bool take(RecordPool& records, sepa_stmt_tx_t& booking);

private:
    JoinedText text_;
    bool has_keywords_ = false; // one of the texts begins with one
};

} // namespace velmora::camt
