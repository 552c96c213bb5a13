// The properties of a payment: which keys there are and what their values must look like.
#pragma once

#include "message/message.h"

namespace velmora {

// Checks one key and value and stores it in the payment. False when it is refused: the message then holds
// the reason.
bool set_property(sepa_t* message, Transaction& transaction, const char* key, const char* value);

} // namespace velmora
