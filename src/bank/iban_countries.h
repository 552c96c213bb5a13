// The countries whose IBANs the library knows.
#pragma once

#include <cstddef>
#include <cstdint>

namespace velmora {

struct IbanCountry {
    char code[3];
    char name[16];
    std::uint8_t length;
    char pattern[45]; // POSIX extended regular expression of the whole IBAN
};

constexpr std::size_t iban_country_count = 37;
extern const IbanCountry iban_countries[iban_country_count];

} // namespace velmora
