// The BIC behind an IBAN.
#include <cstddef>
#include <cstring>
#include <string_view>

#include "bank/bic.h"
#include "bank/directory.h"
#include "velmora.h"

using namespace velmora;

namespace {

constexpr std::size_t bank_code_offset = 4;

struct CountryIban {
    char country[3];
    std::uint8_t length;
    std::uint8_t bank_code_length;
};

constexpr CountryIban country_ibans[] = {{"AT", 20, 5}, {"CH", 21, 5}, {"LI", 21, 5}, {"DE", 22, 8}};

// The BIC that a German bank gives for its IBANs when it is not the one that the directory has for the bank
// code.
std::string_view bic_by_iban_rule(unsigned rule, const char* bank_code) {
    switch (rule) {
    case 5:
        return bank_code[3] == '4' && std::memcmp(bank_code + 4, "11", 2) != 0 ? "COBADEFFXXX" : "";
    case 14:
        return "DAAEDEDDXXX";
    default:
        return "";
    }
}

} // namespace

int sepa_iban_getBIC(const char* iban, char* bic) {
    if (bic == nullptr) return -1;
    std::memset(bic, 0, bic_length + 1);
    if (iban == nullptr) return -1;
    for (const CountryIban& row : country_ibans) {
        if (std::strncmp(iban, row.country, 2) != 0) continue;
        if (strnlen(iban, row.length + std::size_t{1}) != row.length) return -1;

        char bank_code[8 + 1] = {};
        std::memcpy(bank_code, iban + bank_code_offset, row.bank_code_length);
        DirectoryEntry bank;
        if (directory_lookup(row.country, bank_code, &bank) != 1) return -3;
        std::string_view found = bic_by_iban_rule(bank.iban_rule / 100, bank_code);
        if (found.empty() && bank.bic != nullptr) found = bank.bic;
        std::memcpy(bic, found.data(), found.size() < bic_length ? found.size() : bic_length);
        return 1;
    }
    return 0;
}
