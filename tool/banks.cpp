#include "banks.h"

#include <cstdlib>

#include "failure.h"

namespace velmora::tool {
namespace {

bool is_found(int result) {
    if (result == -3) fail(Exit::memory, "out of memory");
    return result == 1;
}

sepa_bank_t* find_code(const char* country, const char* code) {
    sepa_bank_t* bank = nullptr;
    return is_found(sepa_bankid_check(country, code, &bank)) ? bank : nullptr;
}

sepa_bank_t* find_bic(const char* country, const char* bic) {
    (void)country;
    sepa_bank_t* bank = nullptr;
    return is_found(sepa_bic_getBank(bic, &bank)) ? bank : nullptr;
}

} // namespace

Banks::~Banks() {
    for (Slot& slot : slots_)
        std::free(slot.bank);
}

const sepa_bank_t* Banks::remembered(Text country, Text code, Find find) {
    // Two letters or none, the code, and at least one zero byte.
    char key[key_size] = {};
    if (code.size() > 11 || code.empty()) return nullptr;
    std::memcpy(key, country.data(), country.size());
    std::memcpy(key + 3, code.data(), code.size());
    std::uint64_t halves[2];
    std::memcpy(halves, key, sizeof halves);
    const std::uint64_t mixed = (halves[0] ^ (halves[1] * 0x9E3779B97F4A7C15)) * 0x9E3779B97F4A7C15;
    Slot& slot = slots_[mixed >> 56];
    if (std::memcmp(slot.key, key, sizeof key) != 0) {
        std::free(slot.bank);
        slot.bank = find(key, key + 3);
        std::memcpy(slot.key, key, sizeof key);
    }
    return slot.bank;
}

const sepa_bank_t* Banks::by_code(Text country, Text code) {
    return remembered(country, code, find_code);
}

const sepa_bank_t* Banks::by_bic(Text bic) {
    return remembered("", bic, find_bic);
}

const sepa_bank_t* Banks::by_iban(Text iban) {
    const Text code = bank_code_of(iban);
    return code.empty() ? nullptr : by_code(piece(iban, 0, 2), code);
}

Text bank_code_of(Text iban) {
    const Text country = piece(iban, 0, 2);
    if (country == "DE") return piece(iban, 4, 8);
    if (country == "AT" || country == "CH" || country == "LI") return piece(iban, 4, 5);
    return {};
}

} // namespace velmora::tool
