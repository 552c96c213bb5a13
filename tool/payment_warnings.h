// What is no fault but should be looked at before a file goes to the bank.
#pragma once

#include "payment_rows.h"

namespace velmora::tool {

// Texts that came before, with their lines. Kept as hashes of 64 bits: flat, and nothing to wipe.
class SeenTexts {
public:
    // The line of the same text before, or 0.
    std::uint64_t line_of(Text a, Text b, std::uint64_t line);

private:
    struct Entry {
        std::uint64_t hash, line;
    };
    void grow();

    List<Entry> entries_;
    std::size_t used_ = 0;
};

class PaymentWarnings {
public:
    void add(const Payment& payment);
    void tell(Text file, const Options& options, std::uint64_t payments);

private:
    enum class What : std::uint8_t { same_id, same_payment };
    struct Warning {
        std::uint64_t line, before;
        What what;
    };
    struct Date {
        char text[11];
        std::uint64_t payments;
    };

    SeenTexts ids_, payments_;
    List<Warning> warnings_;
    List<Date> dates_;
    std::uint64_t undated_ = 0;
};

} // namespace velmora::tool
