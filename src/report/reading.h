// The reading of one status report: where its values are gathered, and what is done with them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/joined_text.h"
#include "report/report.h"
#include "xml/reader.h"

namespace velmora::report {

// What refers to the original payment but depends on the kind of its message.
struct Party {
    char* name;
    char iban[35];
};

// The values of the group, block or payment that is being read.
struct Fields {
    sepa_report_item_t item;
    Party debtor;
    Party creditor;
    std::uint8_t is_direct_debit; // it has what only direct debits have
};

enum class Action : std::uint8_t {
    none,
    begin_message,
    begin_group,
    begin_block,
    begin_payment,
    keep_text,   // char*, white space around it cut off
    keep_status, // char[5]
    keep_date,   // char[11]
    keep_iban,   // char[35], without white space
    keep_amount, // double and currency of the item
    keep_sum,    // double
    keep_count,  // std::uint32_t
    note_direct_debit,
    add_reason,
    add_text,
};

// Reads the report's text into its items. False with a reason in the report.
bool read(sepa_report_t& report);

} // namespace velmora::report
