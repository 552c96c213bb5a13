// The bank behind a national bank code.
#include "bank/bank_record.h"
#include "bank/directory.h"
#include "velmora.h"

using namespace velmora;

int sepa_bankid_check(const char* country, const char* bank_id, sepa_bank_t** bank) {
    if (!directory_covers(country)) return 0;
    DirectoryTexts texts;
    if (!directory_find_bank(country, bank_id, bank == nullptr ? nullptr : &texts)) return -2;
    if (bank == nullptr) return 1;
    sepa_bank_t* record =
        make_bank_record(texts.name, texts.postcode, texts.city, texts.country, texts.bic, 0);
    if (record == nullptr) return -3;
    *bank = record;
    return 1;
}
