#include "message/failure.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace velmora {

bool Failure::fail_with(const char* format, ...) {
    char text[sizeof buffer_];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    std::strcpy(buffer_, text);
    return fail(buffer_);
}

} // namespace velmora
