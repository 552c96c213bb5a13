#include "message/add_all.h"

#include "message/message.h"

int velmora_add_all(sepa_t* message, const char* const* const* payments, std::size_t count,
                    std::size_t* refused) {
    if (message == nullptr) return 0;
    for (std::size_t& i = *refused = 0; i < count; ++i)
        if (sepa_test(message, payments[i]) == 0) return 0;

    // What was tested can only fail for lack of memory.
    const velmora::PaymentList::End end = message->payments.end();
    const double control_sum = message->control_sum;
    const std::int64_t cents = message->cents;
    const bool has_loose_values = message->has_loose_values;
    for (std::size_t& i = *refused = 0; i < count; ++i) {
        if (sepa_add(message, payments[i]) != 0) continue;
        message->payments.return_to(end);
        message->control_sum = control_sum;
        message->cents = cents;
        message->has_loose_values = has_loose_values;
        return 0;
    }
    return 1;
}
