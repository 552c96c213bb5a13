// The bank behind a BIC, and the payment schemes in which it is reachable.
#include <cstring>

#include "bank/bank_record.h"
#include "bank/bic.h"
#include "bank/directory.h"
#include "base/ascii.h"
#include "velmora.h"

using namespace velmora;

int sepa_bic_getBank(const char* bic, sepa_bank_t** bank) {
    if (bic == nullptr) return -2;
    const std::size_t length = strnlen(bic, bic_length + 1);
    if (length != head_office_bic_length && length != bic_length) return -2;
    char key[bic_length + 1] = "________XXX"; // the head office, unless a branch is given
    for (std::size_t i = 0; i < length; ++i) {
        if (!is_letter_or_digit(bic[i])) return -2;
        key[i] = to_upper(bic[i]);
    }
    const BicRecord entry = find_bic(key);
    if (!entry) return -2;
    if (bank == nullptr) return 1;
    sepa_bank_t* result = make_bic_record(entry, key);
    if (result == nullptr) return -3;
    *bank = result;
    return 1;
}
