#include "message/properties.h"

#include <array>
#include <iterator>

#include "base/words.h"
#include "velmora.h"

namespace velmora {
namespace {

using enum MessageTypes;
using enum Kind;

constexpr Field no_field = Field::count;
constexpr CharacterSet any = CharacterSet::any;
constexpr Traits structured = uses_structured_address;

// Of several rows with one key, which stand together, the first that fits message type and rulebook counts.
// Deliberate: the text for address line 2 speaks of line 1; programs compare it.
constexpr Property properties[] = {
    {"name", direct_debits, no_traits, text, Field::name, CharacterSet::name, 1, 70,
     "Invalid name (must be 1-70 characters)", "debtor name"},
    {"name", credit_transfers, no_traits, text, Field::name, CharacterSet::name, 1, 70,
     "Invalid name (must be 1-70 characters)", "creditor name"},
    {"iban", both, no_traits, iban, Field::iban, any, 0, 0, "", ""},
    {"bic", both, no_traits, bic, Field::bic, any, 0, 0, "", ""},
    {"addrCC", both, no_traits, country, Field::country, any, 2, 2, "Invalid country code", ""},
    {"addrLine1", both, structured, refused, no_field, any, 0, 0,
     "selected SEPA rulebook requires structured address data", ""},
    {"addrLine1", both, no_traits, text, Field::address_line_1, CharacterSet::name, 1, 70,
     "Invalid address line 1 (must be 1-70 chars)", "address line 1"},
    {"addrLine2", both, structured, refused, no_field, any, 0, 0,
     "selected SEPA rulebook requires structured address data", ""},
    {"addrLine2", both, no_traits, text, Field::address_line_2, CharacterSet::name, 1, 70,
     "Invalid address line 1 (must be 1-70 chars)", "address line 2"},
    {"addrDept", both, structured, address, Field::department, any, 1, 70, "", ""},
    {"addrDept", direct_debits, no_traits, refused, no_field, any, 0, 0,
     "selected SEPA rulebook does not support structured address data", ""},
    {"addrSubDept", both, structured, address, Field::sub_department, any, 1, 70, "", ""},
    {"addrStreet", both, structured, address, Field::street, any, 1, 70, "", ""},
    {"addrNum", both, structured, address, Field::building_number, any, 1, 16, "", ""},
    {"addrBldg", both, structured, address, Field::building_name, any, 1, 35, "", ""},
    {"addrFloor", both, structured, address, Field::floor, any, 1, 70, "", ""},
    {"addrPoBox", both, structured, address, Field::post_box, any, 1, 16, "", ""},
    {"addrRoom", both, structured, address, Field::room, any, 1, 70, "", ""},
    {"addrCode", both, structured, address, Field::post_code, any, 1, 16, "", ""},
    {"addrTown", both, structured, address, Field::town, any, 1, 35, "", ""},
    {"addrLoc", both, structured, address, Field::town_location, any, 1, 35, "", ""},
    {"addrDstrct", both, structured, address, Field::district, any, 1, 35, "", ""},
    {"addrCtrySub", both, structured, address, Field::country_subdivision, any, 1, 35, "", ""},
    {"seq", direct_debits, no_traits, sequence, no_field, any, 0, 0, "Invalid/unknown sequence type", ""},
    {"amount", both, no_traits, amount, no_field, any, 0, 0, "", ""},
    {"date", both, no_traits, text, Field::date, any, 10, 10, "Invalid execution date (format: yyyy-mm-dd)",
     ""},
    {"id", both, no_traits, text, Field::end_to_end_id, CharacterSet::text, 1, 35,
     "Invalid end-to-end ID (must be 1-35 characters)", "end-to-end ID"},
    {"mref", direct_debits, permits_spaces_in_mandate_reference, text, Field::mandate_reference,
     CharacterSet::text, 1, 35, "Invalid mandate reference (must be 1-35 characters)", "mandate reference"},
    {"mref", direct_debits, no_traits, text, Field::mandate_reference, CharacterSet::identifier, 1, 35,
     "Invalid mandate reference (must be 1-35 characters)", "mandate reference"},
    {"mdate", direct_debits, no_traits, text, Field::mandate_date, any, 10, 10,
     "Invalid mandate signature date (format: yyyy-mm-dd)", ""},
    {"old_mref", direct_debits, no_traits, text, Field::original_mandate_reference, CharacterSet::identifier,
     1, 35, "Invalid old mandate reference (must be 1-35 characters)", "old mandate reference"},
    {"old_iban", direct_debits, no_traits, iban, Field::original_iban, any, 0, 0, "", ""},
    {"smnda", direct_debits, no_traits, smnda, no_field, any, 0, 0, "", ""},
    {"ref", both, no_traits, text, Field::remittance, CharacterSet::name, 0, 140,
     "Invalid unstructured remittance information (must be 0-140 characters)",
     "unstructured remittance information"},
    {"purp", credit_transfers, no_traits, text, Field::purpose, any, 4, 4,
     "Invalid purpose (must be 4 characters)", ""},
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
    std::uint64_t* part = &key.head;
    int shift = 0;
    for (std::size_t length = 0; *text != '\0'; ++text, shift += 8) {
        if (++length > longest_key) return no_key;
        if (shift == 64) {
            part = &key.tail;
            shift = 0;
        }
        *part |= static_cast<std::uint64_t>(static_cast<unsigned char>(*text)) << shift;
    }
    return {lower_case(key.head), lower_case(key.tail)};
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

consteval KeyTable make_key_table() {
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

} // namespace

const Property* find_property(const char* key, std::uint32_t message_type, const Rulebook& rulebook) {
    const Key wanted = make_key(key);
    const std::size_t first = table.slots[slot_of(wanted, table.factor)];
    if (first == 0) return nullptr;
    const auto message =
        static_cast<std::uint8_t>(message_type == SEPA_MSGTYPE_DDI ? direct_debits : credit_transfers);
    for (std::size_t i = first - 1; i < std::size(properties) && table.keys[i] == wanted; ++i) {
        const Property& property = properties[i];
        if ((static_cast<std::uint8_t>(property.messages) & message) != 0 && property.needs(rulebook))
            return &property;
    }
    return nullptr;
}

} // namespace velmora
