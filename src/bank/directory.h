// The bank directory: constant records found by bank code or BIC.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace velmora {

// Numbers of records that stand one behind the other.
struct RecordRange {
    std::uint32_t begin, end;
};

// A country with bank codes in the directory. Liechtenstein's stand among the Swiss ones.
struct DirectoryCountry {
    char code[3];
    std::uint8_t bank_code_length;
    char key_end[4]; // what its keys end with
    RecordRange records;
};

// By the two capital letters that a text begins with; null for another country.
const DirectoryCountry* find_directory_country(const char* text);

// The day from which the country's data hold, yyyy-mm-dd.
const char* data_date(const DirectoryCountry& country);

// The texts of a bank, each ended by a zero byte: name, postal code, town, country and BIC. Empty where the
// directory has none.
struct BankTexts {
    static constexpr int count = 5;

    const char* texts;
    const char* sizes; // of each, with its zero byte

    std::size_t size(int text) const { return static_cast<unsigned char>(sizes[text]); }
    std::string_view bic() const { return {texts + size(0) + size(1) + size(2) + size(3), size(4) - 1}; }
};

struct BankRecord {
    BankTexts texts = {};
    // Germany only
    bool is_deleted = false;     // the bank code is marked for deletion
    std::uint8_t method = 0;     // check-digit method
    std::uint16_t iban_rule = 0; // rule number * 100 + version
    std::string_view successor;  // eight digits, or empty
};

// Finds a bank by its bank code, which may be shorter than the country's are. German banks that announce new
// data give them from the release's change date on.
std::optional<BankRecord> find_bank(const DirectoryCountry& country, std::string_view bank_code);

// The same for Germany. The bank code has eight characters, or there is no such bank.
std::optional<BankRecord> find_german_bank(std::string_view bank_code);

struct BicRecord {
    const char* name;
    std::size_t name_size; // with its zero byte
    std::uint8_t flags;    // SEPA_SCL_ bits
};

// Finds a BIC of eleven characters, which are taken as they stand.
std::optional<BicRecord> find_bic(const char* bic);

// --- The records one by one: the bank codes of all countries, then the BICs ---

constexpr std::size_t longest_code = 11;

extern const RecordRange all_records;

struct DirectoryItem {
    char code[longest_code + 1]; // bank code or BIC
    std::optional<BankRecord> bank;
    std::optional<BicRecord> bic;
};

// The record of a number in all_records.
DirectoryItem record_at(std::uint32_t number);

} // namespace velmora
