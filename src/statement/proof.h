// Whether a statement's bookings lead from its opening to its closing balance.
#pragma once

#include "velmora.h"

namespace velmora {

// As sepa_stmt_parser_check(), for a statement of this parser; `difference` may be null and is written only
// when both balances are there.
int prove_statement(sepa_stmt_parser_t& parser, const sepa_stmt_t& statement, double* difference);

} // namespace velmora
