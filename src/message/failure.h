// What a message keeps of a failed operation: the text that sepa_getError() returns.
#pragma once

namespace velmora {

class Failure {
public:
    // Keeps a constant text. Always false, the result of a failed operation.
    bool fail(const char* text) {
        text_ = text;
        return false;
    }

    // The same for a text with the offending value in it, cut to its room. The value may be the present text.
    [[gnu::format(printf, 2, 3)]] bool fail_with(const char* format, ...);

    // Null when nothing has failed yet.
    const char* text() const { return text_; }

private:
    const char* text_ = nullptr; // a constant, or the buffer
    char buffer_[256] = {};
};

} // namespace velmora
