// What a message keeps of a failed operation: the text that sepa_getError() returns.
#pragma once

#include <cstddef>

namespace velmora {

class Failure {
public:
    // Keeps a constant text. Always false, the result of a failed operation.
    bool fail(const char* text);

    // The same for a text with the offending value in it, cut to its room. The value may be the present text.
    [[gnu::format(printf, 2, 3)]] bool fail_with(const char* format, ...);

    // Cuts a text that fills its room to whole characters.
    void keep_whole_characters();

    // Null when nothing has failed yet.
    const char* text() const { return text_; }

    // The same without what has failed in tests.
    const char* standing_text() const { return standing_text_; }

    // What fails between these two is a test's.
    void begin_test() { is_test_ = true; }
    void end_test() { is_test_ = false; }

private:
    static constexpr std::size_t room = 256;

    char* buffer() { return is_test_ ? test_buffer_ : buffer_; }

    const char* text_ = nullptr; // a constant, or one of the buffers
    const char* standing_text_ = nullptr;
    bool is_test_ = false;
    char buffer_[room] = {};
    char test_buffer_[room] = {};
};

} // namespace velmora
