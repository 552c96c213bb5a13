// The entry points of the account check: what they accept, and which method a code selects.

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "checkdigit/arithmetic.h"
#include "velmora.h"

namespace velmora {
namespace {

constexpr char bank_code[] = "13051172";

// The text in a buffer of exactly its size, so that reading on is noticed.
std::unique_ptr<char[]> exact(const std::string& text) {
    auto copy = std::make_unique<char[]>(text.size() + 1);
    text.copy(copy.get(), text.size());
    return copy;
}

TEST(AccountCheck, BadInputIsInvalid) {
    const char* const accounts[] = {nullptr, "", "00000000000", "12345678901", "00009290701"};
    for (int method = 0; method <= 0xFF; ++method) {
        const auto code = static_cast<uint8_t>(method);
        for (const char* account : accounts) {
            EXPECT_EQ(sepa_account_check(account, code), -1);
            EXPECT_EQ(sepa_account_check2(account, bank_code, code), -1);
            EXPECT_EQ(sepa_account_check2(account, nullptr, code), -1);
        }
        for (const char* wrong : {"", "1", "1305117", "130511720", "1305117200000"})
            EXPECT_EQ(sepa_account_check2("9290701", wrong, code), -1);
        EXPECT_EQ(sepa_account_check2("9290701", nullptr, code), -1);
    }
}

TEST(AccountCheck, LeadingZerosMayBeLeftOut) {
    for (const std::string account : {"0009290701", "009290701", "09290701", "9290701"}) {
        const auto copy = exact(account);
        EXPECT_EQ(sepa_account_check(copy.get(), 0x00), 1);
        EXPECT_EQ(sepa_account_check2(copy.get(), exact(bank_code).get(), 0x00), 1);
    }
    EXPECT_EQ(sepa_account_check("0", 0x00), 1);
    EXPECT_EQ(sepa_account_check(exact("2847169488").get(), 0x27), 1);
    EXPECT_EQ(sepa_account_check("9290700", 0x00), -1);
}

// Every account of a method that exists is right or wrong somewhere; all other codes have nothing to say.
TEST(AccountCheck, CodesWithoutMethodAreNotCheckable) {
    std::mt19937 random(1);
    std::vector<std::string> accounts;
    for (int i = 0; i < 2000; ++i)
        accounts.push_back(std::to_string(random() % 10000000000));
    const auto checks_something = [&](int method, bool with_bank_code) {
        for (const std::string& account : accounts) {
            const auto code = static_cast<uint8_t>(method);
            const int result = with_bank_code ? sepa_account_check2(account.c_str(), bank_code, code)
                                              : sepa_account_check(account.c_str(), code);
            if (result != 0) return true;
        }
        return false;
    };
    const std::string without_method =
        "12 35 36 37 39 54 62 69 70 72 77 79 80 82 83 86 89 97 A0 B0 B4 E5 E6 E7 E8 E9 ";
    const std::string with_bank_code_only = "52 53 B6 C0 ";
    for (int method = 0; method <= 0xFF; ++method) {
        char name[] = {"0123456789ABCDEF"[method >> 4], "0123456789ABCDEF"[method & 15], ' ', '\0'};
        const bool needs_bank_code = with_bank_code_only.find(name) != std::string::npos;
        const bool none = (method & 15) > 9 || method > 0xEF || method == 0x09 ||
                          without_method.find(name) != std::string::npos;
        EXPECT_EQ(checks_something(method, false), !none && !needs_bank_code) << name;
        EXPECT_EQ(checks_something(method, true), !none) << name;
    }
}

// Both methods that look at the bank code fall back on method 20.
TEST(AccountCheck, BankCodeMethods) {
    const auto by = [](uint8_t method, const std::string& account, const char* bank) {
        return sepa_account_check2(account.c_str(), bank, method);
    };
    EXPECT_EQ(by(0x52, "43001500", "13051172"), 1);
    EXPECT_EQ(by(0x52, "43001500", "13051173"), -1);
    EXPECT_EQ(by(0x52, "3001500", "13051172"), -1);
    EXPECT_EQ(by(0x53, "382432256", "16052072"), 1);
    EXPECT_EQ(by(0x53, "382432256", "16052082"), 1); // the seventh digit is replaced
    EXPECT_EQ(by(0x53, "382432256", "16052172"), -1);
    EXPECT_EQ(by(0xB6, "382432256", "16052072"), 1);
    EXPECT_EQ(by(0xC0, "43001500", "13051172"), 1);

    int differing = 0, second_variant = 0;
    for (int i = 0; i < 1000; ++i) {
        const std::string tail = std::to_string(1000 + i);
        for (const std::string first : {"1", "9"}) {
            const std::string account = first + "02691" + tail;
            EXPECT_EQ(by(0xB6, account, bank_code), by(0x20, account, bank_code)) << account;
        }
        for (const std::string first : {"02691", "02699"}) {
            const std::string account = first + tail + "7";
            EXPECT_EQ(by(0xB6, account, bank_code), by(0x20, account, bank_code)) << account;
            differing += by(0xB6, account, bank_code) != by(0x53, account, bank_code);
        }
        for (const std::string first : {"02690", "02680", "02790", "00269"}) {
            const std::string account = first + tail + "7";
            EXPECT_EQ(by(0xB6, account, bank_code), by(0x53, account, bank_code)) << account;
        }
        const std::string eight = "43" + tail + "00", nine = "9" + eight;
        const int first_variant = by(0x52, eight, bank_code);
        EXPECT_EQ(by(0xC0, eight, bank_code), first_variant == 1 ? 1 : by(0x20, eight, bank_code)) << eight;
        second_variant += first_variant == -1 && by(0xC0, eight, bank_code) == 1;
        EXPECT_EQ(by(0xC0, nine, bank_code), by(0x20, nine, bank_code)) << nine;
    }
    EXPECT_GT(differing, 0);
    EXPECT_GT(second_variant, 0);
}

// A character that is no digit counts as its distance from "0"; only methods with tables by digit refuse it.
TEST(AccountCheck, OtherCharactersAreCountedLikeDigits) {
    EXPECT_EQ(sepa_account_check("A3", 0x00), 1);  // 17 twice is 34, its digit sum 7
    EXPECT_EQ(sepa_account_check("A6", 0x03), 1);  // 34 as it is
    EXPECT_EQ(sepa_account_check("A0", 0x06), 1);  // 34 leaves 1
    EXPECT_EQ(sepa_account_check("B8", 0x06), 1);  // 36 leaves 3
    EXPECT_EQ(sepa_account_check(" :", 0x10), -1); // -32 leaves -10: 21, written 1
    EXPECT_EQ(sepa_account_check(" 1", 0x10), 1);
    EXPECT_EQ(sepa_account_check("50000000:", 0x31), -1); // remainder 10 stays impossible
    EXPECT_EQ(sepa_account_check("000000004:", 0xE1), -1);
    EXPECT_EQ(sepa_account_check("1A00000000", 0x29), -1);
    EXPECT_EQ(sepa_account_check("A000000000", 0xC6), -1);

    std::mt19937 random(2);
    for (int i = 0; i < 20000; ++i) {
        std::string account(1 + random() % 10, '0'), bank(8, '0');
        for (char& c : account)
            c = static_cast<char>(random() % 2 ? '0' + random() % 10 : 1 + random() % 255);
        for (char& c : bank)
            c = static_cast<char>(1 + random() % 255);
        for (int method = 0; method <= 0xFF; ++method) {
            const auto code = static_cast<uint8_t>(method);
            const int result = sepa_account_check2(account.c_str(), bank.c_str(), code);
            ASSERT_GE(result, -1);
            ASSERT_LE(result, method == 0x76 ? 2 : 1);
        }
    }
}

// The helpers give the check digits of their definitions where the methods do not tell them apart.
TEST(AccountCheck, SharedArithmetic) {
    const Weights stem = weights_from(P7, 2, 1, 2, 1, 2, 1);
    EXPECT_EQ(check_crosssum_weighted("0446786600", 10, P8, stem), account_valid);
    EXPECT_EQ(check_crosssum_weighted("0446786310", 10, P8, stem), account_invalid);
    EXPECT_EQ(check_crosssum_weighted("0000000010", 11, P10, weights_from(P9, 1)), account_invalid);
    EXPECT_EQ(check_weighted_mod("0000000010", 11, P10, weights_from(P9, 1)), account_valid);
    EXPECT_EQ(check_mod11_ten_is_zero("0000000010", P10, weights_from(P9, 1)), account_valid);
    EXPECT_EQ(check_mod11_tail("0010000003", 8, 0, 0), account_valid);
    EXPECT_EQ(check_mod11_tail("0000000060", 8, 0, 0), account_invalid); // would need ten
    EXPECT_EQ(check_mod11_five_digits("0000000060"), account_invalid);
    EXPECT_EQ(check_mod11_five_digits("0000000061"), account_invalid);
    EXPECT_EQ(check_ledger_account("0000000060"), account_valid);
    EXPECT_EQ(check_ledger_account("1090000013"), account_valid); // positions 9 to 3
    EXPECT_EQ(check_ledger_account("1090000014"), account_valid); // all of them
    EXPECT_EQ(check_ledger_account("1090000015"), account_invalid);
}

} // namespace
} // namespace velmora
