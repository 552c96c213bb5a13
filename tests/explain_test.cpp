// Why texts are refused, how they are meant, and what they could be meant to be.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "bank/iban_check.h"
#include "velmora.h"

using namespace velmora;

namespace {

std::string describe(int result, const sepa_finding_t& found) {
    std::ostringstream text;
    text << result << " " << found.code << " " << found.position << " " << found.length << " "
         << found.expected << " " << (found.method[0] == '\0' ? "-" : found.method) << "|" << found.text;
    return text.str();
}

// The bytes that a cell of the table stands for.
std::string unescaped(const std::string& cell) {
    std::string text;
    for (std::size_t i = 0; i < cell.size(); ++i)
        if (cell[i] != '\\')
            text += cell[i];
        else if (cell[++i] == 'n')
            text += '\n';
        else
            text += static_cast<char>(std::stoi(cell.substr((i += 2) - 1, 2), nullptr, 16));
    return text;
}

TEST(Explain, TableOfFindings) {
    std::ifstream file(VELMORA_SOURCE_DIR "/tests/data/findings.txt");
    int cases = 0;
    for (std::string line; std::getline(file, line); ++cases) {
        if (line[0] == '#') continue;
        const std::size_t first = line.find('|'), second = line.find('|', first + 1);
        const std::string function = line.substr(0, first), expected = line.substr(second + 1);
        std::string cell = line.substr(first + 1, second - first - 1), bank_cell;
        if (const std::size_t slash = cell.find('/'); function == "account") {
            bank_cell = cell.substr(slash + 1);
            cell.resize(slash);
        }
        const std::string text = unescaped(cell);
        const char* const input = cell == "(null)" ? nullptr : text.c_str();
        const char* const bank_code = bank_cell == "(null)" ? nullptr : bank_cell.c_str();
        sepa_finding_t found = {};
        const auto explain = [&](sepa_finding_t* finding) {
            return function == "iban"  ? sepa_iban_explain(input, finding)
                   : function == "bic" ? sepa_bic_explain(input, finding)
                                       : sepa_account_explain(input, bank_code, finding);
        };
        const int result = explain(&found);
        EXPECT_EQ(describe(result, found), expected) << line;
        EXPECT_EQ(explain(nullptr), result);
    }
    EXPECT_GT(cases, 50);
}

std::vector<std::string> published_ibans() {
    std::ifstream file(VELMORA_SOURCE_DIR "/tests/data/ibans.txt");
    std::vector<std::string> ibans;
    for (std::string line; std::getline(file, line);)
        if (line[0] != '#') ibans.push_back(line.substr(0, line.find(' ')));
    return ibans;
}

// Typing errors, blanks, small letters, a word in front, any bytes.
std::string mistyped(std::string text, std::mt19937& random) {
    constexpr std::string_view characters = "0123456789ABCDEFOZabz -.:\t\xC3\xBC\xFF";
    const auto any = [&] { return characters[random() % characters.size()]; };
    for (auto count = random() % 3; count > 0; --count) {
        const std::size_t at = random() % text.size();
        switch (random() % 7) {
        case 0:
            text[at] = any();
            break;
        case 1:
            text.insert(at, 1, any());
            break;
        case 2:
            if (text.size() > 2) text.erase(at, 1);
            break;
        case 3:
            text.insert(at, " ");
            break;
        case 4:
            std::transform(text.begin(), text.end(), text.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; });
            break;
        case 5:
            text.insert(0, random() % 2 == 0 ? "IBAN " : "iban:");
            break;
        default:
            std::swap(text[at], text[random() % text.size()]);
        }
    }
    return text;
}

// The explanation agrees with the check, and what it says is true of the text.
TEST(Explain, AgreesWithTheCheck) {
    const std::vector<std::string> ibans = published_ibans();
    std::mt19937 random(22);
    std::set<int> codes;
    for (int i = 0; i < 600'000; ++i) {
        const std::string text = mistyped(ibans[random() % ibans.size()], random);
        const char* reason = nullptr;
        const bool is_valid = iban_validate(text.c_str(), &reason, Countries::all_sepa) == 1;
        sepa_finding_t found;
        ASSERT_EQ(sepa_iban_explain(text.c_str(), &found), is_valid ? 1 : -1) << text;
        codes.insert(found.code);
        const IbanCountry* country = find_iban_country(text.c_str(), Countries::all_sepa);
        if (country == nullptr || country->known_to == Countries::established) {
            ASSERT_EQ(sepa_iban_check(text.c_str()), is_valid ? 1 : -1) << text;
        }
        char typed[40] = "";
        const bool is_normalised =
            sepa_iban_normalise(text.c_str(), typed, sizeof typed) == 1 && typed != text;
        const bool is_meant = is_normalised && iban_validate(typed, nullptr, Countries::all_sepa) == 1;
        if (is_valid) {
            ASSERT_TRUE(found.code == SEPA_FINDING_OK || found.code == SEPA_FINDING_UNCHECKED);
            continue;
        }
        ASSERT_STREQ(found.text, reason) << text;
        ASSERT_EQ(found.code == SEPA_FINDING_LOWER_CASE || found.code == SEPA_FINDING_SPACES, is_meant)
            << text;
        ASSERT_LE(found.position + found.length, static_cast<int>(text.size())) << text;
        if (found.code == SEPA_FINDING_CHECK_DIGITS) {
            std::string repaired = text;
            repaired[2] = static_cast<char>('0' + found.expected / 10);
            repaired[3] = static_cast<char>('0' + found.expected % 10);
            const int result = iban_validate(repaired.c_str(), &(reason = ""), Countries::all_sepa);
            ASSERT_STRNE(reason, "Invalid IBAN checksum") << text;
            ASSERT_EQ(sepa_iban_explain(repaired.c_str(), &found), result == 1 ? 1 : -1) << repaired;
            codes.insert(found.code);
        } else {
            ASSERT_GE(found.position, 0) << text;
        }
    }
    EXPECT_EQ(codes, (std::set<int>{0, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 15}));
}

TEST(Normalise, LeavesOutBlanksAndTheWordInFront) {
    const std::pair<std::string, const char*> cases[] = {
        {"", ""},
        {" \t\r\n", ""},
        {"de89 3704", "DE893704"},
        {"IBAN: de89", "DE89"},
        {" iban de\xC2\xA0"
         "89\xE2\x80\xAF"
         "00",
         "DE8900"},
        {"I B A N : DE", "DE"},
        {"IBA DE", "IBADE"},
        {"IBANIBAN", "IBAN"},
        {"x-\xC3\xA4", "X-\xC3\xA4"},
    };
    for (const auto& [text, expected] : cases) {
        std::string place = text + '\0';
        EXPECT_EQ(sepa_iban_normalise(place.c_str(), place.data(), place.size()), 1) << text;
        EXPECT_STREQ(place.c_str(), expected);
    }
    char small[5] = "xxxx";
    EXPECT_EQ(sepa_iban_normalise("DE 89", small, 5), 1);
    EXPECT_EQ(sepa_iban_normalise("DE 89 ", small, 4), -1);
    EXPECT_STREQ(small, "");
    EXPECT_EQ(sepa_iban_normalise(nullptr, small, 4), -1);
    EXPECT_EQ(sepa_iban_normalise("DE", nullptr, 4), -1);
    EXPECT_EQ(sepa_iban_normalise("DE", small, 0), -1);
    const std::string megabyte(1'000'000, ' ');
    EXPECT_EQ(sepa_iban_explain(megabyte.c_str(), nullptr), -1);
    EXPECT_EQ(sepa_iban_explain(("DE" + std::string(1'000'000, '0')).c_str(), nullptr), -1);
}

// A German IBAN at a bank of the directory whose account can be checked.
std::string random_iban(std::mt19937& random, const std::vector<std::string>& bank_codes) {
    for (sepa_finding_t found;;) {
        std::string iban = "DE00" + bank_codes[random() % bank_codes.size()];
        while (iban.size() < 22)
            iban += static_cast<char>('0' + random() % 10);
        sepa_iban_explain(iban.c_str(), &found);
        iban[2] = static_cast<char>('0' + found.expected / 10);
        iban[3] = static_cast<char>('0' + found.expected % 10);
        if (sepa_iban_check(iban.c_str()) == 1) return iban;
    }
}

std::vector<std::string> suggestions(const std::string& iban) {
    char place[69];
    const int count = sepa_iban_suggest(iban.c_str(), place, sizeof place);
    std::istringstream words(place);
    std::vector<std::string> candidates;
    for (std::string word; words >> word;)
        candidates.push_back(word);
    EXPECT_EQ(candidates.size(), static_cast<std::size_t>(count)) << iban;
    return candidates;
}

// With one error the truth is found as long as there is room for all candidates; alone as often as measured
// when the limits of suggestions were set.
TEST(Suggest, FindsWhatWasMeant) {
    std::mt19937 random(7);
    std::vector<std::string> bank_codes;
    char code[12];
    for (std::uint32_t index = 0; sepa_bank_next("DE", &index, code, nullptr) == 1;)
        bank_codes.emplace_back(code);
    constexpr int rounds = 1'500;
    int alone[2] = {};
    for (const bool is_swap : {false, true})
        for (int i = 0; i < rounds; ++i) {
            const std::string meant = random_iban(random, bank_codes);
            std::string typed = meant;
            while (typed == meant) {
                const std::size_t at = 2 + random() % 19;
                if (is_swap)
                    std::swap(typed[at], typed[at + 1]);
                else
                    typed[at] = static_cast<char>('0' + random() % 10);
            }
            const std::vector<std::string> candidates = suggestions(typed);
            const bool found = std::count(candidates.begin(), candidates.end(), meant) == 1;
            ASSERT_TRUE(found || candidates.size() == 3) << typed << " for " << meant;
            alone[is_swap] += candidates.size() == 1;
            for (const std::string& candidate : candidates)
                ASSERT_EQ(sepa_iban_check(candidate.c_str()), 1);
        }
    EXPECT_NEAR(alone[0], rounds * 0.68, rounds * 0.05);
    EXPECT_NEAR(alone[1], rounds * 0.61, rounds * 0.05);
}

TEST(Suggest, OnlyWhereItIsHonestAndFits) {
    for (const char* iban :
         {"DE89370400440532013000", "FR1520041010050500013M02606", "BE68539007547035",
          "DE8937040044053201300", "DE893704004405320130000", "DE8937040044053201300O", "DE", ""})
        EXPECT_TRUE(suggestions(iban).empty()) << iban;
    EXPECT_EQ(suggestions("de98 3704 0044 0532 0130 00"), suggestions("DE98370400440532013000"));
    const std::string typed = "DE98370400440532013000";
    const std::vector<std::string> all = suggestions(typed);
    ASSERT_FALSE(all.empty());
    EXPECT_EQ(all[0], "DE89370400440532013000") << "swaps come first";
    for (std::size_t size = 0; size < 69; ++size) {
        std::string place(70, '#');
        const int count = sepa_iban_suggest(typed.c_str(), place.data(), size);
        const auto fitting = static_cast<int>(std::min(all.size(), size == 0 ? 0 : (size - 1 + 1) / 23));
        EXPECT_EQ(count, fitting) << size;
        EXPECT_EQ(place.substr(size), std::string(70 - size, '#'));
    }
    EXPECT_EQ(sepa_iban_suggest(typed.c_str(), nullptr, 69), 0);
    char place[69];
    EXPECT_EQ(sepa_iban_suggest(nullptr, place, sizeof place), 0);
}

} // namespace
