// Texts converted to what rulebooks permit: rows of tests/data/texts.tsv, and every character there is.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <string>

#include "base/utf8.h"
#include "message/characters.h"
#include "message/rulebook.h"
#include "velmora.h"

namespace {

std::string utf8(char32_t character) {
    char text[4];
    return {text, velmora::put_character(character, text)};
}

std::string unescaped(std::string text) {
    for (std::size_t at; (at = text.find("\\u")) != std::string::npos;)
        text.replace(at, 6, utf8(static_cast<char32_t>(std::stoul(text.substr(at + 2, 4), nullptr, 16))));
    return text;
}

std::string convert(const std::string& text, std::uint32_t mode, sepa_text_report_t* report = nullptr,
                    std::size_t limit = 0) {
    char out[512];
    const int length = sepa_text_convert(text.c_str(), mode, limit, out, sizeof out, report);
    return length < 0 ? "refused" : std::string(out, static_cast<std::size_t>(length));
}

TEST(Text, RowsOfTheTable) {
    sepa_init(SEPA_INIT_RULEBOOK, "DE-3.7");
    std::ifstream rows(VELMORA_SOURCE_DIR "/tests/data/texts.tsv");
    std::string input, german, basic;
    std::getline(rows, input);
    while (std::getline(rows, input, '\t') && std::getline(rows, german, '\t') && std::getline(rows, basic)) {
        EXPECT_EQ(convert(unescaped(input), SEPA_TEXT_KEEP), german);
        EXPECT_EQ(convert(unescaped(input), SEPA_TEXT_BASIC), basic);
    }
    EXPECT_EQ(basic, ".. . . .");
}

TEST(Text, EveryCharacterBecomesOneThatIsPermittedAndStays) {
    using velmora::find_forbidden_character;
    constexpr auto names = velmora::CharacterSet::name;
    for (const char* name : {"DE-2.6", "DE-26.11", "AT-6"}) {
        sepa_init(SEPA_INIT_RULEBOOK, name);
        const auto& rulebook = *velmora::find_rulebook(name);
        for (char32_t block = 0; block <= 0x10FFFF; block += 32) {
            if (block >= 0xD800 && block <= 0xDFFF) continue;
            std::string text;
            unsigned forbidden = 0;
            for (char32_t c = std::max(block, char32_t{1}); c < block + 32; ++c) {
                text += "x" + utf8(c);
                forbidden += find_forbidden_character(utf8(c), names, rulebook) != nullptr;
            }
            sepa_text_report_t first, second;
            const std::string once = convert(text, SEPA_TEXT_KEEP, &first);
            ASSERT_EQ(find_forbidden_character(once, names, rulebook), nullptr);
            ASSERT_EQ(find_forbidden_character(convert(text, SEPA_TEXT_BASIC), names,
                                               *velmora::find_rulebook("DE-2.6")),
                      nullptr);
            ASSERT_EQ(first.changed + first.replaced, forbidden) << static_cast<unsigned>(block);
            ASSERT_EQ(convert(once, SEPA_TEXT_KEEP, &second), once);
            ASSERT_EQ(second.first, -1);
        }
    }
}

TEST(Text, EndsBetweenCharactersAtTheLimitAndAtTheBuffersEnd) {
    struct Case {
        const char* text;
        std::uint32_t mode;
        std::size_t limit;
        const char* result;
        sepa_text_report_t report;
    };
    const Case cases[] = {
        {"abcdef", SEPA_TEXT_KEEP, 6, "abcdef", {0, 0, 0, -1}},
        {"abcdef", SEPA_TEXT_KEEP, 4, "abcd", {0, 0, 2, 4}},
        {"abüd", SEPA_TEXT_KEEP, 3, "ab", {0, 0, 2, 2}},
        {"ab€d", SEPA_TEXT_KEEP, 4, "ab", {0, 0, 2, 2}},
        {"é€u\xCC\x88@x", SEPA_TEXT_BASIC, 6, "eEURue", {3, 0, 2, 0}},
        {"ab\xC2\xAD", SEPA_TEXT_KEEP, 2, "ab", {1, 0, 0, 2}},
        {"@", SEPA_TEXT_KEEP, 0, ".", {0, 1, 0, 0}},
        {"a\xC3", SEPA_TEXT_KEEP, 0, "refused", {0, 0, 0, -1}},
        {"\xED\xA0\x80", SEPA_TEXT_KEEP, 0, "refused", {0, 0, 0, -1}},
        {"a", 2, 0, "refused", {0, 0, 0, -1}},
    };
    sepa_init(SEPA_INIT_RULEBOOK, "DE-3.7");
    for (const Case& c : cases) {
        sepa_text_report_t report;
        EXPECT_EQ(convert(c.text, c.mode, &report, c.limit), c.result);
        EXPECT_EQ(std::memcmp(&report, &c.report, sizeof report), 0) << c.text;
    }
    sepa_init(SEPA_INIT_RULEBOOK, "DE-26.11");
    EXPECT_EQ(convert("äöüx", SEPA_TEXT_KEEP, nullptr, 3), "äöü");
    char out[4] = "???";
    EXPECT_EQ(sepa_text_convert("aüb€", SEPA_TEXT_BASIC, 0, out, sizeof out, nullptr), 7);
    EXPECT_STREQ(out, "aue");
    EXPECT_EQ(sepa_text_convert("aüb", SEPA_TEXT_KEEP, 0, out, 3, nullptr), 4);
    EXPECT_STREQ(out, "a");
    EXPECT_EQ(sepa_text_convert("aüb", SEPA_TEXT_KEEP, 0, nullptr, 0, nullptr), 4);
    EXPECT_EQ(sepa_text_convert(nullptr, SEPA_TEXT_KEEP, 0, out, sizeof out, nullptr), -1);
}

} // namespace
