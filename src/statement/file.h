// Reading a statement file into memory.
#pragma once

#include "statement/parser.h"

namespace velmora {

// The whole file with a zero byte behind it, or null with the reason in the parser.
FileText read_statement_file(sepa_stmt_parser_t* parser, const char* path);

} // namespace velmora
