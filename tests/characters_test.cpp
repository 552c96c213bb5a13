#include <gtest/gtest.h>

#include "message_builder.h"

using namespace velmora::test;

namespace {

// Every byte, and every letter that begins as the German ones do, against the sets as they are printed.
TEST(Characters, OfReferencesTextsAndNamesUnderEveryRulebook) {
    const std::string basic = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789'()+,-./:?";
    for (const std::string rulebook : all_rulebooks)
        for (const std::string key : {"old_mref", "id", "name", "ref"}) {
            SCOPED_TRACE(rulebook + " " + key);
            const bool austrian = rulebook == "AT-6",
                       wide = key.size() > 2 && rulebook != "DE-2.6" && key != "old_mref";
            std::string permitted = basic;
            if (key != "old_mref") permitted += ' ';
            if (wide) permitted += "$%&*";
            if (austrian) permitted += "!\"#;=@[]^_{}~<>|\xA7\xB0";
            const Message m = complete_message(SEPA_MSGTYPE_DDI, rulebook.c_str());
            const auto accepts = [&](const std::string& text) {
                return add(m, with(direct_debit(), {{key.c_str(), text.c_str()}})) == 1;
            };
            for (int byte = 1; byte < 256; ++byte) {
                const std::string text(1, static_cast<char>(byte));
                EXPECT_EQ(accepts(text), permitted.find(text) != text.npos) << byte;
            }
            for (int second = 0x80; second < 0xC0; ++second) {
                const std::string text = {'x', '\xC3', static_cast<char>(second), 'y'};
                const bool german = std::string("\x84\x96\x9C\xA4\xB6\xBC\x9F").find(text[2]) != text.npos;
                EXPECT_EQ(accepts(text), german && wide) << second;
            }
            EXPECT_EQ(accepts("\xE2\x82\xAC"), austrian);
            for (const char* cut : {"\xC3", "\xE2\x82", "\xE2", "\xE2\x82\xAD", "\xC2\xA7"})
                EXPECT_FALSE(accepts(cut)) << cut;
        }
}

} // namespace
