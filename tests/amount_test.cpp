#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <cstring>
#include <random>
#include <string>

#include "base/amount.h"
#include "velmora.h"

namespace {

struct Parsed {
    const char* text;
    double value;
    std::size_t consumed;
    bool out_of_range = false;
};

TEST(Strtod, ReadsNumbersAndStopsBehindThem) {
    constexpr double infinity = INFINITY;
    const Parsed cases[] = {
        {"0", 0, 1},
        {"12.50", 12.5, 5},
        {"  -12.50EUR", -12.5, 8},
        {"\t\n\v\f\r +7", 7, 8},
        {"1,5", 1, 1},
        {"1.2.3", 1.2, 3},
        {"5.", 5, 2},
        {".5", 0.5, 2},
        {".", 0, 0},
        {"", 0, 0},
        {" -", 0, 0},
        {"abc", 0, 0},
        {"e5", 0, 0},
        {"0x10", 0, 1},
        {"inf", 0, 0},
        {"nan", 0, 0},
        {"- 5", 0, 0},
        {"1e", 1, 2},
        {"1e ", 1, 2},
        {"1e+", 1, 3},
        {"1E-2x", 0.01, 4},
        {"1e2e3", 100, 3},
        {"12e-1", 1.2, 5},
        {"123456789.12", 123456789.12, 12},
        {"999999999999999999", 999999999999999999.0, 18},
        {"123456789012345678901", 123456789012345678e3, 21},
        {"1.2345678901234567899", 1.23456789012345678, 21},
        {"1e400", infinity, 5},
        {"1e511", infinity, 5},
        {"1e512", infinity, 5, true},
        {"-1e600", -infinity, 6, true},
        {"1e-600", 0, 6, true},
        {"1e99999999999999999999", infinity, 22, true},
        {"0e600", 0, 5, true},
        {"0e400", 0, 5},
    };
    for (const Parsed& c : cases) {
        char* end = nullptr;
        errno = 0;
        EXPECT_DOUBLE_EQ(__sepa_strtod(c.text, &end), c.value) << c.text;
        EXPECT_EQ(end - c.text, static_cast<std::ptrdiff_t>(c.consumed)) << c.text;
        EXPECT_EQ(errno, c.out_of_range ? ERANGE : 0) << c.text;
    }
    EXPECT_TRUE(std::signbit(__sepa_strtod("-", nullptr)));
    errno = EINTR;
    __sepa_strtod("1", nullptr);
    EXPECT_EQ(errno, EINTR) << "errno is never cleared";
}

TEST(D2str, WritesTwoDecimalsRoundedAwayFromZero) {
    const std::pair<double, const char*> cases[] = {
        {0, "0.00"},
        {-0.0, "0.00"},
        {0.05, "0.05"},
        {0.5, "0.50"},
        {0.99, "0.99"},
        {1, "1.00"},
        {9.99, "9.99"},
        {10, "10.00"},
        {1234.5, "1234.50"},
        {-3.456, "-3.46"},
        {99.999, "100.00"},
        {0.994, "0.99"},
        {-0.004, "0.00"},
        {-0.006, "-0.01"},
        {-0.5, "-0.50"},
        {0.125, "0.13"},
        {-0.125, "-0.13"},
        {100.1, "100.10"},
        {999999999.99, "999999999.99"},
        {1e15, "1000000000000000.00"},
        {1e300, "92233720368547758.07"},
        {-1e300, "-92233720368547758.08"},
        {NAN, "0.00"},
    };
    for (const auto& [amount, text] : cases) {
        char buffer[128];
        char* end = __sepa_d2str(buffer, sizeof buffer, amount);
        EXPECT_STREQ(buffer, text);
        EXPECT_EQ(end, buffer + std::strlen(text));
    }
}

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
