// The bank directory against its own data files, which are included here once more.
#include "bank/directory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <iterator>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <tuple>
#include <utility>

#include "command.h"
#include "set_clock.h"
#include "velmora.h"

using namespace velmora;

namespace {

// A literal, which may have zero bytes in it.
struct Text : std::string_view {
    constexpr Text() = default;
    template <std::size_t size>
    constexpr Text(const char (&literal)[size]) : std::string_view(literal, size - 1) {}
};

struct Row {
    Text key_prefix;
    Text parts[7];
};

constexpr Text changed = "CHANGED"; // in place of the key prefix

#define BIC(...) {"", {__VA_ARGS__}},
#define AUSTRIAN(...) {"_AT", {__VA_ARGS__}},
#define SWISS(...) {"_CH", {__VA_ARGS__}},
#define GERMAN(...) {"_DE", {__VA_ARGS__}},
#define CHANGED(...) {changed, {__VA_ARGS__}},
constexpr Row rows[] = {
#include "../data/directory_records.inc"
};
#include "../data/directory_release.inc"

std::string key_of(const Row& row) {
    return std::string(row.key_prefix).append(row.parts[0]);
}

std::string join(std::initializer_list<const char*> fields) {
    std::string text;
    for (const char* field : fields)
        text += std::string(field == nullptr ? "(null)" : field) + "|";
    return text;
}

// Result, name, postal code, town, country, BIC and flags as one text.
std::string describe(int result, sepa_bank_t* bank) {
    const std::unique_ptr<sepa_bank_t, decltype(&std::free)> owner(bank, &std::free);
    if (bank == nullptr) return std::to_string(result);
    return std::to_string(result) + "|" +
           join({bank->name, bank->postcode, bank->city, bank->country, bank->bic}) +
           std::to_string(bank->flags);
}

std::string bank_of(const char* country, const char* bank_id) {
    sepa_bank_t* bank = nullptr;
    const int result = sepa_bankid_check(country, bank_id, &bank);
    EXPECT_EQ(sepa_bankid_check(country, bank_id, nullptr), result);
    return describe(result, bank);
}

std::string bank_of_bic(const char* bic) {
    sepa_bank_t* bank = nullptr;
    const int result = sepa_bic_getBank(bic, &bank);
    EXPECT_EQ(sepa_bic_getBank(bic, nullptr), result);
    return describe(result, bank);
}

// By all three look-ups; the texts are BIC, name, postal code and town.
void expect_bank(const std::string& country, const char* code, const Text* texts, const char* bank_country,
                 Text header = "\0\0\0\0", const char* successor = nullptr) {
    const std::string bank =
        join({texts[1].data(), texts[2].data(), texts[3].data(), bank_country, texts[0].data()});
    EXPECT_EQ(bank_of(country.c_str(), code), "1|" + bank + "0");
    const auto number = [&](std::size_t at) { return static_cast<unsigned char>(header[at]); };
    const std::tuple numbers(number(0), number(1), number(2) * 256U + number(3));
    DirectoryEntry entry;
    ASSERT_EQ(directory_lookup(country.c_str(), code, &entry), 1);
    EXPECT_EQ(join({entry.name, entry.postcode, entry.city, entry.country, entry.bic}), bank);
    EXPECT_EQ(std::tie(entry.deleted, entry.method, entry.iban_rule), numbers);
    EXPECT_STREQ(entry.successor, successor);
    if (country != "DE") return;
    GermanBank german;
    ASSERT_TRUE(directory_find_german_bank(code, &german));
    EXPECT_EQ(std::tie(german.deleted, german.method, german.iban_rule), numbers);
    EXPECT_EQ(german.successor, successor);
}

// Every key has a slot of its own, in ascending order, and leads to what its row says.
TEST(Directory, EveryRowOfTheData) {
    const bool change_is_due = std::time(nullptr) >= change_date;
    int slot = 0;
    std::string last;
    for (const Row* row = rows; row != std::end(rows); ++row) {
        if (row->key_prefix == changed) continue;
        const std::string key = key_of(*row);
        SCOPED_TRACE(key);
        EXPECT_LT(std::exchange(last, key), key);
        EXPECT_EQ(directory_hash(key), slot);
        EXPECT_EQ(directory_find(key), directory_record(slot++));
        EXPECT_TRUE(directory_find(key).starts_with(key));

        const Text* const p = row->parts;
        if (row->key_prefix.empty()) {
            const int flags = p[1][0];
            const char* name = flags == 0 ? "" : p[2].data(); // a flags byte of 0 ends the record's text
            const std::string bank = join({name, nullptr, nullptr, key.substr(4, 2).c_str(), key.c_str()});
            EXPECT_EQ(bank_of_bic(key.c_str()), "1|" + bank + std::to_string(flags));
        } else if (row->key_prefix == "_DE") {
            const bool second = change_is_due && row + 1 != std::end(rows) && row[1].key_prefix == changed;
            const Text* version = second ? row[1].parts : p + 1;
            expect_bank("DE", p[0].data(), version + 2, "DE", version[0], version[1].data());
        } else {
            expect_bank(key.substr(1, 2), p[0].data(), p + 1, p[5].data());
            if (row->key_prefix == "_CH") expect_bank("LI", p[0].data(), p + 1, p[5].data());
        }
    }
    EXPECT_EQ(directory_size(), slot);
    EXPECT_EQ(directory_record(-1), "");
    EXPECT_EQ(directory_record(slot), "");
}

TEST(Directory, RandomKeysAreRefused) {
    std::set<std::string> keys;
    for (const Row& row : rows)
        keys.insert(key_of(row));
    std::mt19937 random(20260608);
    const auto text = [&](std::string_view characters, std::size_t length) {
        std::string result;
        while (result.size() < length)
            result += characters[random() % characters.size()];
        return result;
    };
    for (int i = 0; i < 100'000; ++i) {
        const std::string german = text("0123456789", 8), austrian = german.substr(3);
        const std::string bic = text("ABCDEFGHIJKLMNOPQRSTUVWXYZ", 6) + text("2345678", 1) + "AXXX";
        for (const std::string& key :
             {"_DE" + german, "_AT" + austrian, bic, text("0:@AZ_`az", 6 + random() % 10)}) {
            ASSERT_LT(directory_hash(key), directory_size()) << key;
            ASSERT_EQ(directory_find(key).empty(), !keys.contains(key)) << key;
        }
        GermanBank bank;
        ASSERT_EQ(directory_find_german_bank(german, &bank), keys.contains("_DE" + german)) << german;
        const auto expected = [&](const std::string& key) { return keys.contains(key) ? 1 : -2; };
        ASSERT_EQ(sepa_bankid_check("DE", german.c_str(), nullptr), expected("_DE" + german));
        ASSERT_EQ(sepa_bankid_check("AT", austrian.c_str(), nullptr), expected("_AT" + austrian));
        ASSERT_EQ(sepa_bic_getBank(bic.c_str(), nullptr), expected(bic)) << bic;
    }

    // Keys that no bank code and no BIC can form, at the edges of length and character range.
    for (std::size_t length = 0; length < 20; ++length)
        EXPECT_EQ(directory_hash(std::string(length, 'A')) == -1, length < 6 || length > 15) << length;
    for (int c = 0; c < 256; ++c)
        EXPECT_EQ(directory_hash("_DE1234" + std::string(1, static_cast<char>(c))) == -1, c < '0' || c > 'z')
            << c;
}

TEST(Directory, ArgumentsOfTheLookUps) {
    const char* const none = nullptr;
    EXPECT_EQ(bank_of("CH", "100"), bank_of("CH", "00100"));
    // A shorter bank code is filled with zeros; that is not how its source prints Austria's shortest two.
    for (const char* bank_id : {"100", "1000"})
        EXPECT_EQ(bank_of("AT", bank_id), "-2");
    EXPECT_EQ(bank_of("CH", "000100"), "-2");
    for (const char* bank_id :
         {"3704004", "370400440", "037040044", "3704004\xDF", "3704 044", "37040044 ", "", none})
        EXPECT_EQ(bank_of("DE", bank_id), "-2") << (bank_id ? bank_id : "(null)");
    for (const char* country : {"de", "FR", "DEU", "D", "", none})
        for (const char* bank_id : {"37040044", none})
            EXPECT_EQ(bank_of(country, bank_id), "0") << (country ? country : "(null)");

    for (const char* bic : {"COBADEFFXXX", "cobadeff", "CoBaDeFfxXx"})
        EXPECT_EQ(bank_of_bic(bic), "1|COMMERZBANK AG|(null)|(null)|DE|COBADEFFXXX|11");
    for (const char* bic : {"COBADEFF00", "COBADEFFXXX0", "COBADEF", "COBADEFF000", "COBADE-FXXX", "COBA EFF",
                            "_DE37040044", "COBADEFF\xC4XX", "", "37040044", none})
        EXPECT_EQ(bank_of_bic(bic), "-2") << (bic ? bic : "(null)");
}

// What a second version says holds from the first second of the change date on, and not before.
TEST(Directory, AnnouncedDataHoldFromTheChangeDateOn) {
    for (const Row* row = rows + 1; row != std::end(rows); ++row) {
        if (row->key_prefix != changed) continue;
        const Text *const first = row[-1].parts, *const second = row->parts;
        const auto expect_at = [&](std::time_t time, const Text* texts) {
            clock_is_set_to = time;
            expect_bank("DE", first[0].data(), texts + 2, "DE", texts[0], texts[1].data());
        };
        for (const std::time_t before : {std::time_t{1}, std::time_t{change_date - 1}})
            expect_at(before, first + 1);
        expect_at(change_date, second);
    }
}

TEST(Directory, ToolMakesTheSameFilesFromTheirOwnContent) {
    const CommandResult result =
        run("set -e; cd " VELMORA_SOURCE_DIR "/data; for folder in first second; do"
            " output=" +
            testing::TempDir() +
            "velmora_directory/$folder; rm -rf $output; mkdir -p $output;"
            " python3 ../tools/make_directory.py --output $output;"
            " for name in records hash release; do cmp directory_$name.inc $output/directory_$name.inc; done;"
            " done");
    EXPECT_EQ(result.status, 0) << result.output;
}

} // namespace
