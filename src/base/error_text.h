// The text of a handle's last failure.
#pragma once

namespace velmora {

struct ErrorText {
    char text[256]; // empty when nothing has failed yet

    // Keeps the text of a failure, cut to its room. Always 0, the result of a failed operation.
    [[gnu::format(printf, 2, 3)]] int fail(const char* format, ...);
};

} // namespace velmora
