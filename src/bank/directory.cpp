#include "bank/directory.h"

#include <cstring>
#include <ctime>

#include "bank/directory_index.h"
#include "base/words.h"

namespace velmora {
namespace {

constexpr RecordRange austrian = records_of("_AT"), swiss = records_of("_CH"), german = records_of("_DE");

constexpr DirectoryCountry countries[] = {
    {"AT", 5, "_AT", austrian},
    {"CH", 5, "_CH", swiss},
    {"DE", 8, "_DE", german},
    {"LI", 5, "_CH", swiss},
};

// Three characters, the first in the lowest byte, and none behind them.
std::uint32_t load_key_end(const char* text) {
    return static_cast<std::uint32_t>(load_word(text) & 0xFF'FFFF);
}

// The record that begins with a key, or null.
const char* find_record(DirectoryKey key) {
    const std::uint64_t hash = hash_of(key);
    const std::size_t slot = slot_of(hash, directory_hash.displacements[bucket_of(hash)]);
    const char* record = directory_text + records_begin.of[directory_hash.records[slot]];
    return DirectoryKey{load_word(record), load_key_end(record + 8)} == key ? record : nullptr;
}

// The version in force of a German record.
BankRecord german_bank(const char* record) {
    if (has_second_version(record) && std::time(nullptr) >= change_date) record += record_size(record);
    const char* sizes = record + key_size;
    const char* header = sizes + text_sizes;
    const char* texts = header + german_header;
    const auto byte = [&](int i) { return static_cast<unsigned char>(header[i]); };
    const std::string_view successor{texts, static_cast<unsigned char>(*sizes)};
    return {.texts = {texts + successor.size(), sizes + 1},
            .is_deleted = (byte(0) & 1) != 0,
            .method = byte(1),
            .iban_rule = static_cast<std::uint16_t>(byte(2) << 8 | byte(3)),
            .successor = successor};
}

BankRecord bank_of(const char* record) {
    if (is_german(record)) return german_bank(record);
    const char* sizes = record + key_size;
    BankRecord bank;
    bank.texts = {sizes + text_sizes, sizes + 1};
    return bank;
}

BicRecord bic_of(const char* record) {
    return {.name = record + key_size + 2,
            .name_size = size_at(record, key_size),
            .flags = static_cast<std::uint8_t>(record[key_size + 1])};
}

} // namespace

const DirectoryCountry* find_directory_country(const char* text) {
    for (const DirectoryCountry& country : countries)
        if (text[0] == country.code[0] && text[1] == country.code[1]) return &country;
    return nullptr;
}

const char* data_date(const DirectoryCountry& country) {
    for (const auto& entry : data_dates)
        if (key_end(entry.key_end) == key_end(country.key_end)) return entry.date;
    return nullptr;
}

std::optional<BankRecord> find_german_bank(std::string_view bank_code) {
    if (bank_code.size() != 8) return {};
    const char* record = find_record({load_word(bank_code.data()), germany});
    if (record == nullptr) return {};
    return german_bank(record);
}

std::optional<BankRecord> find_bank(const DirectoryCountry& country, std::string_view bank_code) {
    if (bank_code.empty() || bank_code.size() > country.bank_code_length) return {};
    DirectoryKey key = {repeated('0'), key_end(country.key_end)};
    for (const char c : bank_code) // from above, which leaves zeros below
        key.first = key.first >> 8 | std::uint64_t{static_cast<unsigned char>(c)} << 56;
    const char* record = find_record(key);
    if (record == nullptr) return {};
    return bank_of(record);
}

std::optional<BicRecord> find_bic(const char* bic) {
    const char* record = find_record({load_word(bic), key_end(bic + 8)});
    if (record == nullptr) return {};
    return bic_of(record);
}

const RecordRange all_records = {0, directory_size};

DirectoryItem record_at(std::uint32_t number) {
    const char* record = directory_text + records_begin.of[number];
    DirectoryItem item = {};
    if (!is_bank(record)) {
        std::memcpy(item.code, record, key_size);
        item.bic = bic_of(record);
        return item;
    }
    const std::size_t length = find_directory_country(record + key_size - 2)->bank_code_length;
    std::memcpy(item.code, record + 8 - length, length);
    item.bank = bank_of(record);
    return item;
}

} // namespace velmora
