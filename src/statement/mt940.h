// The SWIFT MT940 format: statements, tags and booking lines.
#pragma once

#include "statement/parser.h"

namespace velmora {

// Cuts the text up into the parser's statements, which point into it; the parser keeps it. 0 without a text
// when memory runs out or nothing is in the file; what is listed by then must not be read.
int load_mt940(sepa_stmt_parser_t* parser, FileText text);

} // namespace velmora
