// The information to the account owner (":86:") with the German subfields.
#pragma once

#include "velmora.h"

namespace velmora {

// Reads the field whose content starts at `begin` and whose first line ends at `line_end` into the booking.
// Returns the start of the next tag, or the end of the text.
char* read_information(sepa_stmt_tx_t& booking, char* begin, char* line_end);

} // namespace velmora
