#include <gtest/gtest.h>

#include "message/characters.h"
#include "message_builder.h"

using namespace velmora;
using namespace velmora::test;

namespace {

TEST(Message, OnlyKnownTypesAreMade) {
    EXPECT_EQ(sepa_new(0), nullptr);
    EXPECT_NE(selected_rulebook(), nullptr) << "a refused call settles the rulebook, too";
    EXPECT_EQ(sepa_new(3), nullptr);
    const Message message = new_message(SEPA_MSGTYPE_DDI);
    EXPECT_EQ(sepa_getError(message.get()), nullptr);
    EXPECT_STREQ(sepa_getError(nullptr), "Invalid sepa_t handle (NULL)");
    sepa_free(nullptr);
}

TEST(Message, RulebooksAreSelectedByTheirExactNames) {
    for (const char* name : all_rulebooks) {
        EXPECT_EQ(sepa_init(SEPA_INIT_RULEBOOK, name), 1);
        EXPECT_STREQ(selected_rulebook()->name, name);
    }
    for (const char* name : {"de-3.7", "DE-3.70", "DE-3.", "", "DE-3.8"})
        EXPECT_EQ(sepa_init(3, name), 0) << name;
    EXPECT_EQ(sepa_init(3, nullptr), 0);
    EXPECT_EQ(sepa_init(2, "DE-2.6"), 0);
    EXPECT_STREQ(selected_rulebook()->name, "DE-3.7");
}

// A setter refuses a null handle; a success leaves the text of the last failure.
TEST(Message, NullHandlesAndErrorTexts) {
    EXPECT_EQ(sepa_setIBAN(nullptr, own_iban), 0);
    EXPECT_EQ(sepa_setBIC(nullptr, "COBADEFF"), 0);
    EXPECT_EQ(sepa_setName(nullptr, "x"), 0);
    EXPECT_EQ(sepa_setCreditorIdentifier(nullptr, "DE98ZZZ09999999999"), 0);
    EXPECT_EQ(sepa_setDate(nullptr, "2026-01-01"), 0);
    EXPECT_EQ(sepa_setDDType(nullptr, 0), 0);
    EXPECT_EQ(sepa_setBatchBooking(nullptr, 0), 0);
    EXPECT_EQ(sepa_setMessageId(nullptr, "x"), 0);
    EXPECT_EQ(sepa_add(nullptr, nullptr), 0);
    EXPECT_EQ(sepa_toXML(nullptr), nullptr);
    const Message message = new_message(SEPA_MSGTYPE_CTI);
    EXPECT_EQ(sepa_setDate(message.get(), "x"), 0);
    EXPECT_EQ(sepa_setDate(message.get(), "2026-01-01"), 1);
    EXPECT_EQ(error(message), "Invalid date");
}

struct Case {
    const char* input;
    const char* error; // null: accepted
};

template <typename Setter>
void expect_texts(const Message& message, Setter setter, std::initializer_list<Case> cases) {
    for (const Case& c : cases) {
        const int result = setter(message.get(), c.input);
        EXPECT_EQ(result, c.error == nullptr) << (c.input ? c.input : "(null)");
        if (result == 0 && c.error != nullptr) {
            EXPECT_EQ(error(message), c.error) << c.input;
        }
    }
}

TEST(Header, EveryTextOfTheSetters) {
    const Message m = new_message(SEPA_MSGTYPE_DDI, "DE-3.7");
    expect_texts(m, sepa_setIBAN,
                 {{own_iban, nullptr},
                  {nullptr, "Invalid IBAN (NULL) ((null))"},
                  {"DE12", "Wrong IBAN length (DE12)"},
                  {"DE88370400440532013000", "Invalid IBAN checksum (DE88370400440532013000)"}});
    expect_texts(m, sepa_setBIC,
                 {{"deutdeff", nullptr},
                  {"COBADEFFXXX", nullptr},
                  {nullptr, "sepa_setBIC: invalid BIC"},
                  {"COBADEFFXXXX", "sepa_setBIC: invalid BIC"},
                  {"", "sepa_setBIC: invalid BIC format"},
                  {"COBADEFF1", "sepa_setBIC: invalid BIC format"},
                  {"C0BADEFF", "sepa_setBIC: invalid BIC format"}});
    const std::string name_of_70(70, 'n'), name_of_71(71, 'n');
    expect_texts(m, sepa_setName,
                 {{name_of_70.c_str(), nullptr},
                  {"M\xC3\xBCller & S\xC3\xB6hne", nullptr},
                  {nullptr, "sepa_setAccount: Name too short"},
                  {"", "sepa_setAccount: Name too short"},
                  {name_of_71.c_str(), "sepa_setAccount: Name too long"},
                  {"a\\b", "sepa_setName: invalid character '\\' in name"},
                  {"caf\xC3\xA9", "sepa_setName: invalid character '\xC3' in name"}});
    const std::string identifier_of_36 = "DE98ZZZ" + std::string(29, '0');
    expect_texts(m, sepa_setCreditorIdentifier,
                 {{"DE98ZZZ09999999999", nullptr},
                  {"DE98ABC09999999999", nullptr},
                  {"DE98\t\n 09999999999", nullptr},
                  {nullptr, "Creditor Identifier too short"},
                  {"DE98ZZ", "Creditor Identifier too short"},
                  {identifier_of_36.c_str(), "Creditor Identifier too long"},
                  {"DE98ZZZ0999999999a", "Invalid character in Creditor Identifier"},
                  {"de98ZZZ09999999999", "Invalid character in Creditor Identifier"},
                  {"DE97ZZZ09999999999", "Invalid Creditor Identifier checksum"},
                  {"DE97ZZZ", "Invalid Creditor Identifier checksum"},
                  {"DE36ZZZ", nullptr}});
    expect_texts(m, sepa_setDate,
                 {{"2026-12-31", nullptr},
                  {"2026-1-1xx", nullptr},
                  {nullptr, "Invalid date"},
                  {"2026-12-3", "Invalid date"},
                  {"2026-12-311", "Invalid date"},
                  {"2026/12/31", "Invalid date format"},
                  {"2026-13-01", "Invalid date format"}});
    const std::string id_of_35(35, 'i'), id_of_36(36, 'i');
    expect_texts(m, sepa_setMessageId,
                 {{id_of_35.c_str(), nullptr},
                  {" '()+,-./:?aZ9", nullptr},
                  {nullptr, "Invalid message id"},
                  {"", "Invalid message id"},
                  {id_of_36.c_str(), "Invalid message id"},
                  {"a&b", "Invalid message id"},
                  {"\xC3\xBC", "Invalid message id"}});
    expect_texts(
        m,
        [](sepa_t* p, const char* t) { return sepa_setBatchBooking(p, static_cast<std::uint8_t>(*t - '0')); },
        {{"0", nullptr}, {"1", nullptr}, {"2", "Invalid BatchBooking mode (only 0 or 1 allowed)"}});
}

TEST(Header, TooLongAnErrorIsCut) {
    const Message m = new_message(SEPA_MSGTYPE_DDI);
    EXPECT_EQ(sepa_setIBAN(m.get(), std::string(1000, 'D').c_str()), 0);
    EXPECT_EQ(error(m), ("Invalid or unknown IBAN country code (" + std::string(1000, 'D')).substr(0, 255));
}

TEST(Header, DirectDebitTypeDependsOnTheRulebook) {
    for (std::size_t value = 0; value < 10; ++value) {
        const Message m = new_message(SEPA_MSGTYPE_DDI, all_rulebooks[value]);
        EXPECT_EQ(sepa_setDDType(m.get(), SEPA_DDTYPE_CORE), 1);
        EXPECT_EQ(sepa_setDDType(m.get(), SEPA_DDTYPE_B2B), 1);
        EXPECT_EQ(sepa_setDDType(m.get(), SEPA_DDTYPE_COR1), value >= 1 && value <= 5)
            << all_rulebooks[value];
        if (value == 9) {
            EXPECT_EQ(error(m), "COR1 is not allowed with selected SEPA rulebook");
        }
        EXPECT_EQ(sepa_setDDType(m.get(), 3), 0);
        EXPECT_EQ(error(m), "Unknown/unsupported LocalInstrumentCode (setDDType)");
    }
    const Message credit = new_message(SEPA_MSGTYPE_CTI);
    EXPECT_EQ(sepa_setDDType(credit.get(), 0), 0);
    EXPECT_EQ(error(credit), "Not a direct debit message");
}

// Every character of one byte and the multi-byte ones that some rulebook permits, in every set under every
// rulebook, against the sets as they are printed.
TEST(Characters, EverySetUnderEveryRulebook) {
    const std::string basic = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789'()+,-./:?";
    const std::string austrian = "!\"#;=@[]^_{}~<>|\xA7\xB0";
    for (int value = 0; value < 10; ++value) {
        const Rulebook& rulebook = *find_rulebook(all_rulebooks[value]);
        for (int mode = 0; mode < 3; ++mode) {
            const int effective = mode == 2 && value == 0 ? 1 : mode;
            std::string permitted = basic;
            if (effective >= 1) permitted += ' ';
            if (effective == 2) permitted += "$%&*";
            if (value == 2) permitted += austrian;
            const auto accepts = [&](const std::string& text) {
                return find_forbidden_character(text, static_cast<CharacterSet>(mode), rulebook) == nullptr;
            };
            EXPECT_TRUE(accepts(""));
            for (int byte = 1; byte < 256; ++byte) {
                const std::string text(1, static_cast<char>(byte));
                EXPECT_EQ(accepts(text), permitted.find(text) != text.npos) << byte << " mode " << mode;
            }
            for (int second = 0x80; second < 0xC0; ++second) {
                const std::string text = {'\xC3', static_cast<char>(second)};
                const bool german = std::string("\x84\x96\x9C\xA4\xB6\xBC\x9F").find(text[1]) != text.npos;
                EXPECT_EQ(accepts("x" + text + "y"), german && effective == 2) << second << " mode " << mode;
            }
            EXPECT_EQ(accepts("\xE2\x82\xAC"), value == 2);
            for (const char* cut : {"\xC3", "\xE2\x82", "\xE2", "\xE2\x82\xAD", "\xC2\xA7"})
                EXPECT_FALSE(accepts(cut));
        }
    }
    const std::string text = "ab\xC3\xA9";
    EXPECT_EQ(find_forbidden_character(text, CharacterSet::name, rulebook_on({2026, 1, 1})), text.data() + 2);
}

} // namespace
