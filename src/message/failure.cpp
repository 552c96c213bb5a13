#include "message/failure.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "base/utf8.h"

namespace velmora {

bool Failure::fail(const char* text) {
    text_ = text;
    if (!is_test_) standing_text_ = text;
    return false;
}

bool Failure::fail_with(const char* format, ...) {
    char text[room];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    std::memcpy(buffer(), text, std::strlen(text) + 1);
    return fail(buffer());
}

void Failure::keep_whole_characters() {
    char* const text = buffer();
    if (text_ != text || std::strlen(text) != room - 1) return;
    constexpr std::size_t longest_character = 4;
    const char* const end = text + room - 1;
    // What is not UTF-8 at the very end is a character that was cut.
    for (std::size_t cut = 1; cut < longest_character; ++cut) {
        const char* at = end - cut;
        if (static_cast<unsigned char>(*at) < 0xC0) continue;
        if (next_character(at, end) == no_character) text[room - 1 - cut] = '\0';
        return;
    }
}

} // namespace velmora
