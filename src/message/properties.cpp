#include "message/properties.h"

#include <strings.h>

#include <cctype>
#include <cerrno>
#include <cmath>

#include "bank/bic.h"
#include "bank/iban_check.h"
#include "bank/regex.h"
#include "base/amount.h"
#include "base/ascii.h"
#include "message/characters.h"
#include "message/rulebook.h"

namespace velmora {
namespace {

enum class Kind : std::uint8_t {
    text,
    address_line,
    mandate_reference,
    country,
    iban,
    bic,
    sequence,
    amount,
    smnda,
    address_refused
};

constexpr std::uint8_t ddi = 1, cti = 2, both = ddi | cti;

// The last three columns: limits in bytes, the text when they are not kept, and what the value is called in
// the text about a forbidden character.
struct Property {
    char key[11];
    std::uint8_t messages;
    Kind kind;
    Field field;
    CharacterSet characters;
    std::uint8_t shortest, longest;
    char length_text[72];
    char value_name[36];
};

constexpr Field no_field = Field::count;

// Deliberate: the length text of address line 2 speaks of line 1 (callers match on it).
constexpr Property properties[] = {
    {"name", ddi, Kind::text, Field::name, CharacterSet::name, 1, 70,
     "Invalid name (must be 1-70 characters)", "debtor name"},
    {"name", cti, Kind::text, Field::name, CharacterSet::name, 1, 70,
     "Invalid name (must be 1-70 characters)", "creditor name"},
    {"iban", both, Kind::iban, Field::iban, CharacterSet::any, 0, 0, "", ""},
    {"bic", both, Kind::bic, Field::bic, CharacterSet::any, 0, 0, "", ""},
    {"addrCC", both, Kind::country, Field::country, CharacterSet::any, 2, 2, "Invalid country code", ""},
    {"addrLine1", both, Kind::address_line, Field::address_line_1, CharacterSet::name, 1, 70,
     "Invalid address line 1 (must be 1-70 chars)", "address line 1"},
    {"addrLine2", both, Kind::address_line, Field::address_line_2, CharacterSet::name, 1, 70,
     "Invalid address line 1 (must be 1-70 chars)", "address line 2"},
    {"addrDept", ddi, Kind::address_refused, no_field, CharacterSet::any, 0, 0, "", ""},
    {"seq", ddi, Kind::sequence, no_field, CharacterSet::any, 0, 0, "", ""},
    {"amount", both, Kind::amount, no_field, CharacterSet::any, 0, 0, "", ""},
    {"date", both, Kind::text, Field::date, CharacterSet::any, 10, 10,
     "Invalid execution date (format: yyyy-mm-dd)", ""},
    {"id", both, Kind::text, Field::end_to_end_id, CharacterSet::text, 1, 35,
     "Invalid end-to-end ID (must be 1-35 characters)", "end-to-end ID"},
    {"mref", ddi, Kind::mandate_reference, Field::mandate_reference, CharacterSet::identifier, 1, 35,
     "Invalid mandate reference (must be 1-35 characters)", "mandate reference"},
    {"mdate", ddi, Kind::text, Field::mandate_date, CharacterSet::any, 10, 10,
     "Invalid mandate signature date (format: yyyy-mm-dd)", ""},
    {"old_mref", ddi, Kind::text, Field::original_mandate_reference, CharacterSet::identifier, 1, 35,
     "Invalid old mandate reference (must be 1-35 characters)", "old mandate reference"},
    {"old_iban", ddi, Kind::iban, Field::original_iban, CharacterSet::any, 0, 0, "", ""},
    {"smnda", ddi, Kind::smnda, no_field, CharacterSet::any, 0, 0, "", ""},
    {"ref", both, Kind::text, Field::remittance, CharacterSet::name, 0, 140,
     "Invalid unstructured remittance information (must be 0-140 characters)",
     "unstructured remittance information"},
    {"purp", cti, Kind::text, Field::purpose, CharacterSet::any, 4, 4,
     "Invalid purpose (must be 4 characters)", ""},
};

struct AddressProperty {
    char key[12];
    std::uint8_t longest; // in bytes; one is the least
};

// In the order of the fields from first_structured_field on.
constexpr AddressProperty structured_address_properties[structured_field_count] = {
    {"addrDept", 70},  {"addrSubDept", 70}, {"addrStreet", 70},  {"addrNum", 16},  {"addrBldg", 35},
    {"addrFloor", 70}, {"addrPoBox", 16},   {"addrRoom", 70},    {"addrCode", 16}, {"addrTown", 35},
    {"addrLoc", 35},   {"addrDstrct", 35},  {"addrCtrySub", 35},
};

const Property* find_property(const char* key, std::uint32_t message_type) {
    const std::uint8_t message = message_type == SEPA_MSGTYPE_DDI ? ddi : cti;
    const int first = std::tolower(static_cast<unsigned char>(*key));
    for (const Property& property : properties)
        if (property.key[0] == first && (property.messages & message) != 0 &&
            strcasecmp(property.key, key) == 0)
            return &property;
    return nullptr;
}

bool refuse(sepa_t* message, const char* text) {
    fail(message, text);
    return false;
}

bool store(sepa_t* message, OwnedText& slot, std::string_view text) {
    return slot.assign(text) || refuse(message, "Out of memory");
}

bool set_text(sepa_t* message, Transaction& transaction, const Property& property, const char* value) {
    if (value == nullptr) return refuse(message, property.length_text);
    const std::string_view text(value, strnlen(value, property.longest + std::size_t{1}));
    if (text.size() < property.shortest || text.size() > property.longest)
        return refuse(message, property.length_text);
    CharacterSet set = property.characters;
    if (property.kind == Kind::mandate_reference && permits_spaces_in_mandate_reference(*selected_rulebook()))
        set = CharacterSet::text;
    if (const char* c = find_forbidden_character(text, set, *selected_rulebook())) {
        fail_with(message, "Invalid character '%c' in %s", *c, property.value_name);
        return false;
    }
    return store(message, transaction[property.field], text);
}

bool set_country(sepa_t* message, Transaction& transaction, const Property& property, const char* value) {
    const auto is_capital = [](char c) { return c >= 'A' && c <= 'Z'; };
    if (value == nullptr || !is_capital(value[0]) || !is_capital(value[1]) || value[2] != '\0')
        return refuse(message, property.length_text);
    return store(message, transaction[property.field], value);
}

bool set_iban(sepa_t* message, Transaction& transaction, const Property& property, const char* value) {
    const char* reason = nullptr;
    if (iban_validate(value, &reason) != 1) return refuse(message, reason);
    return store(message, transaction[property.field], value);
}

bool set_bic(sepa_t* message, Transaction& transaction, const Property& property, const char* value) {
    char buffer[bic_length + 1];
    const char* upper = upper_case_bic(value, buffer);
    if (upper == nullptr) return refuse(message, "Invalid BIC");
    if (!is_bic(upper)) return refuse(message, "Invalid BIC format");
    return store(message, transaction[property.field], upper);
}

bool set_sequence_type(sepa_t* message, Transaction& transaction, const char* value) {
    for (std::size_t i = 0; value != nullptr && i < sequence_type_count; ++i) {
        if (strcasecmp(value, sequence_type_names[i]) != 0) continue;
        transaction.sequence_type = static_cast<std::uint32_t>(frst + i);
        return true;
    }
    return refuse(message, "Invalid/unknown sequence type");
}

// From here on cents do not fit into 64 bits and a document would show another amount.
constexpr double too_large = 92233720368547758.0;

bool set_amount(sepa_t* message, Transaction& transaction, const char* value) {
    if (value == nullptr) return refuse(message, "Invalid amount");
    char* end = nullptr;
    errno = 0;
    const double amount = __sepa_strtod(value, &end);
    const bool out_of_range = errno == ERANGE;
    if (*end != '\0') return refuse(message, "Invalid amount");
    if (amount == 0) return refuse(message, out_of_range ? "Invalid amount" : "Empty amount not allowed");
    if (out_of_range && std::isinf(amount)) return refuse(message, "Invalid amount");
    if (amount < 0) return refuse(message, "Negative or zero amount not allowed");
    if (amount >= too_large) return refuse(message, "Invalid amount");
    transaction.amount = round_to_cents(amount);
    return true;
}

bool set_smnda(sepa_t* message, Transaction& transaction, const char* value) {
    if (value == nullptr || std::strcmp(value, "1") != 0) {
        fail_with(message, "Invalid value '%s' for SMNDA flag", value == nullptr ? "(null)" : value);
        return false;
    }
    transaction.same_mandate_new_agent = 1;
    return true;
}

// True when the key is one of the structured address; `accepted` then tells how its value was taken.
bool set_structured_address(sepa_t* message, Transaction& transaction, const char* key, const char* value,
                            bool& accepted) {
    OwnedText* slot = &transaction[first_structured_field];
    for (const AddressProperty& property : structured_address_properties) {
        if (!equals_ignoring_case(key, property.key)) {
            ++slot;
            continue;
        }
        bind_libc_regex();
        const std::size_t length = value == nullptr ? 0 : strnlen(value, property.longest + std::size_t{1});
        if (length == 0 || length > property.longest)
            fail_with(message, "Invalid format for '%s'", key);
        else if (!slot->assign({value, length}))
            fail(message, "Out of memory");
        // Deliberate: any error text counts, also one that an earlier call left behind.
        accepted = message->last_error == nullptr;
        return true;
    }
    return false;
}

} // namespace

bool set_property(sepa_t* message, Transaction& transaction, const char* key, const char* value) {
    bool accepted = false;
    if (uses_structured_address(*selected_rulebook()) &&
        set_structured_address(message, transaction, key, value, accepted))
        return accepted;

    const Property* property = find_property(key, message->type);
    if (property == nullptr) {
        // Deliberate: credit transfers ignore what they do not know, direct debits refuse it.
        if (message->type == SEPA_MSGTYPE_CTI) return true;
        fail_with(message, "Invalid transaction property '%s'", key);
        return false;
    }
    switch (property->kind) {
    case Kind::address_line:
        if (uses_structured_address(*selected_rulebook()))
            return refuse(message, "selected SEPA rulebook requires structured address data");
        return set_text(message, transaction, *property, value);
    case Kind::text:
    case Kind::mandate_reference:
        return set_text(message, transaction, *property, value);
    case Kind::country:
        return set_country(message, transaction, *property, value);
    case Kind::iban:
        return set_iban(message, transaction, *property, value);
    case Kind::bic:
        return set_bic(message, transaction, *property, value);
    case Kind::sequence:
        return set_sequence_type(message, transaction, value);
    case Kind::amount:
        return set_amount(message, transaction, value);
    case Kind::smnda:
        return set_smnda(message, transaction, value);
    case Kind::address_refused:
        return refuse(message, "selected SEPA rulebook does not support structured address data");
    }
    return false;
}

} // namespace velmora
