// The bank directory against its own data file, which is read here once more.
#include "bank/directory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "command.h"
#include "set_clock.h"
#include "velmora.h"

using namespace velmora;

namespace {

// One line of data/directory.inc: its literals, those of bytes as text, too.
struct Row {
    std::string key;
    std::vector<std::string> parts;

    bool is_bank() const { return key[8] == '_'; }
    std::string country() const { return is_bank() ? key.substr(9) : ""; }
    std::string code() const { return country() == "DE" ? key.substr(0, 8) : key.substr(3, 5); }
    const char* text(std::size_t from_the_end) const { return parts[parts.size() - from_the_end].c_str(); }
};

std::time_t change_date = 0;

std::vector<Row> read_rows() {
    std::vector<Row> rows;
    std::ifstream file(VELMORA_SOURCE_DIR "/data/directory.inc");
    for (std::string line; std::getline(file, line);) {
        if (const auto at = line.find("change_date = "); at != std::string::npos)
            change_date = std::stoll(line.substr(at + 14));
        if (!line.starts_with("    \"")) continue;
        std::vector<std::string> literals;
        for (std::size_t i = 0; (i = line.find('"', i)) < line.find(" //"); ++i) {
            std::string& literal = literals.emplace_back();
            while (line[++i] != '"') {
                if (line[i] != '\\')
                    literal += line[i];
                else if (line[++i] == 'x')
                    literal += static_cast<char>(
                        std::stoi(line.substr(std::exchange(i, i + 2) + 1, 2), nullptr, 16));
                else if (line[i] != '0') // the zero byte that ends a text
                    literal += line[i];
            }
        }
        rows.push_back({literals[0], {literals.begin() + 1, literals.end()}});
    }
    return rows;
}

const std::vector<Row> rows = read_rows();

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

// Code and bank of a step of the walk, or its result alone.
std::string next_bank(const char* country, std::uint32_t& index) {
    sepa_bank_t* bank = nullptr;
    char code[12];
    const int result = sepa_bank_next(country, &index, code, &bank);
    return result == 1 ? code + (" " + describe(result, bank)) : std::to_string(result);
}

// Every row, by each look-up and by the walk through all of them, in which a second version has no place of
// its own: it holds from the first second of the change date on, and not before.
void expect_every_row(bool change_is_due) {
    std::uint32_t index = 0, index_of_country = 0;
    std::string last_country;
    for (auto row = rows.begin(); row != rows.end(); ++row) {
        SCOPED_TRACE(row->key);
        const bool has_second = row + 1 != rows.end() && row[1].key == row->key;
        if (has_second == change_is_due && (has_second || (row != rows.begin() && row[-1].key == row->key)))
            continue;
        std::string expected;
        if (row->is_bank()) {
            expected =
                "1|" + join({row->text(5), row->text(4), row->text(3), row->text(2), row->text(1)}) + "0";
            EXPECT_EQ(bank_of(row->country().c_str(), row->code().c_str()), expected);
            if (row->country() == "CH") {
                EXPECT_EQ(bank_of("LI", row->code().c_str()), expected);
            }
        } else {
            const int flags = row->parts[1].empty() ? 0 : row->parts[1][0];
            const char* name = flags == 0 ? "" : row->text(1); // a BIC without schemes has no name
            expected = "1|" +
                       join({name, nullptr, nullptr, row->key.substr(4, 2).c_str(), row->key.c_str()}) +
                       std::to_string(flags);
            EXPECT_EQ(bank_of_bic(row->key.c_str()), expected);
        }
        const std::string code = row->is_bank() ? row->code() : row->key;
        EXPECT_EQ(next_bank(nullptr, index), code + " " + expected);
        if (row->is_bank()) {
            if (std::exchange(last_country, row->country()) != row->country()) index_of_country = 0;
            EXPECT_EQ(next_bank(row->country().c_str(), index_of_country), code + " " + expected);
        }
        if (row->country() == "DE") {
            const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(row->parts[1][i]); };
            const BankRecord bank = find_german_bank(code);
            ASSERT_TRUE(bank);
            EXPECT_EQ(std::tuple(bank.is_deleted(), bank.method(), bank.iban_rule()),
                      std::tuple(byte(0) % 2 == 1, byte(1), byte(2) * 256U + byte(3)));
            EXPECT_EQ(bank.successor(), row->parts[2]);
            char method[3];
            int rule = -1;
            EXPECT_EQ(sepa_bankid_method(code.c_str(), method, &rule), 1);
            EXPECT_EQ(std::stoi(method, nullptr, 16) * 65536 + rule,
                      static_cast<int>(bank.method() * 65536U + bank.iban_rule()));
        }
    }
    EXPECT_EQ(next_bank(nullptr, index), "0");
    EXPECT_EQ(next_bank("DE", index_of_country), "0");
}

TEST(Directory, EveryRowOfTheData) {
    ASSERT_GT(change_date, 1);
    for (const std::time_t time : {std::time_t{1}, change_date - 1, change_date}) {
        clock_is_set_to = time;
        expect_every_row(time == change_date);
    }
}

TEST(Directory, RandomKeysAreRefused) {
    std::set<std::string> keys;
    for (const Row& row : rows)
        keys.insert(row.key);
    std::mt19937 random(20260608);
    const auto text = [&](std::string_view characters, std::size_t length) {
        std::string result;
        while (result.size() < length)
            result += characters[random() % characters.size()];
        return result;
    };
    const auto expected = [&](const std::string& key) { return keys.contains(key) ? 1 : -2; };
    for (int i = 0; i < 100'000; ++i) {
        const std::string german = text("0123456789", 8), austrian = text("0123456789", 5);
        const std::string bic = text("ABCDEFGHIJKLMNOPQRSTUVWXYZ", 6) + text("2345678", 1) + "AXXX";
        ASSERT_EQ(sepa_bankid_check("DE", german.c_str(), nullptr), expected(german + "_DE"));
        ASSERT_EQ(sepa_bankid_method(german.c_str(), nullptr, nullptr), expected(german + "_DE"));
        ASSERT_EQ(sepa_bankid_check("AT", austrian.c_str(), nullptr), expected("000" + austrian + "_AT"));
        ASSERT_EQ(sepa_bic_getBank(bic.c_str(), nullptr), expected(bic)) << bic;
    }
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

TEST(Directory, ArgumentsOfTheOtherQuestions) {
    std::uint32_t index = 0;
    for (const char* country : {"de", "FR", "DEU", "D", ""}) {
        EXPECT_EQ(sepa_bank_next(country, &index, nullptr, nullptr), 0);
        EXPECT_EQ(sepa_data_date(country), nullptr);
    }
    EXPECT_EQ(sepa_data_date(nullptr), nullptr);
    for (const char* country : {"AT", "CH", "DE", "LI"})
        EXPECT_EQ(std::string(sepa_data_date(country)).size(), 10u);
    EXPECT_STREQ(sepa_data_date("LI"), sepa_data_date("CH"));
    EXPECT_EQ(sepa_bank_next("DE", nullptr, nullptr, nullptr), -1);
    index = 0xFFFF'FFFF;
    EXPECT_EQ(sepa_bank_next(nullptr, &index, nullptr, nullptr), 0);
    for (const char* bank_code : {"", "3704004", "370400440"})
        EXPECT_EQ(sepa_bankid_method(bank_code, nullptr, nullptr), -1);
    EXPECT_EQ(sepa_bankid_method(nullptr, nullptr, nullptr), -1);
}

TEST(Directory, ToolMakesTheSameFileFromItsOwnContent) {
    const CommandResult result = run("set -e; cd " VELMORA_SOURCE_DIR "/data; output=" + testing::TempDir() +
                                     "velmora_directory; rm -rf $output; mkdir -p $output;"
                                     " python3 ../tools/make_directory.py --output $output;"
                                     " cmp directory.inc $output/directory.inc");
    EXPECT_EQ(result.status, 0) << result.output;
}

} // namespace
