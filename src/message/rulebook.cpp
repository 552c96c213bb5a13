#include "message/rulebook.h"

#include <ctime>
#include <iterator>

#include "base/local_time.h"

namespace velmora {
namespace {

constexpr std::uint16_t german = names_schema_location;
constexpr std::uint16_t with_cor1 = cor1_may_be_chosen | cor1_can_be_written;
constexpr std::uint16_t since_3_0 = spaces_in_mandate_reference | smnda_under_account;

// In the order of the internal values.
constexpr RulebookRow rulebooks[] = {
    {"DE-2.6", "pain.008.002.02", "pain.001.002.03",
     german | bic_required | basic_characters_only | cor1_can_be_written},
    {"DE-2.7", "pain.008.003.02", "pain.001.003.03", german | with_cor1},
    {"AT-6", "pain.008.001.02", "pain.001.001.03", with_cor1 | austrian_characters},
    {"NL-6", "pain.008.001.02", "pain.001.001.03", with_cor1},
    {"DE-2.8", "pain.008.003.02", "pain.001.003.03", german | with_cor1},
    {"DE-2.9", "pain.008.003.02", "pain.001.003.03", german | with_cor1},
    {"DE-3.0", "pain.008.001.02", "pain.001.001.03", german | since_3_0},
    {"DE-3.1", "pain.008.001.02", "pain.001.001.03", german | since_3_0 | address_lines_outside_eea},
    {"DE-3.5", "pain.008.001.02", "pain.001.001.03", german | since_3_0 | address_lines_outside_eea},
    {"DE-3.7", "pain.008.001.08", "pain.001.001.09",
     german | since_3_0 | structured_address | structured_address_outside_eea | schema_of_2019},
};

} // namespace

Rulebook selected_rulebook = Rulebook::none;

const RulebookRow* find_rulebook(Rulebook rulebook) {
    const auto index = static_cast<std::uint32_t>(rulebook);
    return index < std::size(rulebooks) ? &rulebooks[index] : nullptr;
}

Rulebook rulebook_by_name(std::string_view name) {
    for (std::size_t i = 0; i < std::size(rulebooks); ++i)
        if (name == rulebooks[i].name) return static_cast<Rulebook>(i);
    return Rulebook::none;
}

Rulebook rulebook_of_today() {
    // DE-3.7 holds from 17 April 2024 on.
    constexpr int change_year = 2024 - 1900, change_month = 4 - 1, change_day = 17;
    const std::tm today = local_time(std::time(nullptr));
    if (today.tm_year != change_year)
        return today.tm_year > change_year ? Rulebook::de_3_7 : Rulebook::de_3_5;
    if (today.tm_mon != change_month)
        return today.tm_mon > change_month ? Rulebook::de_3_7 : Rulebook::de_3_5;
    return today.tm_mday >= change_day ? Rulebook::de_3_7 : Rulebook::de_3_5;
}

} // namespace velmora
