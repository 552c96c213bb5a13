// The bank directory: constant records found through a minimal perfect hash.
#pragma once

#include <cstdint>
#include <string_view>

namespace velmora {

// What the directory says of one national bank code. The texts point into `text`; a text is null when the
// record ends before it.
struct DirectoryEntry {
    const char* bic;
    const char* name;
    const char* postcode;
    const char* city;
    const char* country;
    std::uint8_t deleted;    // 1: the bank code is marked for deletion (Germany)
    const char* successor;   // eight digits or empty (Germany); null for other countries
    std::uint8_t method;     // check-digit method code (Germany)
    std::uint32_t iban_rule; // rule number * 100 + version (Germany)
    char text[192];          // the selected version, cut into its fields
};

// The texts of a record where they stand in the directory, not ended by zero bytes.
struct DirectoryTexts {
    std::string_view bic;
    std::string_view name;
    std::string_view postcode;
    std::string_view city;
    std::string_view country;
};

// Slot that a key would have; -1 for what cannot be a key, because it is not 6 to 15 characters of "0" to
// "z". Other strangers get any slot or a number below 0.
int directory_hash(std::string_view key);

// Record at a slot: key, header bytes and texts up to the record's end. Empty for a slot outside the table.
std::string_view directory_record(int slot);

int directory_size();

// The record that begins with a key; empty when there is none.
std::string_view directory_find(std::string_view key);

// Whether the directory has bank codes of a country: "AT", "CH", "DE" and "LI".
bool directory_covers(const char* country);

// Finds the bank behind a bank code ("AT", "CH", "DE", "LI"); 1 found, 0 not. German records that announce
// new data give them from the release's change date on.
int directory_lookup(const char* country, const char* bank_id, DirectoryEntry* out);

// Finds the same bank without copying its texts, which `out` (it may be null) is pointed at.
bool directory_find_bank(const char* country, const char* bank_id, DirectoryTexts* out);

// What account checks and IBAN construction need of a German bank; the text stands in the directory.
struct GermanBank {
    std::uint8_t deleted;
    std::uint8_t method;
    std::uint32_t iban_rule;
    std::string_view successor;
};

// Finds a German bank by a bank code of eight characters.
bool directory_find_german_bank(std::string_view bank_code, GermanBank* out);

} // namespace velmora
