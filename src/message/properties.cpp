#include "message/properties.h"

#include <array>
#include <iterator>

#include "base/words.h"
#include "velmora.h"

namespace velmora {
namespace {

constexpr auto both = MessageTypes::both;
constexpr auto direct_debits = MessageTypes::direct_debits;
constexpr auto credit_transfers = MessageTypes::credit_transfers;
constexpr Field no_field = Field::count;
constexpr CharacterSet any = CharacterSet::any;
constexpr Traits structured = uses_structured_address;
constexpr Traits extended = knows_extended_keys;

// Of several rows with one key, which stand together, the first that fits message type and rulebook counts.
// Deliberate: the text for address line 2 speaks of line 1; programs compare it.
constexpr Property properties[] = {
    {"name", direct_debits, no_traits, Kind::text, Field::name, CharacterSet::name, 1, 70,
     "Invalid name (must be 1-70 characters)", "debtor name"},
    {"name", credit_transfers, no_traits, Kind::text, Field::name, CharacterSet::name, 1, 70,
     "Invalid name (must be 1-70 characters)", "creditor name"},
    {"iban", both, no_traits, Kind::iban, Field::iban, any, 0, 0, "", ""},
    {"bic", both, no_traits, Kind::bic, Field::bic, any, 0, 0, "", ""},
    {"addrCC", both, no_traits, Kind::country, Field::country, any, 2, 2, "Invalid country code", ""},
    {"addrLine1", both, permits_hybrid_address, Kind::text, Field::address_line_1, CharacterSet::name, 1, 70,
     "Invalid address line 1 (must be 1-70 chars)", "address line 1"},
    {"addrLine1", both, structured, Kind::refused, no_field, any, 0, 0,
     "selected SEPA rulebook requires structured address data", ""},
    {"addrLine1", both, no_traits, Kind::text, Field::address_line_1, CharacterSet::name, 1, 70,
     "Invalid address line 1 (must be 1-70 chars)", "address line 1"},
    {"addrLine2", both, permits_hybrid_address, Kind::text, Field::address_line_2, CharacterSet::name, 1, 70,
     "Invalid address line 1 (must be 1-70 chars)", "address line 2"},
    {"addrLine2", both, structured, Kind::refused, no_field, any, 0, 0,
     "selected SEPA rulebook requires structured address data", ""},
    {"addrLine2", both, no_traits, Kind::text, Field::address_line_2, CharacterSet::name, 1, 70,
     "Invalid address line 1 (must be 1-70 chars)", "address line 2"},
    {"addrDept", both, structured, Kind::address, Field::department, any, 1, 70, "", ""},
    {"addrDept", direct_debits, no_traits, Kind::refused, no_field, any, 0, 0,
     "selected SEPA rulebook does not support structured address data", ""},
    {"addrSubDept", both, structured, Kind::address, Field::sub_department, any, 1, 70, "", ""},
    {"addrStreet", both, structured, Kind::address, Field::street, any, 1, 70, "", ""},
    {"addrNum", both, structured, Kind::address, Field::building_number, any, 1, 16, "", ""},
    {"addrBldg", both, structured, Kind::address, Field::building_name, any, 1, 35, "", ""},
    {"addrFloor", both, structured, Kind::address, Field::floor, any, 1, 70, "", ""},
    {"addrPoBox", both, structured, Kind::address, Field::post_box, any, 1, 16, "", ""},
    {"addrRoom", both, structured, Kind::address, Field::room, any, 1, 70, "", ""},
    {"addrCode", both, structured, Kind::address, Field::post_code, any, 1, 16, "", ""},
    {"addrTown", both, structured, Kind::address, Field::town, any, 1, 35, "", ""},
    {"addrLoc", both, structured, Kind::address, Field::town_location, any, 1, 35, "", ""},
    {"addrDstrct", both, structured, Kind::address, Field::district, any, 1, 35, "", ""},
    {"addrCtrySub", both, structured, Kind::address, Field::country_subdivision, any, 1, 35, "", ""},
    {"seq", direct_debits, no_traits, Kind::sequence, no_field, any, 0, 0, "Invalid/unknown sequence type",
     ""},
    {"amount", both, no_traits, Kind::amount, no_field, any, 0, 0, "", ""},
    {"date", both, no_traits, Kind::date, Field::date, any, 10, 10,
     "Invalid execution date (format: yyyy-mm-dd)", ""},
    {"id", both, no_traits, Kind::identification, Field::end_to_end_id, CharacterSet::text, 1, 35,
     "Invalid end-to-end ID (must be 1-35 characters)", "end-to-end ID"},
    {"mref", direct_debits, permits_spaces_in_mandate_reference, Kind::identification,
     Field::mandate_reference, CharacterSet::text, 1, 35,
     "Invalid mandate reference (must be 1-35 characters)", "mandate reference"},
    {"mref", direct_debits, no_traits, Kind::identification, Field::mandate_reference,
     CharacterSet::identifier, 1, 35, "Invalid mandate reference (must be 1-35 characters)",
     "mandate reference"},
    {"mdate", direct_debits, no_traits, Kind::date, Field::mandate_date, any, 10, 10,
     "Invalid mandate signature date (format: yyyy-mm-dd)", ""},
    {"old_mref", direct_debits, no_traits, Kind::text, Field::original_mandate_reference,
     CharacterSet::identifier, 1, 35, "Invalid old mandate reference (must be 1-35 characters)",
     "old mandate reference"},
    {"old_iban", direct_debits, no_traits, Kind::iban, Field::original_iban, any, 0, 0, "", ""},
    {"smnda", direct_debits, no_traits, Kind::smnda, no_field, any, 0, 0, "Invalid value '%s' for SMNDA flag",
     ""},
    {"ref", both, no_traits, Kind::text, Field::remittance, CharacterSet::name, 0, 140,
     "Invalid unstructured remittance information (must be 0-140 characters)",
     "unstructured remittance information"},
    {"purp", direct_debits, extended, Kind::text, Field::purpose, any, 4, 4,
     "Invalid purpose (must be 4 characters)", ""},
    {"purp", credit_transfers, no_traits, Kind::text, Field::purpose, any, 4, 4,
     "Invalid purpose (must be 4 characters)", ""},
    {"instant", credit_transfers, extended, Kind::instant, no_field, any, 0, 0,
     "Invalid value '%s' for instant flag", ""},
    {"time", credit_transfers, extended, Kind::time, Field::execution_time, any, 5, 8,
     "Invalid execution time", ""},
    {"urgent", credit_transfers, extended, Kind::urgent, no_field, any, 0, 0,
     "Invalid value '%s' for urgent flag", ""},
    {"category", both, extended, Kind::category, Field::category_purpose, any, 4, 4,
     "Invalid category purpose", ""},
    {"reference", both, extended, Kind::reference, Field::creditor_reference, any, 0, 0, "", ""},
    {"ultDebtor", both, extended, Kind::text, Field::ultimate_debtor, CharacterSet::name, 1, 70,
     "Invalid ultimate debtor (must be 1-70 characters)", "ultimate debtor"},
    {"ultCreditor", both, extended, Kind::text, Field::ultimate_creditor, CharacterSet::name, 1, 70,
     "Invalid ultimate creditor (must be 1-70 characters)", "ultimate creditor"},
    {"instrId", both, extended, Kind::identification, Field::instruction_id, CharacterSet::text, 1, 35,
     "Invalid instruction ID (must be 1-35 characters)", "instruction ID"},
    {"old_name", direct_debits, extended, Kind::text, Field::original_creditor_name, CharacterSet::name, 1,
     70, "Invalid old creditor name (must be 1-70 characters)", "old creditor name"},
    {"old_ci", direct_debits, extended, Kind::creditor_identifier, Field::original_creditor_identifier, any,
     0, 0, "", ""},
};

// A key in lower case as two numbers.
struct Key {
    std::uint64_t head, tail;

    friend constexpr bool operator==(const Key&, const Key&) = default;
};

constexpr std::size_t longest_key = sizeof Property::key - 1;
constexpr Key no_key{0, 0};

// Turns the capitals among eight characters into lower case.
constexpr std::uint64_t lower_case(std::uint64_t word) {
    const std::uint64_t low = word & repeated(0x7F);
    const std::uint64_t from_a = low + repeated(0x80 - 'A'), beyond_z = low + repeated(0x7F - 'Z');
    const std::uint64_t capitals = from_a & ~beyond_z & ~word & repeated(0x80);
    return word | capitals >> 2; // 0x80 becomes 0x20
}

// no_key for a text that is longer than every key.
constexpr Key make_key(const char* text) {
    Key key = no_key;
    std::size_t length = 0;
    const auto read = [&](std::uint64_t& part, std::size_t limit) {
        for (int shift = 0; length < limit && text[length] != '\0'; ++length, shift += 8)
            part |= static_cast<std::uint64_t>(static_cast<unsigned char>(text[length])) << shift;
        part = lower_case(part);
    };
    read(key.head, sizeof key.head);
    if (length < sizeof key.head) return key;
    read(key.tail, longest_key);
    return text[length] == '\0' ? key : no_key;
}

constexpr std::size_t slot_count = 256;

constexpr std::size_t slot_of(const Key& key, std::uint64_t factor) {
    return ((key.head ^ key.tail << 24) * factor) >> 56;
}

// Every key has a slot of its own, which holds the number of its first row from 1 on.
struct KeyTable {
    std::array<Key, std::size(properties)> keys;
    std::array<std::uint8_t, slot_count> slots;
    std::uint64_t factor;
};

constexpr KeyTable make_key_table() {
    KeyTable table{};
    for (std::size_t i = 0; i < std::size(properties); ++i)
        table.keys[i] = make_key(properties[i].key);
    for (table.factor = 0x9E3779B97F4A7C15;; table.factor = table.factor * 6364136223846793005 + 1) {
        table.slots = {};
        bool distinct = true;
        for (std::size_t i = 0; i < table.keys.size() && distinct; ++i) {
            if (i > 0 && table.keys[i] == table.keys[i - 1]) continue;
            std::uint8_t& slot = table.slots[slot_of(table.keys[i], table.factor)];
            distinct = slot == 0;
            slot = static_cast<std::uint8_t>(i + 1);
        }
        if (distinct) return table;
    }
}

constexpr KeyTable table = make_key_table();

bool applies(const Property& property, std::uint32_t message_type, const Rulebook& rulebook) {
    const auto messages = static_cast<unsigned>(property.messages);
    const auto message =
        static_cast<unsigned>(message_type == SEPA_MSGTYPE_DDI ? direct_debits : credit_transfers);
    return (messages & message) != 0 && property.needs(rulebook);
}

} // namespace

const Property* find_property(const char* key, std::uint32_t message_type, const Rulebook& rulebook) {
    const Key wanted = make_key(key);
    const std::size_t first = table.slots[slot_of(wanted, table.factor)];
    if (first == 0) return nullptr;
    for (std::size_t i = first - 1; i < std::size(properties) && table.keys[i] == wanted; ++i)
        if (applies(properties[i], message_type, rulebook)) return &properties[i];
    return nullptr;
}

const Property* find_property(Field field, std::uint32_t message_type, const Rulebook& rulebook) {
    for (const Property& property : properties)
        if (property.field == field && applies(property, message_type, rulebook)) return &property;
    return nullptr;
}

} // namespace velmora
