// The rulebooks and what each of them changes.
#pragma once

#include <cstdint>
#include <string_view>

namespace velmora {

// The values are not in date order; callers' stored selections rely on them.
enum class Rulebook : std::int32_t {
    none = -1,
    de_2_6 = 0,
    de_2_7 = 1,
    at_6 = 2,
    nl_6 = 3,
    de_2_8 = 4,
    de_2_9 = 5,
    de_3_0 = 6,
    de_3_1 = 7,
    de_3_5 = 8,
    de_3_7 = 9,
};

// What a rulebook asks for or permits; one bit each in its row of the table.
enum RulebookTrait : std::uint16_t {
    names_schema_location = 1u << 0,          // the document names its schema file
    bic_required = 1u << 1,                   // every payment needs a BIC
    basic_characters_only = 1u << 2,          // names and remittance texts without $ % & * and German letters
    austrian_characters = 1u << 3,            // the wider Austrian character set
    cor1_may_be_chosen = 1u << 4,             // the message may be set to COR1
    cor1_can_be_written = 1u << 5,            // a document may hold COR1
    spaces_in_mandate_reference = 1u << 6,    // otherwise they hold none
    address_lines_outside_eea = 1u << 7,      // debtors with a bank outside the EEA need an address line
    structured_address_outside_eea = 1u << 8, // ... need a town or a country
    structured_address = 1u << 9,             // addresses are structured, address lines refused
    smnda_under_account = 1u << 10,           // a changed debtor bank is marked under the original account
    schema_of_2019 = 1u << 11,                // BICFI for BIC, execution dates inside Dt
};

struct RulebookRow {
    char name[7];
    char direct_debit_schema[16];
    char credit_transfer_schema[16];
    std::uint16_t traits;
};

// The selected rulebook's row; null while none is selected.
const RulebookRow* find_rulebook(Rulebook rulebook);

// The rulebook with exactly this name, or none.
Rulebook rulebook_by_name(std::string_view name);

// The rulebook that holds on today's local date.
Rulebook rulebook_of_today();

// Selected for the whole process.
extern Rulebook selected_rulebook;

inline bool rulebook_has(Rulebook rulebook, RulebookTrait trait) {
    const RulebookRow* row = find_rulebook(rulebook);
    return row != nullptr && (row->traits & trait) != 0;
}

inline bool requires_bic(Rulebook r) {
    return rulebook_has(r, bic_required);
}
inline bool permits_basic_characters_only(Rulebook r) {
    return rulebook_has(r, basic_characters_only);
}
inline bool permits_austrian_characters(Rulebook r) {
    return rulebook_has(r, austrian_characters);
}
inline bool permits_choosing_cor1(Rulebook r) {
    return rulebook_has(r, cor1_may_be_chosen);
}
inline bool permits_writing_cor1(Rulebook r) {
    return rulebook_has(r, cor1_can_be_written);
}
inline bool permits_spaces_in_mandate_reference(Rulebook r) {
    return rulebook_has(r, spaces_in_mandate_reference);
}
inline bool requires_address_line_outside_eea(Rulebook r) {
    return rulebook_has(r, address_lines_outside_eea);
}
inline bool requires_structured_address_outside_eea(Rulebook r) {
    return rulebook_has(r, structured_address_outside_eea);
}
inline bool uses_structured_address(Rulebook r) {
    return rulebook_has(r, structured_address);
}
inline bool marks_changed_bank_under_account(Rulebook r) {
    return rulebook_has(r, smnda_under_account);
}
inline bool uses_schema_of_2019(Rulebook r) {
    return rulebook_has(r, schema_of_2019);
}

} // namespace velmora
