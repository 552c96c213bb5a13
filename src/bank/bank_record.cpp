#include "bank/bank_record.h"

#include <cstdlib>
#include <cstring>

namespace velmora {

sepa_bank_t* make_bank_record(std::string_view name, std::string_view postcode, std::string_view city,
                              std::string_view country, std::string_view bic, std::uint16_t flags) {
    std::size_t size = sizeof(sepa_bank_t);
    for (const std::string_view text : {name, postcode, city, country, bic})
        if (text.data() != nullptr) size += text.size() + 1;
    auto* bank = static_cast<sepa_bank_t*>(std::malloc(size));
    if (bank == nullptr) return nullptr;

    char* end = reinterpret_cast<char*>(bank + 1);
    const auto append = [&end](std::string_view text) -> const char* {
        if (text.data() == nullptr) return nullptr;
        char* const copy = end;
        std::memcpy(copy, text.data(), text.size());
        copy[text.size()] = '\0';
        end += text.size() + 1;
        return copy;
    };
    bank->name = append(name);
    bank->postcode = append(postcode);
    bank->city = append(city);
    bank->country = append(country);
    bank->bic = append(bic);
    bank->flags = flags;
    return bank;
}

} // namespace velmora
