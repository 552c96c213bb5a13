// From a file's bytes to a parser's statements.
#pragma once

#include "statement/parser.h"

namespace velmora {

// Cuts the text in the parser's input up into statements, which point into it. 1, or 0 with the reason in the
// parser; what has been listed and allocated by then is released by the caller.
using LoadFunction = int(sepa_stmt_parser_t& parser);

// Null for a format that cannot be read.
LoadFunction* find_load_function(std::uint32_t format);

LoadFunction load_mt940;
LoadFunction load_camt;
LoadFunction load_tolerant;

} // namespace velmora
