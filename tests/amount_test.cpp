#include <gtest/gtest.h>

#include <random>
#include <string>

#include "base/amount.h"
#include "velmora.h"

namespace {

TEST(D2str, CutsAtTheEndOfTheBuffer) {
    const std::string whole = "-1234.50";
    for (std::size_t size = 0; size <= whole.size() + 1; ++size) {
        std::string buffer(size + 1, '#');
        char* end = __sepa_d2str(buffer.data(), size, -1234.5);
        if (size == 0) {
            EXPECT_EQ(end, buffer.data());
            EXPECT_EQ(buffer[0], '#');
            continue;
        }
        EXPECT_EQ(std::string(buffer.c_str()), whole.substr(0, size - 1));
        EXPECT_EQ(buffer[size], '#');
    }
}

TEST(Amounts, EveryCentSurvivesParsingRoundingAndWriting) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 200000; ++i) {
        const auto cents = i < 100000 ? i : static_cast<long long>(random() % 100000000000ull);
        char text[32], back[32];
        std::snprintf(text, sizeof text, "%lld.%02lld", cents / 100, cents % 100);
        __sepa_d2str(back, sizeof back, velmora::round_to_cents(__sepa_strtod(text, nullptr)));
        ASSERT_STREQ(back, text);
    }
}

} // namespace
