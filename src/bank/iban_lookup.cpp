// What the directory says of an IBAN: the bank, and the BIC.
#include <cstddef>
#include <cstring>
#include <string_view>

#include "bank/bank_record.h"
#include "bank/bic.h"
#include "bank/directory.h"
#include "bank/iban_check.h"
#include "velmora.h"

using namespace velmora;

namespace {

// Behind country and check digits.
std::string_view bank_code_of(const char* iban, const DirectoryCountry& country) {
    return {iban + 4, country.bank_code_length};
}

// The BIC that a German bank gives for its IBANs when it is not the one that the directory has for the bank
// code.
std::string_view bic_by_iban_rule(unsigned rule, std::string_view bank_code) {
    switch (rule) {
    case 5:
        return bank_code[3] == '4' && (bank_code[4] != '1' || bank_code[5] != '1') ? "COBADEFFXXX" : "";
    case 14:
        return "DAAEDEDDXXX";
    default:
        return "";
    }
}

} // namespace

int sepa_iban_getBank(const char* iban, sepa_bank_t** bank) {
    if (sepa_iban_check(iban) != 1) return -1;
    const DirectoryCountry* country = find_directory_country(iban);
    if (country == nullptr) return 0;
    const BankRecord record = find_bank(*country, bank_code_of(iban, *country));
    if (!record) return -2;
    if (bank == nullptr) return 1;
    sepa_bank_t* result = make_bank_record(record);
    if (result == nullptr) return -3;
    *bank = result;
    return 1;
}

int sepa_iban_getBIC(const char* iban, char* bic) {
    if (bic == nullptr) return -1;
    std::memset(bic, 0, bic_length + 1);
    if (iban == nullptr) return -1;
    const DirectoryCountry* country = find_directory_country(iban);
    if (country == nullptr) return 0;
    const std::size_t length = find_iban_country(iban, Countries::established)->length;
    if (strnlen(iban, length + 1) != length) return -1;

    const std::string_view bank_code = bank_code_of(iban, *country);
    const BankRecord bank = find_bank(*country, bank_code);
    if (!bank) return -3;
    std::string_view found = bic_by_iban_rule(bank.iban_rule() / 100, bank_code);
    if (found.empty()) found = bank.bic();
    std::memcpy(bic, found.data(), found.size() < bic_length ? found.size() : bic_length);
    return 1;
}
