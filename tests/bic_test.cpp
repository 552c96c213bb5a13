#include "bank/bic.h"

#include <gtest/gtest.h>

#include <string>

namespace velmora {
namespace {

TEST(FieldFormat, Bics) {
    for (const char* bic : {"COBADEFFXXX", "COBADEFF", "AAAAAA2A", "AAAAAA90", "AAAAAAAA000"})
        EXPECT_EQ(field_format_check(bic_format, bic), 1) << bic;
    for (const char* text : {"COBADEFF1", "cobadeffxxx", "COBADEFOXXX", "COBADE1FXXX", "COBADE0F", "COBADEF",
                             "C1BADEFF", "COBADEFFXX", "COBADEFFXXXX", "COBADEFF\n", " COBADEFF", ""})
        EXPECT_EQ(field_format_check(bic_format, text), 0) << text;
    EXPECT_EQ(field_format_check(bic_format, nullptr), 0);
}

TEST(FieldFormat, TextsByTheirLengthInBytes) {
    const std::pair<int, std::size_t> limits[] = {
        {text_of_70_bytes, 70}, {text_of_16_bytes, 16}, {text_of_35_bytes, 35}};
    for (const auto& [format, limit] : limits) {
        EXPECT_EQ(field_format_check(format, nullptr), 0);
        EXPECT_EQ(field_format_check(format, ""), 0);
        EXPECT_EQ(field_format_check(format, std::string(limit, 'x').c_str()), 1);
        EXPECT_EQ(field_format_check(format, std::string(limit + 1, 'x').c_str()), 0);
    }
    EXPECT_EQ(field_format_check(text_of_35_bytes, ("\xC3\xBC" + std::string(34, 'x')).c_str()), 0);
    for (const int unknown : {-1, 4, 99})
        EXPECT_EQ(field_format_check(unknown, "x"), 0);
}

TEST(PropertySet, StoresKnownKeysAndTellsWhatItRefuses) {
    constexpr PropertyRow table[] = {{"bic", bic_format}, {"addrNum", text_of_16_bytes}};
    OwnedText slots[2];
    char buffer[256];
    const char* error = nullptr;
    EXPECT_EQ(property_set("other", "x", table, slots, &error, buffer), 0);
    EXPECT_EQ(error, nullptr);
    EXPECT_EQ(property_set("ADDRNUM", "7a", table, slots, &error, buffer), 1);
    EXPECT_EQ(property_set("addrnum", "7b", table, slots, &error, buffer), 1);
    EXPECT_EQ(error, nullptr);
    EXPECT_STREQ(slots[1].c_str(), "7b");
    EXPECT_FALSE(slots[0]);
    EXPECT_EQ(property_set("AddrNum", "12345678901234567", table, slots, &error, buffer), 1);
    EXPECT_STREQ(error, "Invalid format for 'AddrNum'");
    EXPECT_STREQ(slots[1].c_str(), "7b");
    const std::string long_key(300, 'k');
    EXPECT_EQ(property_set(long_key.c_str(), "x", table, slots, &error, buffer), 0);
}

} // namespace
} // namespace velmora
