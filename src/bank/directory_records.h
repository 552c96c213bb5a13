// The directory's records as constants: one text, and a table of what stands where in it.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace velmora {

// Lengths of what stands before a record's texts: its key, and behind it deletion flag, check method and IBAN
// rule of a German bank, or the scheme flags of a BIC.
constexpr std::uint32_t key_prefix_length = 3;
constexpr std::uint32_t bank_key_length = 8;
constexpr std::uint32_t german_key_length = 11;
constexpr std::uint32_t german_header_length = 4;
constexpr std::uint32_t bic_key_length = 11;
constexpr std::uint32_t bic_header_length = 1;

// Where each text of a bank begins, counted from the first one, and where the last one ends. The first text
// of a German bank is its successor.
struct TextPositions {
    std::uint8_t bic;
    std::uint8_t name;
    std::uint8_t postcode;
    std::uint8_t city;
    std::uint8_t country;
    std::uint8_t end;
};

namespace record_rows {

// All records, each between zero bytes. Whatever points into the text is a number, so that nothing has to be
// relocated when the library is loaded.
#define TEXTS(bic, name, postcode, city, country) bic "|" name "|" postcode "|" city "|" country
#define BIC(bic, flags, name) "\0" bic flags name
#define AUSTRIAN(code, bic, name, postcode, city, country)                                                   \
    "\0_AT" code TEXTS(bic, name, postcode, city, country)
#define SWISS(code, bic, name, postcode, city, country) "\0_CH" code TEXTS(bic, name, postcode, city, country)
#define GERMAN(code, header, successor, bic, name, postcode, city)                                           \
    "\0_DE" code header successor "|" TEXTS(bic, name, postcode, city, "DE")
#define CHANGED(header, successor, bic, name, postcode, city)                                                \
    "|" header successor "|" TEXTS(bic, name, postcode, city, "DE")
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Woverlength-strings"
#endif
constexpr char text[] =
#include "data/directory_records.inc"
    ;
#if defined(__clang__)
#pragma clang diagnostic pop
#endif
#undef BIC
#undef AUSTRIAN
#undef SWISS
#undef GERMAN
#undef CHANGED

struct Row {
    std::uint32_t head_length; // what stands before the texts
    TextPositions texts;
    bool is_second_version;
};

// From the texts' sizes, each with the character that ends it.
constexpr TextPositions positions(std::size_t successor, std::size_t bic, std::size_t name,
                                  std::size_t postcode, std::size_t city, std::size_t country) {
    TextPositions at{};
    at.bic = static_cast<std::uint8_t>(successor);
    at.name = static_cast<std::uint8_t>(at.bic + bic);
    at.postcode = static_cast<std::uint8_t>(at.name + name);
    at.city = static_cast<std::uint8_t>(at.postcode + postcode);
    at.country = static_cast<std::uint8_t>(at.city + city);
    at.end = static_cast<std::uint8_t>(at.country + country - 1);
    return at;
}

#define BANK(head, successor, bic, name, postcode, city, country, is_second)                                 \
    {head, positions(successor, sizeof(bic), sizeof(name), sizeof(postcode), sizeof(city), sizeof(country)), \
     is_second},
#define BIC(bic, flags, name)                                                                                \
    {bic_key_length + bic_header_length, positions(0, 0, 0, 0, 0, sizeof(name)), false},
#define AUSTRIAN(code, bic, name, postcode, city, country)                                                   \
    BANK(bank_key_length, 0, bic, name, postcode, city, country, false)
#define SWISS AUSTRIAN
#define GERMAN(code, header, successor, bic, name, postcode, city)                                           \
    BANK(german_key_length + german_header_length, sizeof(successor), bic, name, postcode, city, "DE", false)
#define CHANGED(header, successor, bic, name, postcode, city)                                                \
    BANK(german_header_length, sizeof(successor), bic, name, postcode, city, "DE", true)
constexpr Row rows[] = {
#include "data/directory_records.inc"
};
#undef BANK
#undef BIC
#undef AUSTRIAN
#undef SWISS
#undef GERMAN
#undef CHANGED
#undef TEXTS

constexpr std::size_t count(bool second_versions) {
    std::size_t total = 0;
    for (const Row& row : rows)
        total += row.is_second_version == second_versions;
    return total;
}

} // namespace record_rows

// A record, or the second version inside one.
struct DirectoryRecord {
    std::uint32_t offset;         // in the text; a second version's is where its key would stand
    std::uint16_t second_version; // number from 1, or 0 when there is none
    TextPositions texts;
};

struct DirectoryTables {
    static constexpr std::size_t size = record_rows::count(false);

    std::array<DirectoryRecord, size + 1> records; // and the end of the last one
    std::array<DirectoryRecord, record_rows::count(true) + 1> second_versions;
};

constexpr DirectoryTables directory_tables = [] {
    DirectoryTables tables{};
    std::size_t slot = 0;
    std::uint16_t second_version = 0;
    std::uint32_t offset = 0;
    for (const record_rows::Row& row : record_rows::rows) {
        ++offset; // the zero byte or separator before it
        if (row.is_second_version) {
            tables.records[slot - 1].second_version = ++second_version;
            tables.second_versions[second_version] = {offset - german_key_length, 0, row.texts};
        } else {
            tables.records[slot++] = {offset, 0, row.texts};
        }
        offset += row.head_length + row.texts.end;
    }
    tables.records[slot].offset = offset + 1;
    return tables;
}();
static_assert(directory_tables.records.back().offset == sizeof(record_rows::text));

constexpr std::size_t longest_texts() {
    std::size_t longest = 0;
    for (const record_rows::Row& row : record_rows::rows)
        longest = std::max<std::size_t>(longest, row.texts.end);
    return longest;
}

} // namespace velmora
