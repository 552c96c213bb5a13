// IBAN lengths and national formats by country, after the SWIFT IBAN registry (ISO 13616).
#pragma once

#include <cstddef>
#include <cstdint>

#include "bank/pattern.h"

namespace velmora {

// Which countries' IBANs count: those that the library has known from the start, or all of today's SEPA.
enum class Countries : std::uint8_t { established, all_sepa };

struct IbanCountry {
    char code[3];
    char name[16];
    std::uint8_t length;
    Countries known_to;
    char pattern[45]; // of the whole IBAN, as a POSIX extended regular expression

    // What the pattern says: the places where digits and where letters may stand, bit 0 for the first.
    std::uint64_t digits = 0;
    std::uint64_t letters = 0;

    template <std::size_t name_size, std::size_t pattern_size>
    consteval IbanCountry(const char (&country_code)[3], const char (&country_name)[name_size],
                          std::uint8_t iban_length, const char (&iban_pattern)[pattern_size],
                          Countries countries = Countries::established)
        : code(), name(), length(iban_length), known_to(countries), pattern() {
        for (std::size_t i = 0; i < sizeof(code); ++i)
            code[i] = country_code[i];
        for (std::size_t i = 0; i < name_size; ++i)
            name[i] = country_name[i];
        for (std::size_t i = 0; i < pattern_size; ++i)
            pattern[i] = iban_pattern[i];
        const Pattern read = read_pattern(iban_pattern);
        for (std::size_t i = 0; i < read.longest; ++i) {
            const bool may_be_digit = (read.places[i] & all_digits) == all_digits;
            const bool may_be_letter = i < 2 ? read.places[i] == place_set(code[i])
                                             : (read.places[i] & all_capitals) == all_capitals;
            if (!may_be_digit && !may_be_letter) pattern_is_not_understood();
            digits |= std::uint64_t{may_be_digit} << i;
            letters |= std::uint64_t{may_be_letter} << i;
        }
        if (read.longest != length) pattern_is_not_understood();
    }
};

inline constexpr IbanCountry iban_countries[] = {
    {"AT", "Austria", 20, "^AT[0-9]{18}$"},
    {"BE", "Belgium", 16, "^BE[0-9]{14}$"},
    {"BG", "Bulgaria", 22, "^BG[0-9]{2}[A-Z]{4}[0-9]{6}[A-Z0-9]{8}$"},
    {"HR", "Croatia", 21, "^HR[0-9]{19}$"},
    {"CY", "Cyprus", 28, "^CY[0-9]{10}[A-Z0-9]{16}$"},
    {"CZ", "Czech Republic", 24, "^CZ[0-9]{22}$"},
    {"DK", "Denmark", 18, "^DK[0-9]{16}$"},
    // Deliberate: the Faroe Islands and Greenland stand under the name of Denmark.
    {"FO", "Denmark", 18, "^FO[0-9]{16}$"},
    {"GL", "Denmark", 18, "^GL[0-9]{16}$"},
    {"EE", "Estonia", 20, "^EE[0-9]{18}$"},
    {"FI", "Finland", 18, "^FI[0-9]{16}$"},
    {"FR", "France", 27, "^FR[0-9]{12}[A-Z0-9]{11}[0-9]{2}$"},
    {"DE", "Germany", 22, "^DE[0-9]{20}$"},
    {"GI", "Gibraltar", 23, "^GI[0-9]{2}[A-Z]{4}[A-Z0-9]{15}$"},
    {"GR", "Greece", 27, "^GR[0-9]{9}[A-Z0-9]{16}$"},
    {"HU", "Hungary", 28, "^HU[0-9]{26}$"},
    {"IS", "Iceland", 26, "^IS[0-9]{24}$"},
    {"IE", "Ireland", 22, "^IE[0-9]{2}[A-Z]{4}[0-9]{14}$"},
    {"IT", "Italy", 27, "^IT[0-9]{2}[A-Z]{1}[0-9]{10}[A-Z0-9]{12}$"},
    {"LV", "Latvia", 21, "^LV[0-9]{2}[A-Z]{4}[A-Z0-9]{13}$"},
    {"LI", "Liechtenstein", 21, "^LI[0-9]{7}[A-Z0-9]{12}$"},
    {"LT", "Lithuania", 20, "^LT[0-9]{18}$"},
    {"LU", "Luxembourg", 20, "^LU[0-9]{5}[A-Z0-9]{13}$"},
    {"MT", "Malta", 31, "^MT[0-9]{2}[A-Z]{4}[0-9]{5}[A-Z0-9]{18}$"},
    {"MC", "Monaco", 27, "^MC[0-9]{12}[A-Z0-9]{11}[0-9]{2}$"},
    {"NL", "The Netherlands", 18, "^NL[0-9]{2}[A-Z]{4}[0-9]{10}$"},
    {"NO", "Norway", 15, "^NO[0-9]{13}$"},
    {"PL", "Poland", 28, "^PL[0-9]{26}$"},
    {"PT", "Portugal", 25, "^PT[0-9]{23}$"},
    {"RO", "Romania", 24, "^RO[0-9]{2}[A-Z]{4}[A-Z0-9]{16}$"},
    {"SM", "San Marino", 27, "^SM[0-9]{2}[A-Z]{1}[0-9]{10}[A-Z0-9]{12}$"},
    {"SK", "Slovak Republic", 24, "^SK[0-9]{22}$"},
    {"SI", "Slovenia", 19, "^SI[0-9]{17}$"},
    {"ES", "Spain", 24, "^ES[0-9]{22}$"},
    {"SE", "Sweden", 24, "^SE[0-9]{22}$"},
    {"CH", "Switzerland", 21, "^CH[0-9]{7}[A-Z0-9]{12}$"},
    {"GB", "United Kingdom", 22, "^GB[0-9]{2}[A-Z]{4}[0-9]{14}$"},
    // In SEPA since 2019 and later.
    {"AD", "Andorra", 24, "^AD[0-9]{10}[A-Z0-9]{12}$", Countries::all_sepa},
    {"AL", "Albania", 28, "^AL[0-9]{10}[A-Z0-9]{16}$", Countries::all_sepa},
    {"MD", "Moldova", 24, "^MD[0-9]{2}[A-Z0-9]{20}$", Countries::all_sepa},
    {"ME", "Montenegro", 22, "^ME[0-9]{20}$", Countries::all_sepa},
    {"MK", "North Macedonia", 19, "^MK[0-9]{5}[A-Z0-9]{10}[0-9]{2}$", Countries::all_sepa},
    {"RS", "Serbia", 22, "^RS[0-9]{20}$", Countries::all_sepa},
    {"VA", "Vatican City", 22, "^VA[0-9]{20}$", Countries::all_sepa},
};

// The country whose code a text begins with, in any case, or null.
const IbanCountry* find_iban_country(const char* text, Countries countries);

} // namespace velmora
