// Why texts are refused, how they are meant, and what they could be meant to be.
#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <utility>
#include <vector>

#include "bank/iban_check.h"
#include "velmora.h"

using namespace velmora;

namespace {

// The first four cells of each line of a file under tests/data.
std::vector<std::array<std::string, 4>> rows_of(const std::string& name, char separator) {
    std::ifstream file(VELMORA_SOURCE_DIR "/tests/data/" + name);
    std::vector<std::array<std::string, 4>> rows;
    for (std::string line; std::getline(file, line);) {
        if (line[0] == '#') continue;
        std::istringstream cells(line);
        for (std::string& cell : rows.emplace_back())
            std::getline(cells, cell, separator);
    }
    return rows;
}

// Of a suggestion: how many, and which.
std::string suggested(const std::string& iban) {
    char candidates[69];
    const int count = sepa_iban_suggest(iban.c_str(), candidates, sizeof candidates);
    return std::to_string(count) + (count > 0 ? " " : "") + candidates;
}

std::string answer(const std::string& function, const std::string& text, sepa_finding_t* found) {
    const std::string account = text.substr(0, text.find('/')), bank_code = text.substr(text.find('/') + 1);
    const auto given = [](const std::string& cell) { return cell == "(null)" ? nullptr : cell.c_str(); };
    char typed[40];
    if (function == "normalise")
        return sepa_iban_normalise(text.c_str(), typed, sizeof typed) == 1 ? typed : "";
    if (function == "suggest") return suggested(text);
    const int result = function == "iban"  ? sepa_iban_explain(given(text), found)
                       : function == "bic" ? sepa_bic_explain(given(text), found)
                                           : sepa_account_explain(given(account), given(bank_code), found);
    if (found == nullptr) return std::to_string(result);
    std::ostringstream out;
    out << result << " " << found->code << " " << found->position << " " << found->length << " "
        << found->expected << " " << (found->method[0] == '\0' ? "-" : found->method) << "|" << found->text;
    return out.str();
}

TEST(Explain, TableOfFindings) {
    for (const auto& [function, text, expected, reason] : rows_of("findings.txt", '|')) {
        sepa_finding_t found;
        EXPECT_EQ(answer(function, text, &found), expected + (reason.empty() ? "" : "|") + reason) << text;
        EXPECT_TRUE(expected.starts_with(answer(function, text, nullptr))) << text;
    }
}

// Typing errors, blanks, small letters, a word in front, any bytes.
std::string mistyped(std::string text, std::mt19937& random) {
    constexpr std::string_view characters = "0123456789ABCDEFOZabz -.:\t\xC3\xBC\xFF";
    for (auto count = random() % 3; count > 0; --count) {
        const std::size_t at = random() % text.size();
        const char any = characters[random() % characters.size()];
        switch (random() % 6) {
        case 0:
            text.insert(at, 1, any);
            break;
        case 1:
            text.insert(at, " ");
            break;
        case 2:
            text.insert(0, random() % 2 == 0 ? "IBAN " : "iban:");
            break;
        case 3:
            for (char& c : text)
                if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
            break;
        case 4:
            std::swap(text[at], text[random() % text.size()]);
            break;
        default:
            text[at] = any;
        }
    }
    if (random() % 8 == 0) text.pop_back();
    return text;
}

// The explanation agrees with the check, and what it says is true of the text.
TEST(Explain, AgreesWithTheCheck) {
    const auto ibans = rows_of("ibans.txt", ' ');
    std::mt19937 random(22);
    std::set<int> codes;
    std::string repaired;
    for (int i = 0; i < 600'000; ++i) {
        const std::string text = repaired.empty() ? mistyped(ibans[random() % ibans.size()][0], random)
                                                  : std::exchange(repaired, "");
        const char* reason = nullptr;
        const int expected = iban_validate(text.c_str(), &reason, Countries::all_sepa) == 1 ? 1 : -1;
        sepa_finding_t found;
        ASSERT_EQ(sepa_iban_explain(text.c_str(), &found), expected) << text;
        const IbanCountry* country = find_iban_country(text.c_str(), Countries::all_sepa);
        const bool is_later = country != nullptr && country->known_to == Countries::all_sepa;
        ASSERT_EQ(sepa_iban_check(text.c_str()), is_later ? -1 : expected) << text;
        codes.insert(found.code);
        if (expected == 1) continue;

        ASSERT_STREQ(found.text, reason) << text;
        ASSERT_LE(found.position + found.length, static_cast<int>(text.size())) << text;
        char typed[40];
        const bool is_meant = sepa_iban_normalise(text.c_str(), typed, sizeof typed) == 1 &&
                              iban_validate(typed, nullptr, Countries::all_sepa) == 1;
        ASSERT_EQ(found.code == SEPA_FINDING_LOWER_CASE || found.code == SEPA_FINDING_SPACES, is_meant)
            << text;
        ASSERT_EQ(found.code == SEPA_FINDING_CHECK_DIGITS, found.position < 0) << text;
        if (found.code == SEPA_FINDING_CHECK_DIGITS)
            (repaired = text).replace(2, 2, std::to_string(100 + found.expected).substr(1));
    }
    EXPECT_EQ(codes, (std::set<int>{0, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 15}));
}

// With one error the truth is found as long as there is room for all candidates, and alone, or first, as
// often as it was when the limits of suggestions were set.
TEST(Suggest, FindsWhatWasMeant) {
    std::mt19937_64 random(7);
    constexpr int rounds = 1'500;
    int alone[2] = {}, first[2] = {};
    for (int round = 0; round < 2 * rounds;) {
        char code[12];
        auto index = static_cast<std::uint32_t>(random() % 3'000);
        sepa_bank_next("DE", &index, code, nullptr);
        std::string meant =
            "DE00" + std::string(code) + std::to_string(random() % 10'000'000'000 + 10'000'000'000).substr(1);
        sepa_finding_t found;
        sepa_iban_explain(meant.c_str(), &found);
        meant.replace(2, 2, std::to_string(100 + found.expected).substr(1));
        if (sepa_iban_check(meant.c_str()) != 1) continue;
        std::string typed = meant;
        const int kind = round % 2;
        const std::size_t at = 2 + random() % 19;
        kind == 1
            ? std::swap(typed[at], typed[at + 1])
            : void(typed[at] =
                       static_cast<char>('0' + (typed[at] - '0' + 1 + static_cast<int>(random() % 9)) % 10));
        if (typed == meant) continue;
        ++round;
        const std::string candidates = suggested(typed);
        ASSERT_TRUE(candidates[0] == '3' || candidates.find(meant) != std::string::npos)
            << typed << " " << meant;
        alone[kind] += candidates[0] == '1';
        first[kind] += candidates.find(meant) == 2;
    }
    EXPECT_NEAR(alone[0], rounds * 0.68, rounds * 0.05);
    EXPECT_NEAR(alone[1], rounds * 0.61, rounds * 0.05);
    EXPECT_GT(first[1], rounds * 0.95);
}

// Places are never left, whatever their size; hostile texts end.
TEST(Explain, PlacesOfAnySize) {
    const std::string typed = "DE98370400440532013000", meant = "DE89370400440532013000";
    ASSERT_EQ(suggested(typed).substr(2, 22), meant) << "swaps come first";
    ASSERT_EQ(suggested("de98 3704 0044 0532 0130 00"), suggested(typed));
    for (std::size_t size = 0; size <= 69; ++size) {
        std::string place(70, '#');
        const int count = sepa_iban_suggest(typed.c_str(), place.data(), size);
        EXPECT_EQ(count, std::min<int>(suggested(typed)[0] - '0', static_cast<int>(size / 23))) << size;
        EXPECT_EQ(sepa_iban_normalise(meant.c_str(), place.data(), size), size >= 23 ? 1 : -1);
        EXPECT_EQ(place.substr(size), std::string(70 - size, '#'));
    }
    char place[8] = " d e";
    EXPECT_EQ(sepa_iban_normalise(place, place, sizeof place), 1);
    EXPECT_STREQ(place, "DE");
    EXPECT_EQ(sepa_iban_normalise(nullptr, place, sizeof place), -1);
    EXPECT_EQ(sepa_iban_normalise("DE", nullptr, 8), -1);
    EXPECT_EQ(sepa_iban_suggest(nullptr, place, 8) + sepa_iban_suggest("DE", nullptr, 8), 0);
    for (const char* begin : {" ", "DE", "IBAN"})
        EXPECT_EQ(sepa_iban_explain((begin + std::string(1'000'000, *begin)).c_str(), nullptr), -1);
}

} // namespace
