#include "base/error_text.h"

#include <cstdarg>
#include <cstdio>

namespace velmora {

int ErrorText::fail(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return 0;
}

} // namespace velmora
