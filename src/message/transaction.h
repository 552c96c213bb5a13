// One payment of a message.
#pragma once

#include <cstdint>

#include "base/owned_text.h"

namespace velmora {

// The texts of a payment. The structured address stands in the order of the documents' elements.
enum class Field : std::uint8_t {
    end_to_end_id,
    name, // of the counterpart: debtor of a direct debit, creditor of a credit transfer
    iban,
    bic,
    country,
    address_line_1,
    address_line_2,
    department,
    sub_department,
    street,
    building_number,
    building_name,
    floor,
    post_box,
    room,
    post_code,
    town,
    town_location,
    district,
    country_subdivision,
    date,
    remittance,
    mandate_reference, // direct debits only, as the next three
    mandate_date,
    original_mandate_reference,
    original_iban,
    purpose, // credit transfers only
    count,
};

constexpr Field first_structured_field = Field::department;
constexpr std::size_t structured_field_count = 13;

enum SequenceType : std::uint32_t { no_sequence_type = 0, frst = 1, rcur = 2, ooff = 3, fnal = 4 };
constexpr std::size_t sequence_type_count = 4;

// In the order of SequenceType, from FRST on.
constexpr char sequence_type_names[sequence_type_count][5] = {"FRST", "RCUR", "OOFF", "FNAL"};

struct Transaction {
    Transaction* next = nullptr;
    double amount = 0; // euros, rounded to cents
    std::uint32_t sequence_type = no_sequence_type;
    std::uint32_t same_mandate_new_agent = 0; // SMNDA: the debtor moved the mandate to another bank
    OwnedText texts[static_cast<std::size_t>(Field::count)];

    OwnedText& operator[](Field field) { return texts[static_cast<std::size_t>(field)]; }
    const OwnedText& operator[](Field field) const { return texts[static_cast<std::size_t>(field)]; }

    bool is_amended() const {
        return (*this)[Field::original_mandate_reference] || (*this)[Field::original_iban] ||
               same_mandate_new_agent != 0;
    }
};

// An empty payment, or null without memory.
Transaction* new_transaction();

// Releases a payment, not its successor.
void free_transaction(Transaction* transaction);

} // namespace velmora
