// The check-digit methods: published accounts, agreement with the rules of tests/data/check_method_rules.txt,
// and what the entry points accept.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>

#include "check_method_rules.h"
#include "velmora.h"

namespace velmora::test {
namespace {

constexpr char any_bank_code[] = "13051172";

// By both entry points; the texts in buffers of exactly their size, so that reading on is noticed.
int check(int method, const std::string& account) {
    const std::vector<char> text(account.c_str(), account.c_str() + account.size() + 1);
    return sepa_account_check(text.data(), static_cast<std::uint8_t>(method));
}
int check(int method, const std::string& account, const std::string& bank_code) {
    const std::vector<char> text(account.c_str(), account.c_str() + account.size() + 1);
    const std::vector<char> bank(bank_code.c_str(), bank_code.c_str() + bank_code.size() + 1);
    return sepa_account_check2(text.data(), bank.data(), static_cast<std::uint8_t>(method));
}

TEST(AccountCheck, PublishedAccounts) {
    std::ifstream file(VELMORA_SOURCE_DIR "/tests/data/check_methods.tsv");
    int checked = 0;
    for (std::string line; std::getline(file, line);) {
        if (line[0] == '#') continue;
        std::istringstream in(line);
        std::string method, bank_code;
        int expected;
        in >> method >> expected >> bank_code;
        const int code = std::stoi(method, nullptr, 16);
        for (std::string account; in >> account; ++checked) {
            const bool alone = bank_code == "-";
            EXPECT_EQ(check(code, account, alone ? any_bank_code : bank_code), expected)
                << method << " " << account;
            EXPECT_EQ(check(code, account), alone ? expected : 0) << method << " " << account;
        }
    }
    EXPECT_EQ(checked, 912);
}

// For every rule of every method: accounts that it applies to, those that differ from them in one digit, and
// the ends of the ranges that begin like these. Every rule has to decide some account, and every method has
// to find valid and invalid ones. A code without method finds nothing.
TEST(AccountCheck, AgreesWithTheRules) {
    CheckMethodRules rules;
    const std::set<int> with_bank_code = {0x52, 0x53, 0xB6, 0xC0};
    std::mt19937_64 random(20250609);
    int methods = 0;
    for (int code = 0; code <= 0xFF; ++code) {
        const std::string method = {"0123456789ABCDEF"[code / 16], "0123456789ABCDEF"[code % 16]};
        const bool exists = rules.contains(method);
        methods += exists;
        if (!exists) std::istringstream("* = 0") >> rules[method].emplace_back();
        std::set<const Rule*> decided;
        std::set<int> results;
        const auto compare = [&](const std::string& account) {
            const std::string bank_code = std::to_string(10000000 + random() % 90000000);
            const Verdict verdict = rules.check(method, account, bank_code);
            decided.insert(verdict.rule);
            results.insert(verdict.result);
            ASSERT_EQ(check(code, account, bank_code), verdict.result)
                << method << " " << account << " " << bank_code;
            const std::string shorter =
                account.substr(std::min<std::size_t>(account.find_first_not_of('0'), 9));
            ASSERT_EQ(check(code, shorter), with_bank_code.contains(code) ? 0 : verdict.result)
                << method << " " << shorter;
        };
        for (const Rule& rule : rules[method]) {
            for (int i = 0; i < 10; ++i) {
                const std::string account = rule.account_for(random);
                for (std::size_t position = 0; position <= 9; ++position)
                    for (const std::string& tail :
                         {account.substr(position + 1), std::string(9 - position, '0'),
                          std::string(9 - position, '9')})
                        for (char digit = '0'; digit <= '9'; ++digit)
                            ASSERT_NO_FATAL_FAILURE(compare(account.substr(0, position) + digit + tail));
            }
            EXPECT_TRUE(decided.contains(&rule)) << method << " " << rule.accounts << " " << rule.kind;
        }
        const bool decides = exists && method != "09";
        EXPECT_TRUE(!decides || (results.contains(1) && results.contains(-1))) << method;
    }
    EXPECT_EQ(methods, 124);
}

TEST(AccountCheck, BadInputIsInvalid) {
    for (int method = 0; method <= 0xFF; ++method) {
        for (const char* account : {"", "00000000000", "12345678901", "00009290701"}) {
            EXPECT_EQ(check(method, account), -1);
            EXPECT_EQ(check(method, account, any_bank_code), -1);
        }
        for (const char* bank_code : {"", "1", "1305117", "130511720", "1305117200000"})
            EXPECT_EQ(check(method, "9290701", bank_code), -1);
        const auto code = static_cast<std::uint8_t>(method);
        EXPECT_EQ(sepa_account_check(nullptr, code), -1);
        EXPECT_EQ(sepa_account_check2(nullptr, any_bank_code, code), -1);
        EXPECT_EQ(sepa_account_check2("9290701", nullptr, code), -1);
    }
}

// A character that is no digit counts as its distance from "0"; only methods with tables by digit refuse it.
TEST(AccountCheck, OtherCharactersAreCountedLikeDigits) {
    const struct {
        int method;
        const char* account;
        int result;
    } cases[] = {
        {0x00, "A3", 1},                                    // 17 twice is 34, its digit sum 7
        {0x03, "A6", 1},                                    // 34 as it is
        {0x06, "A0", 1},                                    // 34 leaves 1
        {0x06, "B8", 1},                                    // 36 leaves 3
        {0x10, " :", -1},         {0x10, " 1", 1},          // -32 leaves -10: 21, written 1
        {0x25, "08 000000<", 1},  {0x81, "0095   00<", 1},  // 12 as it is
        {0x00, "000000   0", 1},                            // a negative remainder gives 0
        {0xE0, "000000   =", 1},                            // but is filled up where something is added
        {0x02, "6:", -1},                                   // a check digit of ten is none
        {0x31, "50000000:", -1},  {0xE1, "000000004:", -1}, // remainder 10 stays impossible
        {0x29, "1A00000000", -1}, {0xC6, "A000000000", -1},
    };
    for (const auto& [method, account, result] : cases)
        EXPECT_EQ(check(method, account), result) << method << " " << account;

    std::mt19937 random(2);
    for (int i = 0; i < 20000; ++i) {
        std::string account(1 + random() % 10, '0'), bank(8, '0');
        for (char& c : account)
            c = static_cast<char>(random() % 2 ? '0' + random() % 10 : 1 + random() % 255);
        for (char& c : bank)
            c = static_cast<char>(1 + random() % 255);
        for (int method = 0; method <= 0xFF; ++method) {
            const int result = check(method, account, bank);
            ASSERT_TRUE(result >= -1 && result <= (method == 0x76 ? 2 : 1)) << result;
        }
    }
}

} // namespace
} // namespace velmora::test
