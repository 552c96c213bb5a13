// IBANs from account and bank code, the IBAN rules behind them, and the BIC behind an IBAN.
#include "bank/iban_convert.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <tuple>

#include "bank/iban_check.h"
#include "velmora.h"

namespace {

using namespace velmora;

// A directory of a few banks of our own before the real one.
struct Bank {
    unsigned iban_rule;
    std::uint8_t method;
    std::string successor;

    std::string record() const {
        const auto byte = [](std::size_t value) { return std::string(1, static_cast<char>(value)); };
        return "12345678_DE" + byte(successor.size()) + "\1\1\1\1\1" + byte(0) + byte(method) +
               byte(iban_rule / 256) + byte(iban_rule % 256) + successor + std::string(5, '\0');
    }
};
std::map<std::string, Bank> own_banks;
std::string own_record;

BankRecord find_bank(std::string_view bank_code) {
    const auto bank = own_banks.find(std::string(bank_code));
    if (bank == own_banks.end()) return find_german_bank(bank_code);
    own_record = bank->second.record();
    return BankRecord(own_record.c_str());
}

// Result, status and IBAN ("-" for none) in one text. Of the buffer exactly 35 bytes may change.
std::string convert(const char* country, const char* account, const char* bank_code,
                    BankLookup* lookup = find_bank) {
    char buffer[40];
    std::memset(buffer, '#', sizeof buffer);
    const Conversion conversion = convert_account(country, account, bank_code, buffer, lookup);
    const int result = conversion.result, status = conversion.status;
    if (lookup == find_german_bank) {
        std::uint8_t small_status = 99;
        int status2 = 99, account_result = 99;
        EXPECT_EQ(sepa_iban_convert(country, account, bank_code, buffer, &small_status), result);
        EXPECT_EQ(sepa_iban_convert2(country, account, bank_code, buffer, &status2, &account_result), result);
        EXPECT_EQ(std::tuple(small_status, status2, account_result),
                  std::tuple(status, status, conversion.account_result));
    }
    const std::string iban = buffer;
    EXPECT_EQ(iban.size(), result == 1 ? 22u : 0u);
    EXPECT_EQ(std::string(buffer, sizeof buffer), iban + std::string(35 - iban.size(), '\0') + "#####");
    return std::to_string(result) + " " + std::to_string(status) + " " + (result == 1 ? iban : "-");
}

// Each case names what the bank code's record says, so that it holds whatever the directory says by now.
// Where the directory says the same, it is converted with that one too.
TEST(IbanConvert, PublishedAndOtherCases) {
    int cases = 0, by_directory = 0;
    for (const char* name : {"/iban_rules.tsv", "/iban_rule_edges.tsv"}) {
        std::ifstream file(VELMORA_SOURCE_DIR "/tests/data" + std::string(name));
        for (std::string line; std::getline(file, line);) {
            if (line[0] == '#') continue;
            std::istringstream fields(line);
            std::string bank_code, account, method, successor, expected;
            unsigned rule;
            fields >> bank_code >> account >> rule >> method >> successor >> std::ws;
            ASSERT_TRUE(std::getline(fields, expected)) << line;
            if (successor == "-") successor.clear();
            const Bank bank = {rule * 100, static_cast<std::uint8_t>(std::stoi(method, nullptr, 16)),
                               successor};
            own_banks = {{bank_code, bank}};
            EXPECT_EQ(convert("DE", account.c_str(), bank_code.c_str()), expected) << line;
            ++cases;

            const BankRecord entry = find_german_bank(bank_code);
            if (!entry || entry.iban_rule() / 100 != rule || entry.method() != bank.method ||
                entry.successor() != successor)
                continue;
            account.insert(0, 10 - account.size(), '0');
            EXPECT_EQ(convert("DE", account.c_str(), bank_code.c_str(), find_german_bank), expected) << line;
            ++by_directory;
        }
    }
    EXPECT_GE(cases, 743 + 301);
    EXPECT_GE(by_directory, 300);
}

TEST(IbanConvert, ArgumentsAreCheckedInOrder) {
    const auto expect = [](const char* expected, const char* country, const char* account,
                           std::initializer_list<const char*> bank_codes) {
        for (const char* bank_code : bank_codes)
            EXPECT_EQ(convert(country, account, bank_code), expected)
                << (account ? account : "(null)") << " " << (bank_code ? bank_code : "(null)");
    };
    expect("-1 0 -", nullptr, nullptr, {nullptr});
    for (const char* country : {"", "D", "de", "DEU", "AT", "FR"})
        expect("0 0 -", country, nullptr, {nullptr});
    expect("-1 0 -", "DE", nullptr, {"37040044"});
    expect("-1 0 -", "DE", "532013000", {nullptr, "", "3704004", "370400440", "37040044 "});
    for (const char* account : {"", "00532013000", "53201300000000000000"})
        expect("-1 0 -", "DE", account, {"37040044"});
    expect("-3 10 -", "DE", "532013000", {"99999999", "3704004\x7f", "\xff\xff\xff\xff\xff\xff\xff\xff"});

    std::uint8_t status = 99;
    char iban[35] = "x";
    EXPECT_EQ(sepa_iban_convert("DE", "532013000", "37040044", nullptr, nullptr), 1);
    EXPECT_EQ(sepa_iban_convert("DE", "930125004", "50040033", nullptr, &status), -1);
    EXPECT_EQ(status, 12);
    EXPECT_EQ(sepa_iban_convert("DE", "", "37040044", iban, nullptr), -1);
    EXPECT_STREQ(iban, "");
}

TEST(IbanConvert, SuccessorsTakeOverTheAccountAndTheStatus) {
    own_banks = {
        // As in the directory of 2026: rule 1 before rule 15, rule 57 before rule 0.
        {"36060192", {100, 0x06, "37060193"}},
        {"37060193", {1501, 0x06, ""}},
        {"50810900", {5700, 0x09, "66010200"}},
        {"66010200", {0, 0x09, ""}},
        {"10000001", {4700, 0x09, "10000002"}}, // completes eight digits
        {"10000002", {1500, 0x09, "10000003"}},
        {"10000003", {2900, 0x09, ""}}, // drops a zero in position 4
        {"10000004", {3200, 0x09, "10000005"}},
        {"10000005", {100, 0x09, ""}},
        {"10000006", {0, 0x09, "99999999"}},
        {"10000007", {5800, 0x09, "10000003"}}, // no such rule
        {"10000008", {4100, 0x09, "10000003"}},
        {"10000009", {0, 0x09, "1000000"}}, // too short to be a bank code
        {"20000001", {0, 0x09, "20000002"}},
        {"20000002", {0, 0x09, "20000001"}},
        {"20000003", {0, 0x09, "20000003"}},
        {"40000000", {5800, 0x09, ""}},
        {"40000001", {10000, 0x09, ""}},
        {"40000002", {65535, 0x09, ""}},
    };
    for (int i = 30000000; i < 30000010; ++i) // a long chain with an end
        own_banks[std::to_string(i)] = {0, 0x09, i < 30000009 ? std::to_string(i + 1) : ""};
    const struct {
        const char *account, *bank_code, *expected;
    } cases[] = {
        {"94", "36060192", "1 13 DE17370601933008888018"},
        {"9988776655", "50810900", "1 13 DE97660102009988776655"},
        {"12305678", "10000001", "1 13 DE05100000030123567800"},
        {"800000000", "10000004", "-1 12 -"},
        {"1", "10000006", "-3 10 -"},
        {"1", "10000007", "1 13 DE58100000030000000001"},
        {"1", "10000008", "1 13 DE58100000030000000001"},
        {"1", "10000009", "1 0 DE74100000090000000001"},
        {"1", "20000001", "-3 10 -"},
        {"1", "20000003", "-3 10 -"},
        {"1", "30000000", "1 13 DE59300000090000000001"},
        {"1", "40000000", "0 0 -"},
        {"1", "40000001", "0 0 -"},
        {"1", "40000002", "0 0 -"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(convert("DE", c.account, c.bank_code), c.expected) << c.bank_code;
}

// Whatever the account, an IBAN is well-formed, and its status tells the truth.
TEST(IbanConvert, EveryBankOfTheDirectory) {
    std::mt19937_64 random(4);
    std::set<std::string> seen;
    char bank_code_buffer[12];
    for (std::uint32_t index = 0; sepa_bank_next("DE", &index, bank_code_buffer, nullptr) == 1;) {
        const std::string bank_code = bank_code_buffer;
        for (std::size_t i = 0; i < 40; ++i) {
            std::string account = std::to_string(random() % 9'000'000'000 + 1'000'000'000).substr(i % 10);
            const std::string text = convert("DE", account.c_str(), bank_code.c_str(), find_german_bank);
            SCOPED_TRACE(account + " " + bank_code + ": " + text);
            seen.insert(text.substr(0, text.rfind(' ')));
            if (text.starts_with("-1 ")) continue;
            ASSERT_TRUE(text.starts_with("1 "));
            const std::string iban = text.substr(text.rfind(' ') + 1);
            const char* error = nullptr;
            ASSERT_TRUE(iban_validate(iban.c_str(), &error) == 1 ||
                        error == std::string("Invalid account number in IBAN"));
            if (iban == "DE96500604000000011404") continue; // the one IBAN for all accounts of rule 41
            const bool same_bank = iban.substr(4, 8) == bank_code;
            const bool same_account = iban.substr(12) == account.insert(0, 10 - account.size(), '0');
            const std::map<int, bool> truth = {{0, same_bank && same_account},
                                               {1, !same_account},
                                               {13, !same_bank},
                                               {15, !same_bank && same_account}};
            ASSERT_TRUE(truth.at(std::stoi(text.substr(2))));
        }
        // Nobody tests the account for digits. What comes out is free; it must only come out.
        for (const char* account : {"-1", "          ", "\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff", "12 345",
                                    "\x01\x7f\x80zzzz", "~~~~~~~~~~", "::::::::::", "00000000/5"})
            convert("DE", account, bank_code.c_str(), find_german_bank);
    }
    EXPECT_EQ(seen, (std::set<std::string>{"1 0", "1 1", "1 13", "1 15", "-1 0", "-1 12", "-1 50"}));
    EXPECT_EQ(convert("DE", "12-345", "10010010"), "-1 0 -");
}

// What the check of the account gives once the rules had their say that replace accounts or declare them
// valid.
TEST(IbanConvert, ResultOfTheAccountCheck) {
    const struct {
        unsigned rule;
        std::uint8_t method;
        const char *bank_code, *account;
        int account_result;
    } cases[] = {
        {0, 0x00, "12345678", "0009290701", 1},  {0, 0x00, "12345678", "0000000136", -1},
        {0, 0x09, "12345678", "0000000136", 0},  {0, 0x76, "12345678", "0006543200", 1},
        {4, 0x00, "12345678", "0000000135", -1}, {5, 0x00, "10040000", "0000007878", 1},
        {5, 0x00, "10080000", "0000001987", -1}, {10, 0x00, "50050201", "0000002000", 1},
        {11, 0x00, "12345678", "0000001000", 1}, {20, 0x00, "50070010", "0000009999", -1},
        {26, 0x00, "12345678", "0000055111", 1}, {26, 0x00, "12345678", "0000003333", -1},
        {27, 0x00, "12345678", "0000003333", 1}, {30, 0x00, "12345678", "0001718190", 1},
        {43, 0xA9, "60651070", "0000000868", 1}, {44, 0x00, "12345678", "0000000202", 0},
        {49, 0x44, "30060010", "0001991182", 0}, {51, 0x00, "12345678", "0000000333", 0},
        {54, 0x00, "12345678", "0000760440", 1}, {54, 0x00, "12345678", "0000000500", 0},
        {56, 0x00, "12345678", "0000000036", 1}, {1, 0x00, "12345678", "0009290701", 1},
    };
    for (const auto& c : cases) {
        own_banks = {{c.bank_code, {c.rule * 100, c.method, ""}}};
        EXPECT_EQ(convert_account("DE", c.account, c.bank_code, nullptr, find_bank).account_result,
                  c.account_result)
            << c.rule << " " << c.account;
    }
    int account_result = 99;
    EXPECT_EQ(sepa_iban_convert2("DE", "1", "99999999", nullptr, nullptr, &account_result), -3);
    EXPECT_EQ(account_result, 0);
    EXPECT_EQ(sepa_iban_convert2(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), -1);
}

// The BIC, or the result when it is not 1. Exactly twelve bytes may change.
std::string bic_of(const std::string& iban) {
    char buffer[16];
    std::memset(buffer, '#', sizeof buffer);
    const int result = sepa_iban_getBIC(iban.c_str(), buffer);
    const std::string bic = buffer;
    EXPECT_EQ(std::string(buffer, sizeof buffer), bic + std::string(12 - bic.size(), '\0') + "####");
    EXPECT_TRUE(result == 1 || bic.empty());
    return result == 1 ? bic : std::to_string(result);
}

TEST(IbanBic, EveryBankOfTheDirectory) {
    for (const std::string country : {"AT", "CH", "DE"}) {
        char code[12];
        for (std::uint32_t index = 0; sepa_bank_next(country.c_str(), &index, code, nullptr) == 1;) {
            std::string rest = code;
            const BankRecord bank = find_bank(*find_directory_country(country.c_str()), rest);
            ASSERT_TRUE(bank);
            const unsigned rule = bank.iban_rule() / 100;
            const std::string expected = rule == 14 ? "DAAEDEDDXXX"
                                         : rule == 5 && rest[3] == '4' && rest.substr(4, 2) != "11"
                                             ? "COBADEFFXXX"
                                             : std::string(bank.bic());
            rest.append((country == "DE" ? 18 : country == "AT" ? 16 : 17) - rest.size(), '0');
            for (const std::string& name : {country, std::string(country == "CH" ? "LI" : country)})
                EXPECT_EQ(bic_of(name + "00" + rest), expected) << code;
            for (const std::string& wrong : {rest + "0", rest.substr(1)})
                EXPECT_EQ(bic_of(country + "00" + wrong), "-1") << code;
        }
    }
}

TEST(IbanBic, OneOfEachKind) {
    const std::map<std::string, std::string> cases = {
        {"DE89370400440532013000", "COBADEFFXXX"},
        {"DE00100400000000000000", "COBADEFFXXX"}, // the directory's is COBADEBBXXX
        {"DE00200411330000000000", "COBADEHD001"}, // fifth and sixth digit 11
        {"DE00370800400000000000", "DRESDEFF370"}, // fourth digit 8
        {"DE00300606010000000000", "DAAEDEDDXXX"},
        {"DE00733116000000000000", ""},
        {"DE00999999990000000000", "-3"},
        {"FR7630006000011234567890189", "0"},
        {"de89370400440532013000", "0"},
        {"D", "0"},
        {"", "0"},
        {"\xff\xff", "0"},
        {"DE", "-1"},
        {"LI", "-1"},
    };
    for (const auto& [iban, expected] : cases)
        EXPECT_EQ(bic_of(iban), expected) << iban;
    char bic[12] = "x";
    EXPECT_EQ(sepa_iban_getBIC(nullptr, bic), -1);
    EXPECT_STREQ(bic, "");
    EXPECT_EQ(sepa_iban_getBIC("DE89370400440532013000", nullptr), -1);
}

} // namespace
