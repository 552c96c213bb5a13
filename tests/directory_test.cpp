// The bank directory against its own data files, which are read here once more.
#include "bank/directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <memory>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "command.h"
#include "velmora.h"

using namespace velmora;

namespace {

constexpr char data_folder[] = VELMORA_SOURCE_DIR "/data";

std::string content(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// A row of directory_records.inc: KIND("part", "part", ...).
struct Row {
    std::string kind;
    std::vector<std::string> parts;
};

std::string literal(const std::string& line, std::size_t& at) {
    std::string part;
    while (line[++at] != '"') {
        if (line[at] != '\\')
            part += line[at];
        else if (line[++at] != 'x')
            part += line[at];
        else {
            part += static_cast<char>(std::stoi(line.substr(at + 1, 2), nullptr, 16));
            at += 2;
        }
    }
    return part;
}

const std::vector<Row>& rows() {
    static const std::vector<Row> all = [] {
        std::vector<Row> result;
        std::istringstream lines(content(std::string(data_folder) + "/directory_records.inc"));
        for (std::string line; std::getline(lines, line);) {
            if (line.empty() || line.starts_with("//")) continue;
            Row row{line.substr(0, line.find('(')), {}};
            for (std::size_t at = line.find('"'); at < line.rfind(')'); at = line.find('"', at + 1))
                row.parts.push_back(literal(line, at));
            result.push_back(row);
        }
        return result;
    }();
    return all;
}

std::int64_t change_date() {
    const std::string release = content(std::string(data_folder) + "/directory_release.inc");
    return std::stoll(release.substr(release.find("change_date = ") + 14));
}

std::string record_key(std::string_view record) {
    return std::string(record.substr(0, record.starts_with("_AT") || record.starts_with("_CH") ? 8 : 11));
}

// Result, name, postal code, town, country, BIC and flags as one text.
std::string describe(int result, sepa_bank_t* bank) {
    const std::unique_ptr<sepa_bank_t, decltype(&std::free)> owner(bank, &std::free);
    std::string text = std::to_string(result);
    if (bank == nullptr) return text;
    for (const char* field : {bank->name, bank->postcode, bank->city, bank->country, bank->bic})
        text += std::string("|") + (field == nullptr ? "(null)" : field);
    return text + "|" + std::to_string(bank->flags);
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

TEST(Directory, EveryKeyHasItsOwnSlotInAscendingOrder) {
    std::set<std::string> keys;
    for (int slot = 0; slot < directory_size(); ++slot) {
        const std::string_view record = directory_record(slot);
        const std::string key = record_key(record);
        EXPECT_EQ(directory_hash(key), slot) << key;
        EXPECT_EQ(directory_find(key), record);
        EXPECT_TRUE(keys.empty() || *keys.rbegin() < key) << key;
        keys.insert(key);
    }
    EXPECT_EQ(directory_size(),
              std::ranges::count_if(rows(), [](const Row& row) { return row.kind != "CHANGED"; }));
    EXPECT_EQ(directory_record(-1), "");
    EXPECT_EQ(directory_record(directory_size()), "");
}

TEST(Directory, EveryBicOfTheData) {
    for (const Row& row : rows()) {
        if (row.kind != "BIC") continue;
        const std::string bic = row.parts[0];
        const int flags = row.parts[1][0];
        const std::string name = flags == 0 ? "" : row.parts[2]; // a flags byte of 0 ends the record's text
        EXPECT_EQ(bank_of_bic(bic.c_str()), "1|" + name + "|(null)|(null)|" + bic.substr(4, 2) + "|" + bic +
                                                "|" + std::to_string(flags));
    }
}

TEST(Directory, EveryAustrianAndSwissBankOfTheData) {
    for (const Row& row : rows()) {
        if (row.kind != "AUSTRIAN" && row.kind != "SWISS") continue;
        const std::vector<std::string>& p = row.parts;
        const std::string bank = "1|" + p[2] + "|" + p[3] + "|" + p[4] + "|" + p[5] + "|" + p[1] + "|0";
        const std::vector<const char*> countries =
            row.kind == "SWISS" ? std::vector{"CH", "LI"} : std::vector{"AT"};
        for (const char* country : countries) {
            EXPECT_EQ(bank_of(country, p[0].c_str()), bank);
            DirectoryEntry entry;
            ASSERT_EQ(directory_lookup(country, p[0].c_str(), &entry), 1);
            EXPECT_EQ(entry.bic + std::string("|") + entry.country, p[1] + "|" + p[5]);
            EXPECT_EQ(entry.successor, nullptr);
            EXPECT_EQ(entry.deleted + entry.method + entry.iban_rule, 0U);
        }
    }
}

TEST(Directory, EveryGermanBankOfTheData) {
    const bool changed = std::time(nullptr) >= change_date();
    for (std::size_t i = 0; i < rows().size(); ++i) {
        if (rows()[i].kind != "GERMAN") continue;
        const std::string code = rows()[i].parts[0];
        std::vector<std::string> p(rows()[i].parts.begin() + 1, rows()[i].parts.end());
        if (changed && i + 1 < rows().size() && rows()[i + 1].kind == "CHANGED") p = rows()[i + 1].parts;
        const auto header = [&](std::size_t at) { return static_cast<unsigned char>(p[0][at]); };
        EXPECT_EQ(bank_of("DE", code.c_str()), "1|" + p[3] + "|" + p[4] + "|" + p[5] + "|DE|" + p[2] + "|0");
        DirectoryEntry entry;
        ASSERT_EQ(directory_lookup("DE", code.c_str(), &entry), 1);
        EXPECT_EQ(std::string(entry.successor) + "|" + entry.bic + "|" + entry.name + "|" + entry.postcode +
                      "|" + entry.city + "|" + entry.country,
                  p[1] + "|" + p[2] + "|" + p[3] + "|" + p[4] + "|" + p[5] + "|DE");
        EXPECT_EQ(entry.deleted, header(0));
        EXPECT_EQ(entry.method, header(1));
        EXPECT_EQ(entry.iban_rule, header(2) * 256U + header(3));
        GermanBank bank;
        ASSERT_TRUE(directory_find_german_bank(code, &bank));
        EXPECT_EQ(bank.deleted, entry.deleted);
        EXPECT_EQ(bank.method, entry.method);
        EXPECT_EQ(bank.iban_rule, entry.iban_rule);
        EXPECT_EQ(bank.successor, entry.successor);
    }
}

TEST(Directory, RandomKeysAreRefused) {
    std::set<std::string> keys;
    for (int slot = 0; slot < directory_size(); ++slot)
        keys.insert(record_key(directory_record(slot)));
    std::mt19937 random(20260608);
    const auto text = [&](const char* characters, std::size_t length) {
        std::string result;
        while (result.size() < length)
            result += characters[random() % std::char_traits<char>::length(characters)];
        return result;
    };
    const char* const letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    for (int i = 0; i < 100'000; ++i) {
        const std::string german = text("0123456789", 8);
        const std::string austrian = text("0123456789", 5);
        const std::string bic = text(letters, 6) + text("2345678", 1) + text(letters, 1) + "XXX";
        for (const std::string& key :
             {"_DE" + german, "_AT" + austrian, bic, text("0:@AZ_`az", 6 + random() % 10)}) {
            const bool known = keys.contains(key);
            ASSERT_LT(directory_hash(key), directory_size()) << key;
            ASSERT_EQ(directory_find(key).empty(), !known) << key;
        }
        ASSERT_EQ(sepa_bankid_check("DE", german.c_str(), nullptr), keys.contains("_DE" + german) ? 1 : -2);
        GermanBank bank;
        ASSERT_EQ(directory_find_german_bank(german, &bank), keys.contains("_DE" + german)) << german;
        ASSERT_EQ(sepa_bankid_check("AT", austrian.c_str(), nullptr),
                  keys.contains("_AT" + austrian) ? 1 : -2);
        ASSERT_EQ(sepa_bic_getBank(bic.c_str(), nullptr), keys.contains(bic) ? 1 : -2) << bic;
    }
}

// Keys that no bank code and no BIC can form, at the edges of length and character range.
TEST(Directory, HashTakesSixToFifteenCharactersFromZeroToSmallZ) {
    for (std::size_t length = 0; length < 20; ++length)
        EXPECT_EQ(directory_hash(std::string(length, 'A')) == -1, length < 6 || length > 15) << length;
    for (int c = 0; c < 256; ++c)
        EXPECT_EQ(directory_hash("_DE1234" + std::string(1, static_cast<char>(c))) == -1, c < '0' || c > 'z')
            << c;
}

TEST(BankIdCheck, CountryThenBankCode) {
    const struct {
        const char* country;
        const char* bank_id;
        const char* expected;
    } cases[] = {
        {"DE", "37040044", "1|Commerzbank|50447|Köln|DE|COBADEFFXXX|0"},
        {"CH", "100", "1|Schweizerische Nationalbank|8022|Zürich||SNBZCHZZXXX|0"}, // 00100
        {"LI", "8800", "1|Liechtensteinische Landesbank Aktiengesellschaft|9490|Vaduz|LI|LILALI2XXXX|0"},
        // A shorter bank code is filled with zeros; that is not how its source prints Austria's shortest two.
        {"AT", "100", "-2"},
        {"AT", "1000", "-2"},
        {"DE", "3704004", "-2"},
        {"DE", "370400440", "-2"},
        {"DE", "037040044", "-2"},
        {"DE", "3704004\xDF", "-2"},
        {"DE", "3704 044", "-2"},
        {"DE", "37040044 ", "-2"},
        {"DE", "", "-2"},
        {"DE", nullptr, "-2"},
        {"CH", "000100", "-2"},
        {"de", "37040044", "0"},
        {"FR", "30004", "0"},
        {"DEU", "37040044", "0"},
        {"D", "37040044", "0"},
        {"", "37040044", "0"},
        {nullptr, "37040044", "0"},
        {nullptr, nullptr, "0"},
        {"FR", nullptr, "0"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(bank_of(c.country, c.bank_id), c.expected)
            << (c.country ? c.country : "(null)") << " " << (c.bank_id ? c.bank_id : "(null)");
}

TEST(BicGetBank, EightOrElevenLettersAndDigitsInAnyCase) {
    const std::string commerzbank = "1|COMMERZBANK AG|(null)|(null)|DE|COBADEFFXXX|11";
    const struct {
        const char* bic;
        std::string expected;
    } cases[] = {
        {"COBADEFFXXX", commerzbank}, {"cobadeff", commerzbank}, {"CoBaDeFfxXx", commerzbank},
        {"COBADEFF00", "-2"},         {"COBADEFFXXX0", "-2"},    {"COBADEF", "-2"},
        {"COBADEFF000", "-2"},        {"COBADE-FXXX", "-2"},     {"COBA EFF", "-2"},
        {"_DE37040044", "-2"},        {"COBADEFF\xC4XX", "-2"},  {"", "-2"},
        {"37040044", "-2"},           {nullptr, "-2"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(bank_of_bic(c.bic), c.expected) << (c.bic ? c.bic : "(null)");
}

// What a second version says holds from the first second of the change date on, and not before.
TEST(Directory, AnnouncedDataHoldFromTheChangeDateOn) {
    const auto banks_at = [](std::int64_t seconds, const std::string& codes) {
        const CommandResult result =
            run("export FAKETIME=\"$(date -u -d @" + std::to_string(seconds) +
                " '+%Y-%m-%d %H:%M:%S')\" TZ=UTC0 LD_PRELOAD=" VELMORA_FAKETIME "; for code in" + codes +
                "; do " VELMORA_CLOCK_PROBE " bank $code; done");
        EXPECT_EQ(result.status, 0);
        return result.output;
    };
    std::string codes, before, after;
    for (std::size_t i = 1; i < rows().size(); ++i) {
        if (rows()[i].kind != "CHANGED") continue;
        const std::vector<std::string>&first = rows()[i - 1].parts, &second = rows()[i].parts;
        codes += " " + first[0];
        before += first[4] + ", " + first[5] + "\n";
        after += second[3] + ", " + second[4] + "\n";
    }
    if (codes.empty()) GTEST_SKIP() << "no bank has announced anything";
    EXPECT_EQ(banks_at(change_date() - 1, codes), before);
    EXPECT_EQ(banks_at(change_date(), codes), after);
    EXPECT_EQ(banks_at(0, codes), before);
}

TEST(Directory, ToolMakesTheSameFilesFromTheirOwnContent) {
    for (const char* folder : {"/first", "/second"}) {
        const std::string output = testing::TempDir() + "velmora_directory" + folder;
        const CommandResult result =
            run("mkdir -p " + output + " && rm -f " + output +
                "/* && python3 " VELMORA_SOURCE_DIR "/tools/make_directory.py --output " + output);
        ASSERT_EQ(result.status, 0) << result.output;
        for (const char* name : {"/directory_records.inc", "/directory_hash.inc", "/directory_release.inc"})
            EXPECT_TRUE(content(output + name) == content(data_folder + std::string(name))) << name;
    }
}

} // namespace
