// The bank behind a national bank code.
#include <string_view>

#include "bank/bank_record.h"
#include "bank/directory.h"
#include "velmora.h"

using namespace velmora;

int sepa_bankid_check(const char* country, const char* bank_id, sepa_bank_t** bank) {
    if (!directory_covers(country)) return 0;
    if (bank == nullptr) return directory_contains(country, bank_id) ? 1 : -2;
    DirectoryEntry entry;
    if (!directory_lookup(country, bank_id, &entry)) return -2;
    sepa_bank_t* record =
        make_bank_record(entry.name, entry.postcode, entry.city, entry.country, entry.bic, 0);
    if (record == nullptr) return -3;
    *bank = record;
    return 1;
}
