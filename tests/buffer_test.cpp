#include <gtest/gtest.h>

#include <string>

#include "xml/buffer.h"

namespace velmora {
namespace {

struct Buffer : sepa_buf_t {
    Buffer() = default;
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;
    ~Buffer() { std::free(data); }
};

TEST(Buffer, LengthCountsTheTerminator) {
    Buffer b;
    EXPECT_EQ(sepa_buf_append(&b, std::string_view()), 1);
    EXPECT_EQ(b.len, 0u);
    EXPECT_EQ(sepa_buf_append(&b, ""), 1);
    EXPECT_EQ(b.len, 1u);
    EXPECT_EQ(sepa_buf_append(&b, "abc"), 1);
    EXPECT_EQ(b.len, 4u);
    EXPECT_EQ(sepa_buf_append(&b, ""), 1);
    EXPECT_EQ(b.len, 4u);
    EXPECT_EQ(sepa_buf_append_strs(&b, "d", std::string_view(), "ef"), 1);
    EXPECT_STREQ(b.data, "abcdef");
    EXPECT_EQ(b.len, 7u);
}

TEST(Buffer, GrowsInStepsOf256OnlyWhenItMust) {
    Buffer b;
    ASSERT_EQ(sepa_buf_append(&b, std::string(255, 'x')), 1);
    EXPECT_EQ(b.size, 512u); // 256 bytes with the terminator, rounded down, and one step
    ASSERT_EQ(sepa_buf_append(&b, std::string(255, 'x')), 1);
    EXPECT_EQ(b.size, 512u) << "the free room was exactly what was needed";
    EXPECT_EQ(b.len, 511u);
    ASSERT_EQ(sepa_buf_append(&b, "x"), 1);
    EXPECT_EQ(b.size, 768u);
    sepa_buf_reserve(&b, 10000);
    EXPECT_GE(b.size - b.len, 10000u);
    EXPECT_EQ(b.len, 512u);
}

TEST(Buffer, EscapesThreeCharactersAndNothingElse) {
    Buffer b;
    ASSERT_EQ(sepa_buf_append_escaped(&b, "a<b>&c"), 1);
    EXPECT_STREQ(b.data, "a&lt;b&gt;&amp;c");
    EXPECT_EQ(b.len, 17u);
    ASSERT_EQ(sepa_buf_append_escaped(&b, "\"'\x01 M\xC3\xBCller"), 1);
    EXPECT_STREQ(b.data, "a&lt;b&gt;&amp;c\"'\x01 M\xC3\xBCller");
    ASSERT_EQ(sepa_buf_append_escaped(&b, std::string(1000, '&')), 1);
    EXPECT_EQ(b.len, 28u + 5000u);
}

} // namespace
} // namespace velmora
