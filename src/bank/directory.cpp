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
    return DirectoryKey{load_word(record), load_key_end(record + country_in_key)} == key ? record : nullptr;
}

BankRecord version_in_force(BankRecord bank) {
    const bool is_changed = bank && bank.has_second_version() && std::time(nullptr) >= change_date;
    return is_changed ? bank.next_version() : bank;
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

BankRecord find_german_bank(std::string_view bank_code) {
    if (bank_code.size() != 8) return {};
    return version_in_force(BankRecord(find_record({load_word(bank_code.data()), germany})));
}

BankRecord find_bank(const DirectoryCountry& country, std::string_view bank_code) {
    if (bank_code.empty() || bank_code.size() > country.bank_code_length) return {};
    return version_in_force(
        BankRecord(find_record({load_right_aligned(bank_code, '0'), key_end(country.key_end)})));
}

BicRecord find_bic(const char* bic) {
    return BicRecord(find_record({load_word(bic), key_end(bic + country_in_key)}));
}

const RecordRange all_records = {0, directory_size};

DirectoryItem record_at(std::uint32_t number) {
    const char* record = directory_text + records_begin.of[number];
    DirectoryItem item = {};
    if (is_bank(record)) {
        const std::size_t length = find_directory_country(record + country_in_key + 1)->bank_code_length;
        std::memcpy(item.code, record + country_in_key - length, length);
        item.bank = version_in_force(BankRecord(record));
    } else {
        std::memcpy(item.code, record, key_size);
        item.bic = BicRecord(record);
    }
    return item;
}

} // namespace velmora
