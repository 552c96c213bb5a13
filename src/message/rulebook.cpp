#include "message/rulebook.h"

#include <atomic>

namespace velmora {
namespace {

constexpr Traits german = names_schema_location;
constexpr Traits with_cor1 = permits_choosing_cor1 | permits_writing_cor1;
constexpr Traits since_3_0 = german | permits_spaces_in_mandate_reference | marks_changed_bank_under_account;

// Not in the order of their dates.
constexpr Rulebook rulebooks[] = {
    {"DE-2.6", "pain.008.002.02", "pain.001.002.03",
     german | requires_bic | permits_basic_characters_only | permits_writing_cor1},
    {"DE-2.7", "pain.008.003.02", "pain.001.003.03", german | with_cor1},
    {"AT-6", "pain.008.001.02", "pain.001.001.03", with_cor1 | permits_austrian_characters},
    {"NL-6", "pain.008.001.02", "pain.001.001.03", with_cor1},
    {"DE-2.8", "pain.008.003.02", "pain.001.003.03", german | with_cor1},
    {"DE-2.9", "pain.008.003.02", "pain.001.003.03", german | with_cor1},
    {"DE-3.0", "pain.008.001.02", "pain.001.001.03", since_3_0},
    {"DE-3.1", "pain.008.001.02", "pain.001.001.03", since_3_0 | requires_address_line_outside_eea},
    {"DE-3.5", "pain.008.001.02", "pain.001.001.03", since_3_0 | requires_address_line_outside_eea},
    {"DE-3.7", "pain.008.001.08", "pain.001.001.09",
     since_3_0 | uses_structured_address | requires_structured_address_outside_eea | uses_schema_of_2019},
    {"DE-26.11", "pain.008.001.08", "pain.001.001.09",
     since_3_0 | uses_structured_address | uses_schema_of_2019 | permits_hybrid_address |
         requires_complete_address | checks_address_characters | is_strict | knows_extended_keys |
         permits_unknown_own_bank | knows_all_sepa_countries | counts_characters},
};

std::atomic<const Rulebook*> selected = nullptr;

} // namespace

const Rulebook* find_rulebook(std::string_view name) {
    for (const Rulebook& rulebook : rulebooks)
        if (name == rulebook.name) return &rulebook;
    return nullptr;
}

const Rulebook& rulebook_on(const Day& day) {
    constexpr Day first_day_of_3_7{2024, 4, 17};
    return *find_rulebook(day < first_day_of_3_7 ? "DE-3.5" : "DE-3.7");
}

const Rulebook* selected_rulebook() {
    return selected.load(std::memory_order_relaxed);
}

void select_rulebook(const Rulebook& rulebook) {
    selected.store(&rulebook, std::memory_order_relaxed);
}

void settle_rulebook() {
    if (selected_rulebook() != nullptr) return;
    const Rulebook* none = nullptr; // another thread may have selected one meanwhile: it stays
    selected.compare_exchange_strong(none, &rulebook_on(local_day(std::time(nullptr))),
                                     std::memory_order_relaxed);
}

} // namespace velmora
