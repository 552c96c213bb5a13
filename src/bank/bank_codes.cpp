// National bank codes: the banks behind them, what else the directory says of them, and all of them in turn.
#include <cstring>

#include "bank/bank_record.h"
#include "bank/directory.h"
#include "velmora.h"

using namespace velmora;

namespace {

// Null unless a text is exactly the code of a country with bank codes.
const DirectoryCountry* country_named(const char* text) {
    const DirectoryCountry* country = text == nullptr ? nullptr : find_directory_country(text);
    return country != nullptr && text[2] == '\0' ? country : nullptr;
}

} // namespace

int sepa_bankid_check(const char* country, const char* bank_id, sepa_bank_t** bank) {
    const DirectoryCountry* known = country_named(country);
    if (known == nullptr) return 0;
    if (bank_id == nullptr) return -2;
    const std::size_t length = strnlen(bank_id, known->bank_code_length + std::size_t{1});
    const BankRecord record = find_bank(*known, {bank_id, length});
    if (!record) return -2;
    if (bank == nullptr) return 1;
    sepa_bank_t* result = make_bank_record(record);
    if (result == nullptr) return -3;
    *bank = result;
    return 1;
}

int sepa_bankid_method(const char* bank_code, char* method, int* iban_rule) {
    constexpr std::size_t length = 8;
    constexpr char digits[] = "0123456789ABCDEF";
    if (bank_code == nullptr || strnlen(bank_code, length + 1) != length) return -1;
    const BankRecord bank = find_german_bank({bank_code, length});
    if (!bank) return -2;
    if (method != nullptr) {
        method[0] = digits[bank.method() >> 4];
        method[1] = digits[bank.method() & 0xF];
        method[2] = '\0';
    }
    if (iban_rule != nullptr) *iban_rule = static_cast<int>(bank.iban_rule());
    return 1;
}

const char* sepa_data_date(const char* country) {
    const DirectoryCountry* known = country_named(country);
    return known == nullptr ? nullptr : data_date(*known);
}

int sepa_bank_next(const char* country, uint32_t* index, char* code, sepa_bank_t** bank) {
    if (index == nullptr) return -1;
    const DirectoryCountry* known = country_named(country);
    if (country != nullptr && known == nullptr) return 0;
    const RecordRange range = known == nullptr ? all_records : known->records;
    if (*index >= range.end - range.begin) return 0;
    const DirectoryItem item = record_at(range.begin + *index);
    if (bank != nullptr) {
        sepa_bank_t* record = item.bank ? make_bank_record(item.bank) : make_bic_record(item.bic, item.code);
        if (record == nullptr) return -3;
        *bank = record;
    }
    if (code != nullptr) std::memcpy(code, item.code, sizeof item.code);
    ++*index;
    return 1;
}
