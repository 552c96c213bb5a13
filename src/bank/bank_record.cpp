#include "bank/bank_record.h"

#include <cstdlib>
#include <cstring>

#include "bank/bic.h"

namespace velmora {

sepa_bank_t* make_bank_record(BankRecord record) {
    const std::size_t size = record.size_of_texts();
    auto* bank = static_cast<sepa_bank_t*>(std::malloc(sizeof(sepa_bank_t) + size));
    if (bank == nullptr) return nullptr;
    const char* text = static_cast<char*>(std::memcpy(bank + 1, record.name(), size));
    bank->name = text;
    bank->postcode = text += record.size_of(BankRecord::name_text);
    bank->city = text += record.size_of(BankRecord::postcode_text);
    bank->country = text += record.size_of(BankRecord::city_text);
    bank->bic = text + record.size_of(BankRecord::country_text);
    bank->flags = 0;
    return bank;
}

sepa_bank_t* make_bic_record(BicRecord record, const char* bic) {
    constexpr std::size_t country_size = 3; // with its zero byte
    // Deliberate: a BIC without any scheme has an empty name; the flags byte 0 once ended the record's text.
    const std::size_t name_size = record.flags() == 0 ? 1 : record.size_of_name();
    const std::size_t size = name_size + country_size + bic_length + 1;
    auto* bank = static_cast<sepa_bank_t*>(std::malloc(sizeof(sepa_bank_t) + size));
    if (bank == nullptr) return nullptr;
    char* name = reinterpret_cast<char*>(bank + 1);
    char* country = name + name_size;
    char* copied_bic = country + country_size;
    std::memcpy(name, record.name(), name_size);
    name[name_size - 1] = '\0';
    std::memcpy(country, bic + 4, country_size - 1);
    country[country_size - 1] = '\0';
    std::memcpy(copied_bic, bic, bic_length);
    copied_bic[bic_length] = '\0';
    *bank = {.name = name,
             .postcode = nullptr,
             .city = nullptr,
             .country = country,
             .bic = copied_bic,
             .flags = record.flags()};
    return bank;
}

} // namespace velmora
