// The statement parser's handle and its error text.
#pragma once

#include <cstdint>

#include "base/file_memory.h"
#include "velmora.h"

namespace velmora {

// What a parser owns once it has been told to load.
struct StatementInput {
    FileText text;
    RecordPool records;
    char reserved[224]; // keeps the size that the error text for a failed allocation names
};
static_assert(sizeof(StatementInput) == 264);

} // namespace velmora

struct sepa_stmt_parser {
    char error[256];
    std::uint32_t format; // 0 until the first load
    velmora::StatementInput* input;
    sepa_stmt_t* first; // in the order of the file
    sepa_stmt_t* last;
};

namespace velmora {

// Keeps the text of a failure, cut to the parser's error field. Always 0, the result of a failed operation.
[[gnu::format(printf, 2, 3)]] int fail_with(sepa_stmt_parser_t* parser, const char* format, ...);

} // namespace velmora
