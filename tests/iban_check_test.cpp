#include "bank/iban_check.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "bank/iban_countries.h"
#include "base/mod97.h"
#include "message_builder.h"

using namespace velmora;

namespace {

std::string reason(const char* iban) {
    const char* text = nullptr;
    return iban_validate(iban, &text) == 1 ? "" : text;
}

std::string with_check_digits(std::string iban) {
    iban.replace(2, 2, "00");
    const int digits = 98 - iban_mod97(iban.c_str(), iban.size());
    iban[2] = static_cast<char>('0' + digits / 10);
    iban[3] = static_cast<char>('0' + digits % 10);
    return iban;
}

// A text that fits a country's pattern, made from the pattern itself.
std::string sample(const IbanCountry& country, std::mt19937& random) {
    std::string text;
    const char* p = country.pattern + 1;
    while (*p != '$') {
        std::string choices(1, *p);
        if (*p == '[') {
            choices.clear();
            for (++p; *p != ']'; p += 3)
                for (char c = p[0]; c <= p[2]; ++c)
                    choices += c;
        }
        ++p;
        int repeat = 1;
        if (*p == '{') {
            repeat = std::atoi(p + 1);
            p = std::strchr(p, '}') + 1;
        }
        while (repeat-- > 0)
            text += choices[random() % choices.size()];
    }
    return text;
}

TEST(IbanCheck, ReasonsInTheirOrder) {
    const std::pair<const char*, const char*> cases[] = {
        {nullptr, "Invalid IBAN (NULL)"},
        {"", "Invalid or unknown IBAN country code"},
        {"D", "Invalid or unknown IBAN country code"},
        {"XX89370400440532013000", "Invalid or unknown IBAN country code"},
        {"DE", "Wrong IBAN length"},
        {"DE89 3704 0044 0532 0130 00", "Wrong IBAN length"},
        {"de8937040044053201300", "Wrong IBAN length"},
        {"de89370400440532013000", "Invalid IBAN format"},
        {"dE89370400440532013000", "Invalid IBAN format"},
        {"DE8937040044053201300A", "Invalid IBAN format"},
        {"DE89370400440532013 00", "Invalid IBAN format"},
        {"DE99370400440532013000", "Invalid IBAN checksum"},
        {"DE89370400440532013000", ""},
        {"BE68539007547034", ""},
        {"GB29NWBK60161331926819", ""},
        {"GB29nwbk60161331926819", "Invalid IBAN format"},
        {"FR1420041010050500013M02606", ""},
        {"MT84MALT011000012345MTLCAST001S", ""},
        {"AT611904300234573201", ""},
    };
    for (const auto& [iban, text] : cases)
        EXPECT_EQ(reason(iban), text) << (iban ? iban : "(null)");
    EXPECT_EQ(reason(with_check_digits("DE00999999990532013000").c_str()), "Invalid bank ID (BLZ) in IBAN");
    EXPECT_EQ(reason(with_check_digits("DE00370400440532013001").c_str()), ""); // sub-account 01
    EXPECT_EQ(reason(with_check_digits("DE00370400440532013100").c_str()), "Invalid account number in IBAN");
    EXPECT_EQ(reason(with_check_digits("DE00100000001234567890").c_str()), "") << "method 09 checks nothing";

    EXPECT_EQ(sepa_iban_check(nullptr), -1);
    EXPECT_EQ(sepa_iban_check("DE89370400440532013000"), 1);
    EXPECT_EQ(iban_validate("DE", nullptr), 0);
    const char* untouched = "untouched";
    EXPECT_EQ(iban_validate("BE68539007547034", &untouched), 1);
    EXPECT_STREQ(untouched, "untouched");
}

// For every country: texts made from its pattern pass with the right check digits only, and a change of any
// one character is noticed.
TEST(IbanCheck, EveryCountryBySamples) {
    std::mt19937 random(97);
    for (const IbanCountry& country : iban_countries) {
        for (int round = 0; round < 20; ++round) {
            const std::string iban = with_check_digits(sample(country, random));
            ASSERT_EQ(iban.size(), country.length) << country.code;
            const bool is_german = std::strcmp(country.code, "DE") == 0;
            if (!is_german) {
                ASSERT_EQ(reason(iban.c_str()), "") << iban;
            }
            for (std::size_t i = 2; i < iban.size(); ++i) {
                std::string wrong = iban;
                const bool is_letter = wrong[i] >= 'A';
                wrong[i] = is_letter ? (wrong[i] == 'Z' ? 'A' : static_cast<char>(wrong[i] + 1))
                                     : static_cast<char>('0' + (wrong[i] - '0' + 1) % 10);
                EXPECT_EQ(reason(wrong.c_str()), "Invalid IBAN checksum") << wrong;
                wrong[i] = '-';
                EXPECT_EQ(reason(wrong.c_str()), "Invalid IBAN format") << wrong;
            }
            EXPECT_EQ(reason((iban + "0").c_str()), "Wrong IBAN length");
            EXPECT_EQ(reason(iban.substr(0, iban.size() - 1).c_str()), "Wrong IBAN length");
        }
    }
}

TEST(IbanCheck, Mod97CountsLettersOfAnyCaseAndNothingElse) {
    EXPECT_EQ(iban_mod97("gb29nwbk60161331926819", 22), 1);
    EXPECT_EQ(iban_mod97("GB29 NWBK60161331926819", 23), -1);
    EXPECT_EQ(mod97(0, "a", Letters::upper_case), -1);
}

TEST(IbanGetBank, ByCountry) {
    sepa_bank_t* bank = nullptr;
    ASSERT_EQ(sepa_iban_getBank("DE89370400440532013000", &bank), 1);
    EXPECT_STREQ(bank->name, "Commerzbank");
    EXPECT_STREQ(bank->bic, "COBADEFFXXX");
    std::free(bank);
    EXPECT_EQ(sepa_iban_getBank(with_check_digits("CH00001001234567890AB").c_str(), nullptr), 1);
    EXPECT_EQ(sepa_iban_getBank(with_check_digits("LI00001001234567890AB").c_str(), nullptr), 1);
    EXPECT_EQ(sepa_iban_getBank(with_check_digits("AT009999900234573201").c_str(), nullptr), -2);
    EXPECT_EQ(sepa_iban_getBank("BE68539007547034", nullptr), 0);
    EXPECT_EQ(sepa_iban_getBank("BE68539007547035", nullptr), -1);
    EXPECT_EQ(sepa_iban_getBank(nullptr, nullptr), -1);
}

// Pattern functions put in place by the caller are the ones that are called.
int compilations = 0, executions = 0, releases = 0, failing_compilation = 0;

int counting_regcomp(regex_t* pattern, const char* text, int flags) {
    EXPECT_EQ(flags, REG_EXTENDED);
    return ++compilations == failing_compilation ? REG_ESPACE : regcomp(pattern, text, flags);
}
int counting_regexec(const regex_t* pattern, const char* text, size_t n, regmatch_t* matches, int flags) {
    EXPECT_TRUE(n == 0 && matches == nullptr && flags == 0);
    ++executions;
    return regexec(pattern, text, n, matches, flags);
}
void counting_regfree(regex_t* pattern) {
    ++releases;
    regfree(pattern);
}

TEST(Patterns, GoThroughTheExportedPointers) {
    sepa_cleanup();
    libc_regex_init();
    EXPECT_TRUE(libc_regcomp != nullptr && libc_regexec != nullptr && libc_regfree != nullptr);
    libc_regcomp = counting_regcomp;
    libc_regexec = counting_regexec;
    libc_regfree = counting_regfree;
    libc_regex_init();
    EXPECT_EQ(libc_regcomp, &counting_regcomp) << "a pointer that is set stays";

    failing_compilation = 20;
    EXPECT_EQ(reason("BE68539007547034"), "Error while initializing regular expressions");
    EXPECT_EQ(compilations, 20);
    EXPECT_EQ(releases, 0);
    EXPECT_EQ(reason("BE68539007547034"), "");
    EXPECT_EQ(compilations, 20 + 37) << "every pattern again, from the first";
    EXPECT_EQ(reason("BE68539007547034"), "");
    EXPECT_EQ(compilations, 20 + 37);
    EXPECT_EQ(executions, 2);

    const auto message = test::new_message(SEPA_MSGTYPE_DDI);
    failing_compilation = 20 + 37 + 1;
    EXPECT_EQ(sepa_setBIC(message.get(), "COBADEFF"), 0);
    EXPECT_EQ(test::error(message), "sepa_setBIC: invalid BIC format");
    EXPECT_EQ(sepa_setBIC(message.get(), "COBADEFF"), 1);
    releases = 0;
    sepa_cleanup();
    EXPECT_EQ(releases, 37 + 1);
    sepa_cleanup();
    EXPECT_EQ(releases, 37 + 1);
    EXPECT_EQ(reason("BE68539007547034"), "");
    sepa_cleanup();
}

} // namespace
