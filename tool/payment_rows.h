// Payments out of the rows of a table whose columns are named after the library's keys.
#pragma once

#include "decimal.h"
#include "reader.h"
#include "rulebook_table.h"

namespace velmora::tool {

// One payment as the library takes it.
struct Payment {
    List<const char*> pairs; // key, value, ..., null
    std::int64_t cents = 0;
    std::uint64_t line = 0;
    // Zero-terminated texts of the pairs, empty when there is none.
    [[nodiscard]] Text value(Text key) const;
};

class PaymentRows {
public:
    PaymentRows(const Options& options, const RulebookRow& rulebook, Reader& reader, Text file);

    // Reads the header; false, and everything told, when it cannot be used.
    bool read_header();
    enum class Result : std::uint8_t { payment, refused, end, damaged };
    // The next payment; what is wrong with a refused one has been told.
    Result next(Payment& payment);
    // Tells why the library refuses a payment, at the key that is to blame.
    void refuse(const Payment& payment, Text key, Text why);

private:
    bool take_cell(const KeyRow& key, Text cell, Payment& payment);
    const char* keep(Text text);

    const Options& options_;
    const RulebookRow& rulebook_;
    Reader& reader_;
    Text file_;
    std::uint8_t messages_;
    DecimalRule decimals_;
    List<const KeyRow*> columns_; // null for one that is left out
    Row row_;
    Buffer texts_; // of the payment
};

} // namespace velmora::tool
