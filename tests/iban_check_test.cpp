#include "bank/iban_check.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include "bank/bic.h"
#include "bank/iban_countries.h"
#include "base/mod97.h"
#include "message_builder.h"

using namespace velmora;

namespace {

std::string reason(const char* iban, Countries countries = Countries::established) {
    const char* text = nullptr;
    return iban_validate(iban, &text, countries) == 1 ? "" : text;
}

std::string with_check_digits(std::string iban) {
    iban.replace(2, 2, "00");
    const int digits = 98 - iban_mod97(iban.c_str(), iban.size());
    iban[2] = static_cast<char>('0' + digits / 10);
    iban[3] = static_cast<char>('0' + digits % 10);
    return iban;
}

// With the structure behind their check digits: "4a6n8c" are letters, digits, and either.
std::vector<std::pair<std::string, std::string>> published_ibans() {
    std::ifstream file(VELMORA_SOURCE_DIR "/tests/data/ibans.txt");
    std::vector<std::pair<std::string, std::string>> ibans;
    for (std::string line; std::getline(file, line);)
        if (line[0] != '#')
            ibans.emplace_back(line.substr(0, line.find(' ')), line.substr(line.find(' ') + 1));
    return ibans;
}

// The structure that the library sees.
std::string structure_of(const std::string& iban) {
    const auto takes = [&](std::size_t at, char c) {
        std::string text = iban;
        text[at] = c;
        return reason(text.c_str(), Countries::all_sepa) != "Invalid IBAN format";
    };
    std::string structure;
    char kind = '\0';
    for (std::size_t at = 4, begin = at; at <= iban.size(); ++at) {
        const char next = at == iban.size() ? '\0' : !takes(at, '0') ? 'a' : takes(at, 'A') ? 'c' : 'n';
        if (next != kind && at > begin) structure += std::to_string(at - std::exchange(begin, at)) + kind;
        kind = next;
    }
    return structure;
}

// Another letter or digit of the same kind at random.
char replaced(char c, std::mt19937& random) {
    const auto moved = [&](char first, unsigned count) {
        const auto step = static_cast<unsigned>(c - first) + 1 + random() % (count - 1);
        return static_cast<char>(first + static_cast<int>(step % count));
    };
    return c >= 'A' ? moved('A', 26) : moved('0', 10);
}

TEST(IbanCheck, ReasonIsStoredForRefusedIbansOnly) {
    EXPECT_EQ(reason(nullptr), "Invalid IBAN (NULL)");
    EXPECT_EQ(iban_validate("DE", nullptr), 0);
    const char* untouched = "untouched";
    EXPECT_EQ(iban_validate("BE68539007547034", &untouched), 1);
    EXPECT_STREQ(untouched, "untouched");
}

TEST(IbanCheck, PublishedIbansOfEveryCountry) {
    std::mt19937 random(97);
    std::set<std::string> countries;
    for (const auto& [iban, structure] : published_ibans()) {
        countries.insert(iban.substr(0, 2));
        const IbanCountry* country = find_iban_country(iban.c_str(), Countries::all_sepa);
        ASSERT_NE(country, nullptr) << iban;
        const bool established = country->known_to == Countries::established;
        EXPECT_EQ(reason(iban.c_str()), established ? "" : "Invalid or unknown IBAN country code") << iban;
        EXPECT_EQ(reason(iban.c_str(), Countries::all_sepa), "");
        EXPECT_EQ(sepa_iban_check(iban.c_str()), established ? 1 : -1);
        EXPECT_EQ(structure_of(iban), structure) << iban;
        for (std::size_t i = 2; i < iban.size(); ++i) {
            std::string wrong = iban;
            wrong[i] = replaced(wrong[i], random);
            EXPECT_EQ(reason(wrong.c_str(), Countries::all_sepa), "Invalid IBAN checksum") << wrong;
        }
        EXPECT_EQ(reason((iban + "0").c_str(), Countries::all_sepa), "Wrong IBAN length");
        EXPECT_EQ(reason(iban.substr(0, iban.size() - 1).c_str(), Countries::all_sepa), "Wrong IBAN length");
    }
    EXPECT_EQ(countries.size(), std::size(iban_countries));
}

// Whether a text fits a pattern, as libc reads it in the C locale.
class LibcPattern {
public:
    explicit LibcPattern(const char* text) { EXPECT_EQ(regcomp(&pattern_, text, REG_EXTENDED), 0); }
    ~LibcPattern() { regfree(&pattern_); }
    bool fits(const std::string& text) const { return regexec(&pattern_, text.c_str(), 0, nullptr, 0) == 0; }

private:
    regex_t pattern_;
};

// A text with some characters replaced by any byte or by those next to the classes' ends.
std::string mutated(std::string text, std::mt19937& random) {
    constexpr std::string_view edges = "/09:@AZ[`az{ONPI12\xB0\xC1";
    for (auto count = random() % 4; count > 0; --count)
        text[random() % text.size()] =
            random() % 4 == 0 ? static_cast<char>(random() % 255 + 1) : edges[random() % edges.size()];
    return text;
}

TEST(Formats, EqualLibcsPatternsOnMutatedTexts) {
    std::mt19937 random(13616);
    for (const auto& [iban, structure] : published_ibans()) {
        const IbanCountry* country = find_iban_country(iban.c_str(), Countries::all_sepa);
        const LibcPattern pattern(country->pattern);
        for (int i = 0; i < 2'000; ++i) {
            const std::string text = iban.substr(0, 2) + mutated(iban.substr(2), random);
            EXPECT_EQ(reason(text.c_str(), Countries::all_sepa) != "Invalid IBAN format", pattern.fits(text))
                << text;
        }
    }
    const LibcPattern bic("^[A-Z]{6}[A-Z2-9][A-NP-Z0-9]([A-Z0-9]{3})?$");
    for (const std::string text :
         {"COBADEFFXXX", "COBADEFF", "AAAAAA2A", "AAAAAAAA000", "COBADEFF1", "A", ""})
        for (int i = 0; i < 20'000; ++i) {
            const std::string wrong = text.empty() ? text : mutated(text, random);
            EXPECT_EQ(is_bic(wrong.c_str()), bic.fits(wrong)) << wrong;
        }
    EXPECT_FALSE(is_bic(nullptr));
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

// The pointers are null until a check of an IBAN or a BIC fills them, or a field of a structured address;
// what a caller puts there stays.
TEST(LibcRegex, PointersAreFilledByTheFirstCheck) {
    sepa_init(SEPA_INIT_RULEBOOK, "DE-3.7");
    const auto message = test::new_message(SEPA_MSGTYPE_CTI);
    const char* address[] = {"addrTown", "Berlin", nullptr};
    const std::function<void()> checks[] = {[] { sepa_iban_check("x"); },
                                            [&] { sepa_setBIC(message.get(), "COBADEFF"); },
                                            [&] { sepa_add(message.get(), address); }, libc_regex_init};
    EXPECT_EQ(sepa_iban_check(nullptr), -1);
    for (const auto& check : checks) {
        EXPECT_EQ(libc_regcomp, nullptr);
        check();
        EXPECT_EQ(libc_regcomp, &regcomp);
        EXPECT_EQ(libc_regexec, &regexec);
        EXPECT_EQ(libc_regfree, &regfree);
        libc_regexec = nullptr;
        check();
        EXPECT_EQ(libc_regexec, nullptr);
        sepa_cleanup();
        EXPECT_EQ(libc_regcomp, &regcomp);
        libc_regcomp = nullptr;
    }
}

} // namespace
