// The statement parser's handle.
#pragma once

#include <cstdint>

#include "base/error_text.h"
#include "base/file_memory.h"
#include "velmora.h"

namespace velmora {

// What a parser owns once it has been told to load.
struct StatementInput {
    FileText text;
    RecordPool records;
};

} // namespace velmora

struct sepa_stmt_parser {
    velmora::ErrorText error;
    std::uint32_t format; // 0 until the first load
    velmora::StatementInput* input;
    sepa_stmt_t* first; // in the order of the file
    sepa_stmt_t* last;
    sepa_stmt_tx_info_t plain_info; // the one that format 1 was asked for last
};
