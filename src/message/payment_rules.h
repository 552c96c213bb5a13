// What a payment must have as a whole.
#pragma once

#include "message/message.h"
#include "message/payment.h"

namespace velmora {

// Whether nothing is missing in a payment and its parts go together. False with the failure told.
bool check_payment(const Payment& payment, sepa_t& message, const Rulebook& rulebook);

// Checks everything in a message once more that has been accepted under a rulebook that was not strict. False
// with the failure told.
bool recheck_strictly(sepa_t& message, const Rulebook& rulebook);

} // namespace velmora
