#include "bank/iban_check.h"

#include <cstring>

#include "bank/directory.h"
#include "bank/iban_countries.h"
#include "bank/pattern.h"
#include "base/mod97.h"
#include "velmora.h"

namespace velmora {
namespace {

regex_t patterns[iban_country_count];
bool patterns_compiled = false;
std::size_t leftover_patterns = 0; // compiled by an attempt that failed later; released by the next attempt

void release_patterns(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        release_pattern(&patterns[i]);
}

bool compile_patterns() {
    if (!pattern_functions_ready()) return false;
    release_patterns(leftover_patterns);
    for (leftover_patterns = 0; leftover_patterns < iban_country_count; ++leftover_patterns)
        if (!compile_pattern(&patterns[leftover_patterns], iban_countries[leftover_patterns].pattern))
            return false;
    leftover_patterns = 0;
    return patterns_compiled = true;
}

char upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// Index of the country whose code the IBAN begins with in any case, or iban_country_count.
std::size_t find_country(const char* iban) {
    const char first = upper(iban[0]);
    const char second = first == '\0' ? '\0' : upper(iban[1]);
    std::size_t i = 0;
    while (i < iban_country_count &&
           (iban_countries[i].code[0] != first || iban_countries[i].code[1] != second))
        ++i;
    return i;
}

int fail(const char** error, const char* text) {
    if (error != nullptr) *error = text;
    return 0;
}

// The bank code and the account number inside a German IBAN.
int validate_german_account(const char* iban, const char** error) {
    char bank_code[8 + 1] = {};
    char account[10 + 1] = {};
    std::memcpy(bank_code, iban + 4, 8);
    std::memcpy(account, iban + 12, 10);
    GermanBank bank;
    if (!directory_find_german_bank({bank_code, 8}, &bank))
        return fail(error, "Invalid bank ID (BLZ) in IBAN");
    if (sepa_account_check2(account, bank_code, bank.method) == -1)
        return fail(error, "Invalid account number in IBAN");
    return 1;
}

} // namespace

int iban_mod97(const char* iban, std::size_t length) {
    return mod97_rotated({iban, length}, length < 4 ? length : 4, Letters::any_case);
}

int iban_validate(const char* iban, const char** error) {
    if (iban == nullptr) return fail(error, "Invalid IBAN (NULL)");
    if (!patterns_compiled && !compile_patterns())
        return fail(error, "Error while initializing regular expressions");

    const std::size_t country = find_country(iban);
    if (country == iban_country_count) return fail(error, "Invalid or unknown IBAN country code");
    const std::size_t length = iban_countries[country].length;
    if (strnlen(iban, length + 1) != length) return fail(error, "Wrong IBAN length");
    if (!pattern_matches(&patterns[country], iban)) return fail(error, "Invalid IBAN format");

    const int remainder = iban_mod97(iban, length);
    if (remainder == -1) return fail(error, "Invalid character in IBAN");
    if (remainder != 1) return fail(error, "Invalid IBAN checksum");

    const bool is_german = upper(iban[0]) == 'D' && upper(iban[1]) == 'E';
    return is_german ? validate_german_account(iban, error) : 1;
}

void iban_release_patterns() {
    if (!patterns_compiled) return;
    release_patterns(iban_country_count);
    patterns_compiled = false;
}

} // namespace velmora

using namespace velmora;

int sepa_iban_check(const char* iban) {
    return iban_validate(iban, nullptr) == 1 ? 1 : -1;
}

int sepa_iban_getBank(const char* iban, sepa_bank_t** bank) {
    // Where the bank code stands in the IBANs of the countries in the directory.
    struct BankCodeLength {
        char country[3];
        std::size_t length;
    };
    static constexpr BankCodeLength lengths[] = {{"AT", 5}, {"CH", 5}, {"LI", 5}, {"DE", 8}};

    if (sepa_iban_check(iban) != 1) return -1;
    for (const BankCodeLength& row : lengths) {
        if (std::memcmp(iban, row.country, 2) != 0) continue;
        char bank_code[8 + 1] = {};
        std::memcpy(bank_code, iban + 4, row.length);
        return sepa_bankid_check(row.country, bank_code, bank);
    }
    return 0;
}
