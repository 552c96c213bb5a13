// The rulebooks, and what each of them asks for, permits or writes.
#pragma once

#include <cstdint>
#include <string_view>

#include "bank/iban_countries.h"
#include "base/local_time.h"

namespace velmora {

struct Rulebook;

// One or several traits of a rulebook. Called with a rulebook, they are a question: does it have them all?
struct Traits {
    std::uint32_t bits;

    constexpr bool operator()(const Rulebook& rulebook) const;
    friend constexpr Traits operator|(Traits a, Traits b) { return {a.bits | b.bits}; }
};

constexpr Traits no_traits{0};

// The document names its schema file.
constexpr Traits names_schema_location{1u << 0};
// Every payment needs a BIC.
constexpr Traits requires_bic{1u << 1};
// Names and remittance texts without $ % & * and German letters.
constexpr Traits permits_basic_characters_only{1u << 2};
// The wider Austrian character set.
constexpr Traits permits_austrian_characters{1u << 3};
// A message may be set to COR1; a document may hold it.
constexpr Traits permits_choosing_cor1{1u << 4};
constexpr Traits permits_writing_cor1{1u << 5};
// Otherwise mandate references hold none.
constexpr Traits permits_spaces_in_mandate_reference{1u << 6};
// Debtors with a bank outside the EEA need an address line ... a town or a country.
constexpr Traits requires_address_line_outside_eea{1u << 7};
constexpr Traits requires_structured_address_outside_eea{1u << 8};
// Addresses are structured, address lines refused.
constexpr Traits uses_structured_address{1u << 9};
// A changed debtor bank (SMNDA) is marked under the original account, otherwise under the original bank.
constexpr Traits marks_changed_bank_under_account{1u << 10};
// BICFI for BIC, execution dates inside Dt.
constexpr Traits uses_schema_of_2019{1u << 11};
// Up to two address lines may stand beside the structured address.
constexpr Traits permits_hybrid_address{1u << 12};
// An address has a town and a country; debtors with a bank outside the EEA have an address.
constexpr Traits requires_complete_address{1u << 13};
// The structured address holds the characters of names only.
constexpr Traits checks_address_characters{1u << 14};
// What is accepted makes a valid document: nothing is dropped, and what is missing or malformed refused.
constexpr Traits is_strict{1u << 15};
// Instant, urgent and categorised payments, references, further parties.
constexpr Traits knows_extended_keys{1u << 16};
// The own bank may be left out and is then written as not provided.
constexpr Traits permits_unknown_own_bank{1u << 17};
// IBANs of the countries that joined SEPA later, too.
constexpr Traits knows_all_sepa_countries{1u << 18};
// Limits count characters instead of bytes; texts are UTF-8 and quoted in whole characters.
constexpr Traits counts_characters{1u << 19};

struct Rulebook {
    char name[9];
    char direct_debit_schema[16];
    char credit_transfer_schema[16];
    Traits traits;
};

constexpr bool Traits::operator()(const Rulebook& rulebook) const {
    return (rulebook.traits.bits & bits) == bits;
}

inline Countries iban_countries_of(const Rulebook& rulebook) {
    return knows_all_sepa_countries(rulebook) ? Countries::all_sepa : Countries::established;
}

// The rulebook with exactly this name, or null.
const Rulebook* find_rulebook(std::string_view name);

// The rulebook that holds on a day for those who select none.
const Rulebook& rulebook_on(const Day& day);

// Selected for the whole process; null as long as none is.
const Rulebook* selected_rulebook();
void select_rulebook(const Rulebook& rulebook);

// Selects the rulebook of today's local date unless one is selected.
void settle_rulebook();

} // namespace velmora
