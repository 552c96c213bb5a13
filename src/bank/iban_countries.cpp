#include "bank/iban_countries.h"

#include <iterator>

#include "base/ascii.h"

namespace velmora {
namespace {

constexpr std::size_t letters = 'Z' - 'A' + 1;

// By the two letters of the code: the number of the country's row, from 1 on.
struct RowNumbers {
    std::uint8_t by_code[letters][letters];
};

constexpr RowNumbers row_numbers = [] {
    RowNumbers numbers{};
    std::uint8_t number = 0;
    for (const IbanCountry& country : iban_countries)
        numbers.by_code[country.code[0] - 'A'][country.code[1] - 'A'] = ++number;
    return numbers;
}();

} // namespace

const IbanCountry* find_iban_country(const char* text, Countries countries) {
    if (!is_letter(text[0]) || !is_letter(text[1])) return nullptr;
    const std::uint8_t number = row_numbers.by_code[to_upper(text[0]) - 'A'][to_upper(text[1]) - 'A'];
    if (number == 0) return nullptr;
    const IbanCountry& country = iban_countries[number - 1];
    return country.known_to <= countries ? &country : nullptr;
}

} // namespace velmora
