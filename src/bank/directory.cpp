#include "bank/directory.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <ctime>
#include <iterator>
#include <span>

namespace velmora {
namespace {

// What a key may consist of, which sizes the hash's tables.
constexpr char kFirstKeyCharacter = '0';
constexpr char kLastKeyCharacter = 'z';
constexpr std::size_t kKeyCharacters = kLastKeyCharacter - kFirstKeyCharacter + 1;
constexpr std::size_t kMinKeyLength = 6;
constexpr std::size_t kMaxKeyLength = 15;

#include "data/directory_hash.inc"
#include "data/directory_release.inc"

// All records in one text, each ended by a zero byte. The positions are numbers, not pointers: nothing has to
// be relocated when the library is loaded.
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Woverlength-strings"
#endif
#define RECORD(content) content "\0"
#define CHANGING(content) content "\0"
constexpr char kText[] =
#include "data/directory_records.inc"
    ;
#undef RECORD
#undef CHANGING
#if defined(__clang__)
#pragma clang diagnostic pop
#endif

struct Position {
    std::uint32_t offset : 31;
    std::uint32_t changing : 1; // a German record with a second version
};

struct RowShape {
    std::uint16_t size;
    bool changing;
};

#define RECORD(content) {sizeof(content), false},
#define CHANGING(content) {sizeof(content), true},
constexpr RowShape kRowShapes[] = {
#include "data/directory_records.inc"
};
#undef RECORD
#undef CHANGING

constexpr int kRecords = std::size(kRowShapes);

// Where each record begins, and where the one after the last would.
constexpr auto kPositions = [] {
    std::array<Position, kRecords + 1> positions{};
    std::uint32_t offset = 0;
    for (std::size_t slot = 0; slot < kRecords; ++slot) {
        positions[slot] = {offset & 0x7FFFFFFF, kRowShapes[slot].changing};
        offset += kRowShapes[slot].size;
    }
    positions[kRecords].offset = offset & 0x7FFFFFFF;
    return positions;
}();
static_assert(kPositions[kRecords].offset + 1 == sizeof(kText));

struct Country {
    char code[3];
    char key_prefix[4]; // Liechtenstein's banks stand among the Swiss ones
    std::uint8_t bank_id_length;
};

constexpr Country kCountries[] = {
    {"AT", "_AT", 5},
    {"CH", "_CH", 5},
    {"DE", "_DE", 8},
    {"LI", "_CH", 5},
};
constexpr std::size_t kPrefixLength = 3;
constexpr std::size_t kMaxBankIdLength = 8;
constexpr std::string_view kGermanPrefix = "_DE";
constexpr std::size_t kGermanKeyLength = 11;
constexpr std::size_t kKeyLength = 8; // of the other countries

// Deletion flag, check method and IBAN rule before the texts of a German version; successor, BIC, name,
// postal code, town and country are the texts.
constexpr std::size_t kHeaderLength = 4;
constexpr int kGermanFields = 6;

const Country* find_country(const char* code) {
    if (code == nullptr) return nullptr;
    for (const Country& country : kCountries)
        if (code[0] == country.code[0] && code[1] == country.code[1] && code[2] == '\0') return &country;
    return nullptr;
}

// Slot of the record that begins with a key, or -1.
int find_slot(std::string_view key) {
    const int slot = directory_hash(key);
    if (slot < 0) return -1;
    const char* record = kText + kPositions[static_cast<std::size_t>(slot)].offset;
    return std::memcmp(record, key.data(), key.size()) == 0 ? slot : -1;
}

// Slot of the bank behind a bank code, or -1.
int find_bank(const char* country_code, const char* bank_id) {
    const Country* country = find_country(country_code);
    if (country == nullptr || bank_id == nullptr) return -1;
    const std::size_t width = country->bank_id_length;
    const std::size_t length = ::strnlen(bank_id, width + 1);
    if (length == 0 || length > width) return -1;

    char key[kPrefixLength + kMaxBankIdLength];
    std::memcpy(key, country->key_prefix, kPrefixLength);
    std::memset(key + kPrefixLength, '0', kMaxBankIdLength);
    std::memcpy(key + kPrefixLength + width - length, bank_id, length);
    return find_slot({key, kPrefixLength + width});
}

// Header and texts of the version in force of the German record at a slot.
std::string_view version_in_force(int slot) {
    std::string_view version = directory_record(slot);
    version.remove_prefix(kGermanKeyLength);
    if (!kPositions[static_cast<std::size_t>(slot)].changing) return version;
    std::size_t separator = kHeaderLength - 1;
    for (int field = 0; field < kGermanFields; ++field)
        separator = version.find('|', separator + 1);
    if (std::time(nullptr) >= kChangeDate)
        version.remove_prefix(separator + 1);
    else
        version.remove_suffix(version.size() - separator);
    return version;
}

// Copies texts into the entry and points the fields at them, as far as there are texts.
void copy_texts(std::string_view texts, std::span<const char * DirectoryEntry::*const> fields,
                DirectoryEntry* out) {
    const std::size_t size = std::min(texts.size(), sizeof(out->text) - 1);
    std::memcpy(out->text, texts.data(), size);
    char* text = out->text;
    char* const end = text + size;
    for (const auto field : fields) {
        out->*field = text;
        text = static_cast<char*>(std::memchr(text, '|', static_cast<std::size_t>(end - text)));
        if (text == nullptr) return;
        *text++ = '\0';
    }
}

} // namespace

int directory_hash(std::string_view key) {
    if (key.size() < kMinKeyLength || key.size() > kMaxKeyLength) return -1;
    std::uint32_t sums[3] = {};
    const auto* rows = kTabulation;
    for (const char c : key) {
        if (c < kFirstKeyCharacter || c > kLastKeyCharacter) return -1;
        const auto& row = rows[c - kFirstKeyCharacter];
        for (int i = 0; i < 3; ++i)
            sums[i] += row[i];
        rows += kKeyCharacters;
    }
    std::uint32_t value = 0;
    for (const std::uint32_t sum : sums)
        value += kVertexValues[sum % kVertices];
    // A key without a record can meet vertices that none uses, and a sum below zero then.
    return static_cast<std::int32_t>(value) % kRecords;
}

std::string_view directory_record(int slot) {
    if (slot < 0 || slot >= kRecords) return {};
    const auto at = static_cast<std::size_t>(slot);
    const std::uint32_t begin = kPositions[at].offset;
    return {kText + begin, kPositions[at + 1].offset - begin - 1};
}

int directory_size() {
    return kRecords;
}

std::string_view directory_find(std::string_view key) {
    return directory_record(find_slot(key));
}

bool directory_covers(const char* country) {
    return find_country(country) != nullptr;
}

int directory_lookup(const char* country, const char* bank_id, DirectoryEntry* out) {
    static constexpr const char* DirectoryEntry::*kFields[] = {
        &DirectoryEntry::successor, &DirectoryEntry::bic,  &DirectoryEntry::name,
        &DirectoryEntry::postcode,  &DirectoryEntry::city, &DirectoryEntry::country};
    const int slot = find_bank(country, bank_id);
    if (slot < 0) return 0;
    *out = DirectoryEntry{};
    std::span<const char * DirectoryEntry::*const> fields(kFields);
    std::string_view texts = directory_record(slot);
    if (texts.starts_with(kGermanPrefix)) {
        texts = version_in_force(slot);
        const auto header = [&](std::size_t i) { return static_cast<std::uint8_t>(texts[i]); };
        out->deleted = header(0);
        out->method = header(1);
        out->iban_rule = header(2) * 256U + header(3);
        texts.remove_prefix(kHeaderLength);
    } else {
        texts.remove_prefix(kKeyLength);
        fields = fields.subspan(1);
    }
    copy_texts(texts, fields, out);
    return 1;
}

bool directory_contains(const char* country, const char* bank_id) {
    return find_bank(country, bank_id) >= 0;
}

int directory_check_method(std::string_view bank_code) {
    char key[kGermanKeyLength];
    if (bank_code.size() != sizeof(key) - kPrefixLength) return -1;
    std::memcpy(key, kGermanPrefix.data(), kPrefixLength);
    std::memcpy(key + kPrefixLength, bank_code.data(), bank_code.size());
    const int slot = find_slot({key, sizeof(key)});
    return slot < 0 ? -1 : static_cast<std::uint8_t>(version_in_force(slot)[1]);
}

} // namespace velmora
