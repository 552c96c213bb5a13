// The bank directory: constant records found by bank code or BIC.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "bank/directory_record.h"

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

// Finds a bank by its bank code, which may be shorter than the country's are. German banks that announce new
// data give them from the release's change date on.
BankRecord find_bank(const DirectoryCountry& country, std::string_view bank_code);

// The same for Germany. The bank code has eight characters, or there is no such bank.
BankRecord find_german_bank(std::string_view bank_code);

// Finds a BIC of eleven characters, which are taken as they stand.
BicRecord find_bic(const char* bic);

// --- The records one by one: the bank codes of all countries, then the BICs ---

extern const RecordRange all_records;

struct DirectoryItem {
    char code[key_size + 1]; // bank code or BIC
    BankRecord bank;
    BicRecord bic;
};

// The record of a number in all_records.
DirectoryItem record_at(std::uint32_t number);

} // namespace velmora
