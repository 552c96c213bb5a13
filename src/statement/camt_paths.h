// Which element of a camt message means what. The table is compiled into a graph of the paths, so that
// reading takes one lookup an element.
#pragma once

#include <cstdint>

#include "xml/path_graph.h"

namespace velmora::camt {

// What is done with an element; where its value goes is an offset into Fields.
enum class Action : std::uint8_t {
    none,
    begin_message,
    begin_statement,
    begin_balance,
    begin_entry,
    begin_details,
    begin_part,
    begin_charges,
    begin_charge,
    note_presence, // std::uint8_t
    keep_text,     // char*
    keep_deep,     // char*, stronger than keep_text
    keep_trimmed,  // char*, without white space around it
    keep_unspaced, // char*, without any white space
    keep_code,
    keep_bic,
    keep_currency,
    keep_date,   // struct tm
    keep_amount, // Amount
    keep_sign,   // Sign
    keep_flag,   // std::uint8_t
    keep_count,  // std::uint32_t
    keep_long_count,
    keep_sum,
    add_remittance,
    add_return_text,
};

using Graph = PathGraph<Action, 400, 400, 21>;
using Node = Graph::Node;

extern const Graph graph;

} // namespace velmora::camt
