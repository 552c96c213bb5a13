#include "bank/iban_convert.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <map>
#include <random>
#include <sstream>
#include <string>

#include "bank/iban_check.h"
#include "german_banks.h"
#include "velmora.h"

namespace {

using namespace velmora;

struct Conversion {
    int result;
    int status;
    std::string iban;

    bool operator==(const Conversion&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Conversion& c) {
    return out << c.result << " " << c.status << " " << (c.iban.empty() ? "-" : c.iban);
}

// A directory of a few banks of our own before the real one.
struct Bank {
    unsigned iban_rule;
    std::uint8_t method;
    std::string successor;
};
std::map<std::string, Bank> own_banks;

bool find_bank(std::string_view bank_code, GermanBank* out) {
    const auto bank = own_banks.find(std::string(bank_code));
    if (bank == own_banks.end()) return directory_find_german_bank(bank_code, out);
    const auto& [iban_rule, method, successor] = bank->second;
    *out = {!successor.empty(), method, iban_rule, successor};
    return true;
}

// Converts into a buffer full of other bytes, of which exactly 35 may change.
Conversion convert(const char* country, const char* account, const char* bank_code,
                   BankLookup* lookup = directory_find_german_bank) {
    char buffer[40];
    std::memset(buffer, '#', sizeof buffer);
    std::uint8_t status = 99;
    const int result = lookup == directory_find_german_bank
                           ? sepa_iban_convert(country, account, bank_code, buffer, &status)
                           : convert_account(country, account, bank_code, buffer, &status, lookup);
    const std::string iban = buffer;
    EXPECT_EQ(iban.size(), result == 1 ? 22u : 0u);
    EXPECT_EQ(std::string(buffer, sizeof buffer), iban + std::string(35 - iban.size(), '\0') + "#####");
    return {result, status, iban};
}

// Each case names what the bank code's record said when it was published, so that it holds whatever the
// directory says by now. Where the directory still says the same, it is converted with that one too.
TEST(IbanConvert, PublishedCases) {
    std::ifstream file(VELMORA_SOURCE_DIR "/tests/data/iban_rules.tsv");
    int cases = 0, by_directory = 0;
    for (std::string line; std::getline(file, line);) {
        if (line[0] == '#') continue;
        std::istringstream fields(line);
        std::string bank_code, account, method, successor;
        unsigned rule;
        Conversion expected;
        fields >> bank_code >> account >> rule >> method >> successor >> expected.result >> expected.status >>
            expected.iban;
        ASSERT_FALSE(fields.fail()) << line;
        if (expected.iban == "-") expected.iban.clear();
        if (successor == "-") successor.clear();

        const Bank bank = {rule * 100, static_cast<std::uint8_t>(std::stoi(method, nullptr, 16)), successor};
        own_banks = {{bank_code, bank}};
        EXPECT_EQ(convert("DE", account.c_str(), bank_code.c_str(), find_bank), expected) << line;
        ++cases;

        GermanBank entry;
        if (!directory_find_german_bank(bank_code, &entry) || entry.iban_rule / 100 != rule ||
            entry.method != bank.method || entry.successor != successor)
            continue;
        account.insert(0, 10 - account.size(), '0');
        EXPECT_EQ(convert("DE", account.c_str(), bank_code.c_str()), expected) << line;
        ++by_directory;
    }
    EXPECT_EQ(cases, 743);
    EXPECT_GE(by_directory, 300);
}

TEST(IbanConvert, ArgumentsAreCheckedInOrder) {
    const Conversion other_country = {0, 0, ""}, invalid = {-1, 0, ""}, unknown = {-3, 10, ""};
    EXPECT_EQ(convert(nullptr, nullptr, nullptr), invalid);
    for (const char* country : {"", "D", "de", "DEU", "AT", "FR"})
        EXPECT_EQ(convert(country, nullptr, nullptr), other_country) << country;
    EXPECT_EQ(convert("DE", nullptr, "37040044"), invalid);
    EXPECT_EQ(convert("DE", "532013000", nullptr), invalid);
    for (const char* bank_code : {"", "3704004", "370400440", "37040044 "})
        EXPECT_EQ(convert("DE", "532013000", bank_code), invalid) << bank_code;
    for (const char* account : {"", "00532013000", "53201300000000000000"})
        EXPECT_EQ(convert("DE", account, "37040044"), invalid) << account;
    for (const char* bank_code : {"99999999", "3704004\x7f", "\xff\xff\xff\xff\xff\xff\xff\xff", "        "})
        EXPECT_EQ(convert("DE", "532013000", bank_code), unknown) << bank_code;

    std::uint8_t status = 99;
    char iban[35] = "x";
    EXPECT_EQ(sepa_iban_convert("DE", "532013000", "37040044", nullptr, nullptr), 1);
    EXPECT_EQ(sepa_iban_convert("DE", "930125004", "50040033", nullptr, &status), -1);
    EXPECT_EQ(status, 12);
    EXPECT_EQ(sepa_iban_convert("DE", "", "37040044", iban, nullptr), -1);
    EXPECT_STREQ(iban, "");
}

TEST(IbanConvert, SuccessorsTakeOverTheAccountAndTheStatus) {
    // As in the directory of 2026: rule 1 before rule 15, rule 57 before rule 0.
    own_banks = {{"36060192", {100, 0x06, "37060193"}},
                 {"37060193", {1501, 0x06, ""}},
                 {"50810900", {5700, 0x09, "66010200"}},
                 {"66010200", {0, 0x09, ""}}};
    EXPECT_EQ(convert("DE", "94", "36060192", find_bank), (Conversion{1, 13, "DE17370601933008888018"}));
    EXPECT_EQ(convert("DE", "9988776655", "50810900", find_bank),
              (Conversion{1, 13, "DE97660102009988776655"}));

    own_banks = {
        {"10000001", {4700, 0x09, "10000002"}}, // completes eight digits
        {"10000002", {1500, 0x09, "10000003"}},
        {"10000003", {2900, 0x09, ""}}, // drops a zero in position 4
        {"10000004", {3200, 0x09, "10000005"}},
        {"10000005", {100, 0x09, ""}},
        {"10000006", {0, 0x09, "99999999"}},
        {"10000007", {5800, 0x09, "10000003"}},
        {"10000008", {4100, 0x09, "10000003"}},
        {"10000009", {0, 0x09, "1000000"}}, // too short to be a bank code
    };
    EXPECT_EQ(convert("DE", "12305678", "10000001", find_bank).iban.substr(4), "100000030123567800");
    EXPECT_EQ(convert("DE", "800000000", "10000004", find_bank), (Conversion{-1, 12, ""}));
    EXPECT_EQ(convert("DE", "1", "10000006", find_bank), (Conversion{-3, 10, ""}));
    EXPECT_EQ(convert("DE", "1", "10000007", find_bank).status, 13);
    EXPECT_EQ(convert("DE", "1", "10000008", find_bank).iban.substr(4), "100000030000000001");
    EXPECT_EQ(convert("DE", "1", "10000009", find_bank).status, 0);
}

TEST(IbanConvert, SuccessorsInACircleAreAnUnknownBank) {
    own_banks = {{"10000001", {0, 0x09, "10000002"}}, {"10000002", {0, 0x09, "10000001"}}};
    EXPECT_EQ(convert("DE", "1", "10000001", find_bank), (Conversion{-3, 10, ""}));
    own_banks = {{"10000001", {0, 0x09, "10000001"}}};
    EXPECT_EQ(convert("DE", "1", "10000001", find_bank), (Conversion{-3, 10, ""}));

    own_banks = {{"10000010", {0, 0x09, ""}}}; // a long chain with an end is none
    for (int i = 1; i < 10; ++i)
        own_banks["1000000" + std::to_string(i)] = {0, 0x09, std::to_string(10000001 + i)};
    EXPECT_EQ(convert("DE", "1", "10000001", find_bank).iban.substr(4), "100000100000000001");
}

TEST(IbanConvert, UnknownRulesGiveNothing) {
    for (const unsigned rule : {5800u, 5900u, 10000u, 65535u}) {
        own_banks = {{"10000001", {rule, 0x09, ""}}};
        EXPECT_EQ(convert("DE", "1", "10000001", find_bank), (Conversion{0, 0, ""})) << rule;
    }
}

// What every conversion must hold; nothing is known of the account.
void expect_sound(const std::string& bank_code, const std::string& account, const Conversion& c) {
    ASSERT_TRUE(c.result == 1 || c.result == -1);
    if (c.result != 1) return;

    const char* error = nullptr;
    ASSERT_TRUE(iban_validate(c.iban.c_str(), &error) == 1 ||
                error == std::string("Invalid account number in IBAN"))
        << error;
    ASSERT_EQ(iban_mod97(c.iban.c_str(), 22), 1);

    if (c.iban == "DE96500604000000011404") return; // the one IBAN for all accounts of rule 41
    const bool same_bank = c.iban.substr(4, 8) == bank_code;
    const bool same_account = c.iban.substr(12) == std::string(10 - account.size(), '0') + account;
    const std::map<int, bool> truth = {{0, same_bank && same_account},
                                       {1, !same_account},
                                       {13, !same_bank},
                                       {15, !same_bank && same_account}};
    ASSERT_TRUE(truth.contains(c.status) && truth.at(c.status));
}

TEST(IbanConvert, EveryIbanOfTheDirectoryIsOne) {
    std::mt19937_64 random(4);
    std::map<std::pair<int, int>, int> seen;
    for (const std::string& bank_code : german_bank_codes())
        for (std::size_t i = 0; i < 40; ++i) {
            const std::string digits = std::to_string(random() % 9'000'000'000 + 1'000'000'000);
            const std::string account = digits.substr(0, 1 + i % 10);
            const Conversion c = convert("DE", account.c_str(), bank_code.c_str());
            ASSERT_NO_FATAL_FAILURE(expect_sound(bank_code, account, c))
                << bank_code << " " << account << ": " << c;
            ++seen[{c.result, c.status}];
        }
    for (const auto& outcome : {std::pair{1, 0}, {1, 1}, {1, 13}, {1, 15}, {-1, 0}, {-1, 12}, {-1, 50}})
        EXPECT_GT(seen[outcome], 0) << outcome.first << " " << outcome.second;
}

// Nobody tests the account for digits. What comes out is free; it must only come out.
TEST(IbanConvert, AccountsOfOtherCharactersAreHarmless) {
    for (const std::string& bank_code : german_bank_codes())
        for (const char* account : {"A", "-1", "          ", "\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff",
                                    "12 345", "\x01\x7f\x80zzzz", "~~~~~~~~~~", "::::::::::", "00000000/5"})
            convert("DE", account, bank_code.c_str());
    EXPECT_EQ(convert("DE", "12-345", "10010010"), (Conversion{-1, 0, ""}));
}

} // namespace
