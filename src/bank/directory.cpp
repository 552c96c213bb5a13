#include "bank/directory.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <ctime>

#include "bank/directory_records.h"

namespace velmora {
namespace {

// What a key may consist of, which sizes the hash's tables.
constexpr char first_key_character = '0';
constexpr char last_key_character = 'z';
constexpr std::size_t key_characters = last_key_character - first_key_character + 1;
constexpr std::size_t min_key_length = 6;
constexpr std::size_t max_key_length = 15;
// Three for each character and position; the fourth is zero and lets all be added as one vector.
constexpr std::size_t numbers_a_character = 4;

#include "data/directory_hash.inc"
#include "data/directory_release.inc"

struct Country {
    char code[3];
    char key_prefix[4]; // Liechtenstein's banks stand among the Swiss ones
    std::uint8_t bank_id_length;
};

constexpr Country countries[] = {
    {"AT", "_AT", 5},
    {"CH", "_CH", 5},
    {"DE", "_DE", 8},
    {"LI", "_CH", 5},
};

const Country* find_country(const char* code) {
    if (code == nullptr) return nullptr;
    for (const Country& country : countries)
        if (code[0] == country.code[0] && code[1] == country.code[1] && code[2] == '\0') return &country;
    return nullptr;
}

const char* start_of(const DirectoryRecord& record) {
    return record_rows::text + record.offset;
}

// The record that begins with a key, or null.
const DirectoryRecord* find_record(std::string_view key) {
    const int slot = directory_hash(key);
    if (slot < 0) return nullptr;
    const DirectoryRecord& record = directory_tables.records[static_cast<std::size_t>(slot)];
    return std::memcmp(start_of(record), key.data(), key.size()) == 0 ? &record : nullptr;
}

// What a bank code leads to.
struct Bank {
    const char* header; // German banks: deletion flag, check method, IBAN rule (two bytes); otherwise null
    const char* texts;
    const TextPositions* at;
};

// The version in force of a German record.
Bank german_bank(const DirectoryRecord* record) {
    if (record->second_version != 0 && std::time(nullptr) >= change_date)
        record = &directory_tables.second_versions[record->second_version];
    const char* header = start_of(*record) + german_key_length;
    return {header, header + german_header_length, &record->texts};
}

bool find_bank(const char* country_code, const char* bank_id, Bank* bank) {
    const Country* country = find_country(country_code);
    if (country == nullptr || bank_id == nullptr) return false;
    const std::size_t width = country->bank_id_length;
    const std::size_t length = ::strnlen(bank_id, width + 1);
    if (length == 0 || length > width) return false;

    char key[german_key_length];
    std::memcpy(key, country->key_prefix, key_prefix_length);
    std::memset(key + key_prefix_length, '0', sizeof(key) - key_prefix_length);
    std::memcpy(key + key_prefix_length + width - length, bank_id, length);
    const std::size_t key_length = key_prefix_length + width;
    const DirectoryRecord* record = find_record({key, key_length});
    if (record == nullptr) return false;
    *bank = key_length == german_key_length
                ? german_bank(record)
                : Bank{nullptr, start_of(*record) + bank_key_length, &record->texts};
    return true;
}

} // namespace

int directory_hash(std::string_view key) {
    if (key.size() < min_key_length || key.size() > max_key_length) return -1;
    typedef std::uint32_t Numbers [[gnu::vector_size(numbers_a_character * sizeof(std::uint32_t))]];
    Numbers sums = {};
    const auto* table = tabulation;
    for (const char c : key) {
        const auto row = static_cast<std::size_t>(static_cast<unsigned char>(c) - first_key_character);
        if (row >= key_characters) return -1;
        Numbers numbers;
        std::memcpy(&numbers, table[row], sizeof(numbers));
        sums += numbers;
        table += key_characters;
    }
    std::uint32_t value = 0;
    for (int i = 0; i < 3; ++i)
        value += vertex_values[sums[i] % vertex_count];
    // A key without a record can meet vertices that no record uses, and a sum below zero then.
    return static_cast<std::int32_t>(value) % directory_size();
}

std::string_view directory_record(int slot) {
    if (slot < 0 || slot >= directory_size()) return {};
    const DirectoryRecord* record = &directory_tables.records[static_cast<std::size_t>(slot)];
    return {start_of(*record), record[1].offset - record->offset - 1};
}

int directory_size() {
    return static_cast<int>(DirectoryTables::size);
}

std::string_view directory_find(std::string_view key) {
    const DirectoryRecord* record = find_record(key);
    if (record == nullptr) return {};
    return directory_record(static_cast<int>(record - directory_tables.records.data()));
}

bool directory_covers(const char* country) {
    return find_country(country) != nullptr;
}

static_assert(longest_texts() < sizeof(DirectoryEntry::text));

int directory_lookup(const char* country, const char* bank_id, DirectoryEntry* out) {
    Bank bank;
    if (!find_bank(country, bank_id, &bank)) return 0;
    const TextPositions at = *bank.at;
    std::copy_n(bank.texts, at.end, out->text);
    for (const std::uint8_t begin : {at.name, at.postcode, at.city, at.country})
        out->text[begin - 1] = '\0';
    out->text[at.end] = '\0';
    out->bic = out->text + at.bic;
    out->name = out->text + at.name;
    out->postcode = out->text + at.postcode;
    out->city = out->text + at.city;
    out->country = out->text + at.country;
    out->successor = nullptr;
    out->deleted = out->method = 0;
    out->iban_rule = 0;
    if (bank.header != nullptr) {
        const auto header = [&](std::size_t i) { return static_cast<std::uint8_t>(bank.header[i]); };
        out->deleted = header(0);
        out->method = header(1);
        out->iban_rule = header(2) * 256U + header(3);
        out->text[at.bic - 1] = '\0';
        out->successor = out->text;
    }
    return 1;
}

bool directory_find_bank(const char* country, const char* bank_id, DirectoryTexts* out) {
    Bank bank;
    if (!find_bank(country, bank_id, &bank)) return false;
    if (out == nullptr) return true;
    const TextPositions at = *bank.at;
    const auto text = [&](std::size_t begin, std::size_t end) {
        return std::string_view(bank.texts + begin, end - begin);
    };
    *out = {text(at.bic, at.name - 1U), text(at.name, at.postcode - 1U), text(at.postcode, at.city - 1U),
            text(at.city, at.country - 1U), text(at.country, at.end)};
    return true;
}

bool directory_find_german_bank(std::string_view bank_code, GermanBank* out) {
    char key[german_key_length] = {'_', 'D', 'E'};
    if (bank_code.size() != sizeof(key) - key_prefix_length) return false;
    std::memcpy(key + key_prefix_length, bank_code.data(), sizeof(key) - key_prefix_length);
    const DirectoryRecord* record = find_record({key, sizeof(key)});
    if (record == nullptr) return false;
    const Bank bank = german_bank(record);
    const auto header = [&](std::size_t i) { return static_cast<std::uint8_t>(bank.header[i]); };
    *out = {header(0), header(1), header(2) * 256U + header(3), {bank.texts, bank.at->bic - std::size_t{1}}};
    return true;
}

} // namespace velmora
