// One payment of a message.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace velmora {

// The texts of a payment. The structured address stands in the order of the documents' elements.
enum class Field : std::uint8_t {
    date,
    end_to_end_id,
    name, // of the counterpart: debtor of a direct debit, creditor of a credit transfer
    iban,
    bic,
    remittance,
    mandate_reference, // direct debits only, as the next three
    mandate_date,
    original_mandate_reference,
    original_iban,
    purpose, // credit transfers only, until rulebooks know the extended keys
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
    instruction_id, // the rest are extended keys
    execution_time, // hh:mm:ss
    category_purpose,
    creditor_reference,
    ultimate_debtor,
    ultimate_creditor,
    original_creditor_name,
    original_creditor_identifier,
    count,
};

constexpr std::size_t field_count = static_cast<std::size_t>(Field::count);
constexpr Field first_structured_field = Field::department;
constexpr std::size_t structured_field_count = 13;
constexpr Field first_extended_field = Field::instruction_id;

// Some of the fields; one bit each.
using FieldSet = std::uint64_t;

template <typename... Fields>
constexpr FieldSet fields(Fields... some) {
    return (FieldSet{0} | ... | (FieldSet{1} << static_cast<unsigned>(some)));
}

enum SequenceType : std::uint8_t { no_sequence_type = 0, frst = 1, rcur = 2, ooff = 3, fnal = 4 };
constexpr std::size_t sequence_type_count = 4;

// In the order of SequenceType, from FRST on.
constexpr char sequence_type_names[sequence_type_count][5] = {"FRST", "RCUR", "OOFF", "FNAL"};

// The numbers of a payment.
struct PaymentNumbers {
    double amount = 0; // euros, rounded to cents
    SequenceType sequence_type = no_sequence_type;
    bool same_mandate_new_agent = false; // SMNDA: the debtor moved the mandate to another bank
    bool instant = false;
    bool urgent = false;
};

// A payment to read and to fill. Its texts are views: of the caller's values while it is checked, of the
// stored payment afterwards.
class Payment : public PaymentNumbers {
public:
    void set(Field field, std::string_view text) {
        present_ |= fields(field);
        texts_[static_cast<std::size_t>(field)] = text;
    }

    FieldSet present() const { return present_; }
    bool has(FieldSet any) const { return (present_ & any) != 0; }
    bool has(Field field) const { return has(fields(field)); }

    // At null when the field is not set.
    std::string_view operator[](Field field) const { return texts_[static_cast<std::size_t>(field)]; }

    // Room for values that are not stored as the caller wrote them.
    char upper_case_bic[12];
    char normal_reference[26];
    char normal_time[9];

private:
    FieldSet present_ = 0;
    std::string_view texts_[field_count];
};

} // namespace velmora
