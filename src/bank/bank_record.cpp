#include "bank/bank_record.h"

#include <cstdlib>
#include <cstring>

namespace velmora {

sepa_bank_t* make_bank_record(const char* name, const char* postcode, const char* city, const char* country,
                              const char* bic, std::uint16_t flags) {
    const char* const texts[] = {name, postcode, city, country, bic};
    const char* sepa_bank_t::*const fields[] = {&sepa_bank_t::name, &sepa_bank_t::postcode,
                                                &sepa_bank_t::city, &sepa_bank_t::country, &sepa_bank_t::bic};
    std::size_t sizes[5];
    std::size_t total = 0;
    for (std::size_t i = 0; i < 5; ++i) {
        sizes[i] = texts[i] == nullptr ? 0 : std::strlen(texts[i]) + 1;
        total += sizes[i];
    }
    auto* bank = static_cast<sepa_bank_t*>(std::malloc(sizeof(sepa_bank_t) + total));
    if (bank == nullptr) return nullptr;
    *bank = {};
    bank->flags = flags;
    char* end = reinterpret_cast<char*>(bank + 1);
    for (std::size_t i = 0; i < 5; ++i) {
        if (texts[i] == nullptr) continue;
        bank->*fields[i] = static_cast<const char*>(std::memcpy(end, texts[i], sizes[i]));
        end += sizes[i];
    }
    return bank;
}

} // namespace velmora
