// The check-digit methods: published accounts, and agreement with the rules of
// tests/data/check_method_rules.txt.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <numeric>
#include <set>
#include <sstream>

#include "check_method_rules.h"
#include "velmora.h"

namespace velmora::test {
namespace {

std::uint8_t code(const std::string& method) {
    return static_cast<std::uint8_t>(std::stoi(method, nullptr, 16));
}

int check(const std::string& method, const std::string& account, const std::string& bank_code = "13051172") {
    return sepa_account_check2(account.c_str(), bank_code.c_str(), code(method));
}

const std::set<std::string> with_bank_code = {"52", "53", "B6", "C0"};

TEST(CheckMethods, PublishedAccounts) {
    std::ifstream file(VELMORA_SOURCE_DIR "/tests/data/check_methods.tsv");
    int checked = 0;
    for (std::string line; std::getline(file, line);) {
        if (line[0] == '#') continue;
        std::istringstream in(line);
        std::string method, bank_code;
        int expected;
        in >> method >> expected >> bank_code;
        for (std::string account; in >> account; ++checked) {
            SCOPED_TRACE(method + " " + account);
            if (bank_code == "-") {
                EXPECT_EQ(sepa_account_check(account.c_str(), code(method)), expected);
                bank_code = "12345678";
            }
            EXPECT_EQ(check(method, account, bank_code), expected);
        }
    }
    EXPECT_EQ(checked, 912);
}

// For every rule of every method: accounts that it applies to, and those that differ from them in one digit.
// Every rule has to decide some account, and every method has to find valid and invalid ones.
TEST(CheckMethods, AgreeWithTheRules) {
    const CheckMethodRules rules;
    ASSERT_EQ(rules.methods().size(), 124u);
    std::mt19937 random(20250609);
    for (const std::string& method : rules.methods()) {
        std::set<const Rule*> decided;
        std::set<int> results;
        const auto compare = [&](const std::string& account) {
            const std::string bank_code = std::to_string(10000000 + random() % 90000000);
            const Verdict verdict = rules.check(method, account, bank_code);
            decided.insert(verdict.rule);
            results.insert(verdict.result);
            ASSERT_EQ(check(method, account, bank_code), verdict.result)
                << method << " " << account << " " << bank_code;
            const int alone = with_bank_code.contains(method) ? 0 : verdict.result;
            ASSERT_EQ(sepa_account_check(account.c_str(), code(method)), alone) << method << " " << account;
        };
        for (const Rule& rule : rules.rules_of(method)) {
            for (int i = 0; i < 20; ++i) {
                const std::string account = rule.account_for(random);
                compare(account);
                for (std::size_t position = 0; position < account.size(); ++position) {
                    std::string changed = account;
                    for (changed[position] = '0'; changed[position] <= '9'; ++changed[position])
                        if (changed != account) compare(changed);
                    if (HasFatalFailure()) return;
                }
            }
        }
        for (const Rule& rule : rules.rules_of(method))
            EXPECT_TRUE(decided.contains(&rule)) << method << " " << rule.accounts << " " << rule.kind;
        if (method == "09") continue;
        EXPECT_TRUE(results.contains(1)) << method;
        EXPECT_TRUE(results.contains(-1)) << method;
    }
}

// First and last account of every range, and the accounts next to them, with every last digit.
TEST(CheckMethods, RangesEndWhereTheRulesSay) {
    const CheckMethodRules rules;
    int ranges = 0;
    for (const std::string& method : rules.methods()) {
        for (const Rule& rule : rules.rules_of(method)) {
            if (!rule.accounts.empty()) continue;
            ++ranges;
            for (const std::int64_t end : {rule.first, rule.last}) {
                for (std::int64_t number = std::max<std::int64_t>(0, end - 10); number <= end + 10;
                     ++number) {
                    const std::string digits = std::to_string(number);
                    const std::string account = std::string(10 - digits.size(), '0') + digits;
                    EXPECT_EQ(check(method, account), rules.check(method, account, "13051172").result)
                        << method << " " << account;
                }
            }
        }
    }
    EXPECT_GE(ranges, 15);
}

// Modulus 10 with weights that are prime to it, or with digit sums of simple and doubled digits, and modulus
// 11 without a written ten: a changed digit never goes unnoticed.
bool notices_every_change(const Rule& rule) {
    if (rule.kind != "compute" || rule.accounts != "*") return false;
    if (rule.remainder == "strict") return rule.modulus == 11;
    if (rule.modulus != 10 || rule.remainder != "fill") return false;
    return rule.sum == "digits" ? std::ranges::all_of(rule.weights, [](int weight) { return weight <= 2; })
                                : std::ranges::all_of(rule.weights, [](int weight) {
                                      return weight == 0 || std::gcd(weight, 10) == 1;
                                  });
}

TEST(CheckMethods, NoticeAChangedDigit) {
    const CheckMethodRules rules;
    std::mt19937 random(4711);
    int methods = 0;
    for (const std::string& method : rules.methods()) {
        const std::vector<Rule>& all = rules.rules_of(method);
        if (all.size() != 1 || !notices_every_change(all[0])) continue;
        ++methods;
        const Rule& rule = all[0];
        const std::size_t check_position = static_cast<std::size_t>(rule.at - 1);
        int valid = 0;
        for (int i = 0; i < 500; ++i) {
            std::string account = rule.account_for(random);
            for (account[check_position] = '0'; account[check_position] <= '9'; ++account[check_position])
                if (check(method, account) == 1) break;
            if (account[check_position] > '9') continue;
            ++valid;
            for (std::size_t position = 0; position < account.size(); ++position) {
                const bool counts = rule.weights[position] != 0 || position == check_position;
                std::string changed = account;
                for (changed[position] = '0'; changed[position] <= '9'; ++changed[position]) {
                    if (changed == account) continue;
                    EXPECT_EQ(check(method, changed), counts ? -1 : 1) << method << " " << changed;
                }
            }
        }
        EXPECT_GE(valid, 400) << method;
    }
    EXPECT_GE(methods, 12);
}

// The ends of every range that is treated apart, and what stands next to it.
TEST(CheckMethods, ExemptRanges) {
    struct Case {
        const char* method;
        int result;
        std::vector<const char*> accounts;
    };
    const Case cases[] = {
        {"08", 0, {"0", "59999"}},
        {"08", -1, {"60000"}},
        {"08", 1, {"60004"}},
        {"09", 0, {"0", "1", "9999999999"}},
        {"45", 0, {"0999999999", "1000100000", "9999199999", "4800000000", "4899999999"}},
        {"45", -1, {"1000000000", "4700000000", "4900000000"}},
        {"45", 1, {"1000000008", "4700000005", "4900000003"}},
        {"57", -1, {"0", "99999999", "0185125433", "0100000000", "0113000000", "0112005000", "3113000000"}},
        {"57", 1, {"185125434", "0101000000", "0112004999", "3101000000", "3112004999"}},
        {"57", 0, {"4000000000", "4099999999", "5000000000", "5099999999", "9100000000", "9199999999"}},
        {"57", 0, {"9900000000", "9999999999", "7777770000", "7777779999", "8888880000", "8888889999"}},
        {"59", 0, {"0", "10000000", "99999999"}},
        {"59", -1, {"100000000"}},
        {"59", 1, {"100000009"}},
        {"66", 0, {"900000000", "999999999"}},
        {"66", -1, {"1000000000", "9999999999"}},
        {"68", 0, {"400000000", "499999999"}},
        {"68", -1, {"99999", "300000000", "1000000000"}},
        {"68", 1, {"300000007", "100008"}},
        {"76", -1, {"1006543200", "2006543200", "3006543200", "5006543200", "0000123456", "9000123456"}},
        {"76", 1, {"0006543200", "4006543200", "6006543200", "7006543200", "8006543200", "9006543200"}},
        {"76", 2, {"0007325022"}},
        {"78", 0, {"10000000", "99999999"}},
        {"78", -1, {"9999999", "100000000"}},
        {"78", 1, {"9999996", "100000009"}},
        {"95",
         1,
         {"1", "1999999", "9000000", "25999999", "396000000", "499999999", "700000000", "799999999"}},
        {"95", 1, {"910000000", "989999999", "0"}},
        {"95", -1, {"2000000", "8999999", "26000000", "500000000", "800000000"}},
        {"96", 0, {"1300000", "99399999"}},
        {"96", 1, {"1299999", "1300003", "1300008"}},
        {"96", -1, {"1299998", "99400000"}},
        {"99", 0, {"396000000", "499999999"}},
        {"99", -1, {"500000000"}},
        {"99", 1, {"500000007"}},
        {"B7", 0, {"0", "999999", "6000000", "699999999", "900000000", "9999999999"}},
        {"B7", -1, {"1000000", "700000000"}},
        {"B7", 1, {"1000009", "700000001"}},
        {"B8", 0, {"5100000000", "5999999998", "9010000000", "9109999999"}},
        {"B8", -1, {"5099999999", "6000000000", "9009999999", "9110000001", "0510000000"}},
        {"C5", 0, {"30000000", "59999999", "7000000000", "7099999999", "8500000000", "8599999999"}},
        {"C5", -1, {"29999999", "60000000", "6999999", "7100000000", "8499999999", "8600000000"}},
        {"C5", -1, {"99999", "900000", "999999", "1000000", "9999999", "900000000", "2000000000"}},
        {"D0", 0, {"5700000000", "5799999999"}},
        {"D0", -1, {"5600000000", "5800000000"}},
        {"D0", 1, {"5800000001"}},
        {"D1", -1, {"8000000000", "8999999999"}},
        {"D2", 1, {"1", "1999999", "9000000", "25999999", "396000000", "499999999", "989999999"}},
        {"D8", 0, {"10000000", "99999999"}},
        {"D8", -1, {"0", "9999999", "100000000", "999999999", "1000000000"}},
        {"D8", 1, {"1000000008"}},
        {"E2", -1, {"6000000000", "7000000000", "8000000000", "9999999999"}},
    };
    for (const Case& c : cases)
        for (const char* account : c.accounts)
            EXPECT_EQ(check(c.method, account), c.result) << c.method << " " << account;
}

} // namespace
} // namespace velmora::test
