#include "bank/iban_rules.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <set>
#include <string>

#include "bank/iban_check.h"
#include "velmora.h"

namespace {

using namespace velmora;

ConversionContext context_for(const std::string& bank_code, const std::string& account,
                              std::uint8_t method = 0) {
    ConversionContext context = {};
    std::strcpy(context.bank_code, bank_code.c_str());
    std::strcpy(context.account, (std::string(10 - account.size(), '0') + account).c_str());
    context.method = method;
    context.account_result =
        static_cast<std::int8_t>(sepa_account_check2(context.account, context.bank_code, method));
    return context;
}

struct Outcome {
    int result;
    int status;
    std::string number; // bank code and account of the IBAN

    bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Outcome& o) {
    return out << o.result << " " << o.status << " " << o.number;
}

Outcome run(unsigned rule, ConversionContext& context) {
    char iban[iban_buffer_size] = {};
    const int result = apply_iban_rule(rule, iban, context);
    return {result, context.status, result == 1 ? std::string(iban + 4, 18) : ""};
}

Outcome run(unsigned rule, std::uint8_t method, const std::string& bank_code, const std::string& account) {
    ConversionContext context = context_for(bank_code, account, method);
    return run(rule, context);
}

// The entry after a listed one, which is not listed itself.
std::string next(const std::string& account) {
    const std::string digits = std::to_string(std::stoll(account) + 1);
    return std::string(10 - digits.size(), '0') + digits;
}

constexpr struct {
    std::uint8_t rule;
    const char *account, *new_account;
} replaced_accounts[] = {
#include "../data/iban_rules_accounts.inc"
};

constexpr struct {
    std::uint8_t rule;
    const char *bank_code, *account, *new_bank_code, *new_account;
} replaced_bank_accounts[] = {
#include "../data/iban_rules_bank_accounts.inc"
};

constexpr struct {
    std::uint8_t rule;
    const char *account, *iban;
} listed_ibans[] = {
#include "../data/iban_rules_ibans.inc"
};

constexpr struct {
    std::uint8_t rule;
    const char* account;
} valid_accounts[] = {
#include "../data/iban_rules_valid_accounts.inc"
};

constexpr struct {
    long long first, last;
    const char* bank_code;
} bank_code_ranges[] = {
#include "../data/iban_rules_ranges.inc"
};

constexpr struct {
    long long first, last;
} refused_ranges[] = {
#include "../data/iban_rules_refused_ranges.inc"
};

constexpr struct {
    const char* bank_code;
} refusing_bank_codes[] = {
#include "../data/iban_rules_refused_bank_codes.inc"
};

const std::string other_bank = "12345678";

TEST(IbanRules, ListedAccountsAreReplacedAndOthersNot) {
    std::set<std::pair<int, std::string>> listed;
    for (const auto& e : replaced_accounts)
        listed.emplace(e.rule, e.account);
    for (const auto& e : replaced_accounts) {
        ConversionContext context = context_for(other_bank, e.account);
        const Outcome outcome = run(e.rule, context);
        ASSERT_EQ(outcome.result, 1);
        ASSERT_EQ(outcome.number.substr(8), e.new_account) << int{e.rule} << " " << e.account;
        ASSERT_STREQ(context.account, e.new_account);
        ASSERT_EQ(context.status, 0);
        const int check = sepa_account_check(e.new_account, 0);
        switch (e.rule) {
        case 11:
            ASSERT_EQ(context.account_result, 1);
            break;
        case 44:
        case 49:
        case 51:
        case 54:
            ASSERT_EQ(context.account_result, check == 1);
            break;
        default:
            ASSERT_EQ(context.account_result, check);
            break;
        }

        if (listed.contains({e.rule, next(e.account)})) continue;
        ASSERT_EQ(run(e.rule, 0, other_bank, next(e.account)).number.substr(8), next(e.account))
            << int{e.rule};
        ASSERT_EQ(run(45, 0, other_bank, e.account).number.substr(8), e.account);
    }
}

TEST(IbanRules, AccountsListedUnderABankCodeAreReplacedThereOnly) {
    for (const auto& e : replaced_bank_accounts) {
        ASSERT_EQ(run(e.rule, 0, e.bank_code, e.account),
                  (Outcome{1, 0, std::string(e.new_bank_code) + e.new_account}))
            << int{e.rule} << " " << e.bank_code << " " << e.account;
        ASSERT_EQ(run(e.rule, 0, other_bank, e.account),
                  e.rule == 52 ? (Outcome{-1, 12, ""}) : (Outcome{1, 0, other_bank + e.account}));
    }
}

TEST(IbanRules, ListedIbansStandAsTheyAre) {
    for (const auto& e : listed_ibans) {
        char iban[iban_buffer_size] = {};
        ConversionContext context = context_for(other_bank, e.account);
        ASSERT_EQ(apply_iban_rule(e.rule, iban, context), 1);
        ASSERT_STREQ(iban, e.iban);
        ASSERT_EQ(iban_mod97(iban, 22), 1);
        ASSERT_STREQ(context.account, e.iban + 12);
        ASSERT_EQ(context.bank_code, other_bank);
        ASSERT_EQ(context.account_result, 1);
    }
}

TEST(IbanRules, AccountsListedAsValidAre) {
    for (const auto& e : valid_accounts) {
        ConversionContext context = context_for(other_bank, e.account);
        context.account_result = -1;
        ASSERT_EQ(run(e.rule, context), (Outcome{1, 0, other_bank + e.account}));
        ASSERT_EQ(context.account_result, 1) << int{e.rule} << " " << e.account;
    }
    ConversionContext context = context_for(other_bank, "3333");
    context.account_result = -1;
    run(26, context);
    EXPECT_EQ(context.account_result, -1);
}

TEST(IbanRules, RangesGiveTheBankCode) {
    std::map<std::string, std::string> bank_codes; // by the first three digits
    for (const auto& e : bank_code_ranges) {
        ASSERT_EQ(e.last - e.first, 9'999'999);
        bank_codes[std::to_string(e.first / 10'000'000)] = e.bank_code;
    }
    ASSERT_EQ(bank_codes.size(), 458u);
    for (int prefix = 100; prefix <= 999; ++prefix)
        for (const char* rest : {"0000000", "5000000", "9999999"}) {
            const std::string account = std::to_string(prefix) + rest;
            const auto found = bank_codes.find(std::to_string(prefix));
            const std::string bank_code = found != bank_codes.end() ? found->second : other_bank;
            for (const unsigned rule : {31u, 32u, 33u, 34u, 35u})
                ASSERT_EQ(run(rule, 0, other_bank, account), (Outcome{1, 0, bank_code + account})) << rule;
            ASSERT_EQ(run(31, 0, other_bank, account.substr(1)), (Outcome{-1, 0, ""}));
        }
}

TEST(IbanRules, RefusedRangesEndWhereTheyShould) {
    const Outcome refused = {-1, 50, ""};
    for (const auto& e : refused_ranges) {
        EXPECT_EQ(run(36, 0, other_bank, std::to_string(e.first)), refused) << e.first;
        EXPECT_EQ(run(36, 0, other_bank, std::to_string(e.last)), refused) << e.last;
        EXPECT_EQ(run(36, 0, other_bank, std::to_string(e.last + 1)).result, 1) << e.last;
        if (e.first == 0) continue;
        EXPECT_EQ(run(36, 0, other_bank, std::to_string(e.first - 1)).result, 1) << e.first;
    }
    for (const unsigned rule : {32u, 34u, 35u})
        for (const char* account : {"800000000", "899999999"})
            EXPECT_EQ(run(rule, 0, other_bank, account), refused) << rule;
    for (const unsigned rule : {32u, 33u, 34u, 35u})
        for (const char* account : {"799999999", "900000000"})
            EXPECT_EQ(run(rule, 0, other_bank, account), (Outcome{1, 0, other_bank + "0" + account})) << rule;
    for (const auto& e : refusing_bank_codes) {
        for (const char* account : {"998000000", "999499999", "1998000000"})
            EXPECT_EQ(run(5, 0x09, e.bank_code, account), refused) << e.bank_code;
        for (const char* account : {"997999999", "999500000"})
            EXPECT_EQ(run(5, 0x09, e.bank_code, account).result, 1) << e.bank_code;
    }
}

TEST(IbanRules, CentralBankCodes) {
    const std::map<unsigned, std::string> bank_codes = {
        {8, "50020200"},  {9, "68351557"},  {12, "50050000"}, {13, "30050000"}, {14, "30060601"},
        {19, "50120383"}, {21, "36020030"}, {25, "60050101"}, {28, "25050180"}, {36, "21050000"},
        {37, "30010700"}, {38, "28590075"}, {39, "28020050"}, {40, "68052328"}, {46, "31010833"},
        {48, "36010200"}, {50, "28550000"}, {55, "25410200"}};
    for (const auto& [rule, bank_code] : bank_codes)
        for (const std::string& given : {other_bank, bank_code})
            EXPECT_EQ(run(rule, 0, given, "3123456789"), (Outcome{1, 0, bank_code + "3123456789"})) << rule;
}

TEST(IbanRules, StepsOfTheirOwn) {
    const struct {
        unsigned rule;
        std::uint8_t method;
        const char *bank_code, *account;
        Outcome expected;
    } cases[] = {
        {0, 0x00, "10010010", "1234567890", {1, 0, "100100101234567890"}},
        {45, 0x09, "50210130", "1234567890", {1, 0, "502101301234567890"}},
        {1, 0x00, "10060198", "1", {-1, 12, ""}},
        {2, 0x23, "72020700", "600", {-1, 0, ""}},
        {2, 0x23, "72020700", "860", {-1, 0, ""}},
        {2, 0x23, "72020700", "850", {1, 0, "720207000000000850"}},
        {2, 0x23, "72020700", "960", {1, 0, "720207000000000960"}},
        {3, 0x09, "51010800", "6161604670", {-1, 0, ""}},
        {3, 0x09, "51010800", "6161604671", {1, 0, "510108006161604671"}},
        {5, 0x09, "50040033", "1", {-1, 12, ""}},
        {5, 0x76, "10080000", "998761700", {1, 0, "100800000998761700"}},
        // Both readings pass: only six and seven digits are completed.
        {5, 0x13, "23040022", "18", {1, 0, "230400220000000018"}},
        {5, 0x13, "23040022", "20834", {1, 0, "230400220000020834"}},
        {5, 0x13, "23040022", "612283", {1, 0, "230400220061228300"}},
        {5, 0x13, "23040022", "8959926", {1, 0, "230400220895992600"}},
        {5, 0x13, "23040022", "44113940", {1, 0, "230400220044113940"}},
        {5, 0x13, "23040022", "854750543", {-1, 0, ""}}, // would pass if it were short enough to be completed
        {5, 0x13, "37040044", "111", {-1, 0, ""}},
        // Method 76 has no answer for so few digits.
        {5, 0x76, "50080000", "231654", {1, 0, "500800000023165400"}},
        {5, 0x76, "50080000", "43503", {1, 0, "500800000004350300"}},
        {5, 0x76, "50080000", "65432", {1, 0, "500800000006543200"}},
        {5, 0x76, "50080000", "1814706100", {1, 0, "500800001814706100"}},
        {9, 0x00, "68351976", "1116000000", {1, 0, "683515573047000000"}},
        {9, 0x00, other_bank.c_str(), "1117000000", {1, 0, "683515571117000000"}},
        {9, 0x00, other_bank.c_str(), "11160000", {1, 0, "683515570011160000"}},
        {10, 0x09, "50050222", "2000", {1, 0, "500502010000002000"}},
        {10, 0x09, other_bank.c_str(), "2000", {1, 0, "123456780000002000"}},
        {20, 0x63, "10020000", "38150900", {-1, 12, ""}},
        {20, 0x00, "23070700", "1", {1, 0, "230707000000000001"}},
        {20, 0x63, "23070700", "9999", {-1, 0, ""}},
        {20, 0x63, "23070700", "5992", {-1, 0, ""}}, // four digits that pass as given
        {20, 0x63, "23070700", "5306", {-1, 0, ""}}, // and completed
        {20, 0x63, "23070700", "10009", {1, 0, "230707000001000900"}},
        {20, 0x63, "23070700", "80239", {-1, 0, ""}}, // five and six that pass only as given
        {20, 0x63, "23070700", "514002", {-1, 0, ""}},
        {20, 0x63, "23070700", "999995", {1, 0, "230707000099999500"}},
        {20, 0xC7, "23070700", "1000009", {1, 0, "230707000100000900"}},
        {20, 0x63, "23070700", "6433012", {-1, 0, ""}},
        {20, 0x63, "23070700", "66978001", {-1, 0, ""}},   // eight that pass only completed
        {20, 0x63, "23070700", "3744112455", {-1, 0, ""}}, // ten that pass as given
        {21, 0x10, "35020030", "12345", {-1, 0, ""}},
        {21, 0x10, "35020030", "123456", {1, 0, "360200300000123456"}},
        {21, 0x10, "36020030", "1234567", {1, 0, "360200300001234567"}},
        {21, 0x10, "36020030", "12345678", {-1, 0, ""}},
        {21, 0x10, "36020030", "123456789", {1, 0, "360200300123456789"}},
        {29, 0x09, "51210800", "2600123456", {1, 0, "512108000260123456"}},
        {29, 0x09, "51210800", "1231234567", {1, 0, "512108001231234567"}},
        {29, 0x09, "51210800", "120123456", {1, 0, "512108000120123456"}},
        {36, 0xC5, "20050000", "100000", {1, 0, "210500000100000000"}},
        {36, 0xC5, "20050000", "899999", {1, 0, "210500000899999000"}},
        {36, 0xC5, "20050000", "30000025", {1, 0, "210500000030000025"}},
        {42, 0x09, "70000000", "10001000", {1, 0, "700000000010001000"}},
        {42, 0x09, "70000000", "99909999", {1, 0, "700000000099909999"}},
        {42, 0x09, "70000000", "10000999", {-1, 0, ""}},
        {42, 0x09, "70000000", "10011000", {-1, 0, ""}},
        {42, 0x09, "70000000", "110001000", {-1, 0, ""}},
        {42, 0x09, "70000000", "1101000", {-1, 0, ""}},
        {42, 0x09, "70000000", "50461999", {-1, 0, ""}},
        {42, 0x09, "70000000", "50462000", {1, 0, "700000000050462000"}},
        {42, 0x09, "70000000", "50463999", {1, 0, "700000000050463999"}},
        {42, 0x09, "70000000", "50464000", {-1, 0, ""}},
        {42, 0x09, "70000000", "50468999", {-1, 0, ""}},
        {42, 0x09, "70000000", "50469000", {1, 0, "700000000050469000"}},
        {42, 0x09, "70000000", "50469999", {1, 0, "700000000050469999"}},
        {42, 0x09, "70000000", "50470000", {-1, 0, ""}},
        {42, 0x09, "70000000", "1234400001", {1, 0, "700000001234400001"}},
        {42, 0x09, "70000000", "9004499999", {1, 0, "700000009004499999"}},
        {42, 0x09, "70000000", "1234400000", {-1, 0, ""}},
        {42, 0x09, "70000000", "1235400001", {-1, 0, ""}},
        {42, 0x09, "70000000", "1234500001", {-1, 0, ""}},
        {42, 0x09, "70000000", "123456789", {-1, 0, ""}},
        {43, 0xA9, "60651070", "868", {1, 0, "666500850000000868"}},
        {43, 0xA9, "60651071", "868", {1, 0, "606510710000000868"}},
        {47, 0x09, "10033300", "12345678", {1, 0, "100333001234567800"}},
        {47, 0x09, "10033300", "123456789", {1, 0, "100333000123456789"}},
        {47, 0x09, "10033300", "1234567", {1, 0, "100333000001234567"}},
        {49, 0x44, "30060010", "1991182", {1, 0, "300600109911820001"}},
        {49, 0x44, "30060010", "9999999999", {1, 0, "300600109999999999"}},
        {49, 0x44, "30060010", "1871182", {1, 0, "300600100001871182"}},
        {53, 0x59, "60020030", "35000", {1, 0, "600200300000035000"}},
        {56, 0x13, "10010111", "929070100", {-1, 0, ""}},
        {56, 0x13, "10010111", "1000000000", {1, 0, "100101111000000000"}},
        {57, 0x09, "50810900", "1", {1, 0, "660102000000000001"}},
        {57, 0x09, "50810901", "1", {1, 0, "508109010000000001"}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(run(c.rule, c.method, c.bank_code, c.account), c.expected)
            << "rule " << c.rule << ": " << c.bank_code << " " << c.account;

    char iban[iban_buffer_size] = {};
    ConversionContext context = context_for("62220000", "1234567890", 0x09);
    EXPECT_EQ(apply_iban_rule(41, iban, context), 1);
    EXPECT_STREQ(iban, "DE96500604000000011404");
    EXPECT_STREQ(context.account, "1234567890");
    EXPECT_STREQ(context.bank_code, "62220000");

    // What rules 43 and 49 make of the check.
    context = context_for("60651070", "868", 0xA9);
    run(43, context);
    EXPECT_EQ(context.method, 0x06);
    EXPECT_EQ(context.account_result, sepa_account_check("868", 0x06));
    context = context_for("30060010", "1991182", 0x44);
    context.account_result = 1;
    run(49, context);
    EXPECT_EQ(context.account_result, 0);
}

TEST(IbanRules, ThereAreFiftyEight) {
    for (unsigned rule = 0; rule <= 700; ++rule) {
        ConversionContext context = context_for(other_bank, "1000000000");
        char iban[iban_buffer_size] = {};
        EXPECT_EQ(apply_iban_rule(rule, iban, context) == 0, rule > 57) << rule;
    }
}

} // namespace
