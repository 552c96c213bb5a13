// What compilers make of calls under _FORTIFY_SOURCE. glibc has these functions, but other C libraries have
// not: with them the finished library runs on those, too, and every call stays checked.
#undef _FORTIFY_SOURCE
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

namespace {

void check(std::size_t wanted, std::size_t room) {
    if (wanted > room) std::abort();
}

} // namespace

extern "C" {

void* __memcpy_chk(void* to, const void* from, std::size_t length, std::size_t room);
void* __memmove_chk(void* to, const void* from, std::size_t length, std::size_t room);
void* __memset_chk(void* memory, int byte, std::size_t length, std::size_t room);
char* __strncpy_chk(char* to, const char* from, std::size_t length, std::size_t room);
ssize_t __read_chk(int file, void* to, std::size_t length, std::size_t room);
void __explicit_bzero_chk(void* memory, std::size_t length, std::size_t room);
int __vsnprintf_chk(char* to, std::size_t size, int flag, std::size_t room, const char* format,
                    va_list values);
int __snprintf_chk(char* to, std::size_t size, int flag, std::size_t room, const char* format, ...);

void* __memcpy_chk(void* to, const void* from, std::size_t length, std::size_t room) {
    check(length, room);
    return std::memcpy(to, from, length);
}

void* __memmove_chk(void* to, const void* from, std::size_t length, std::size_t room) {
    check(length, room);
    return std::memmove(to, from, length);
}

void* __memset_chk(void* memory, int byte, std::size_t length, std::size_t room) {
    check(length, room);
    return std::memset(memory, byte, length);
}

char* __strncpy_chk(char* to, const char* from, std::size_t length, std::size_t room) {
    check(length, room);
    return std::strncpy(to, from, length);
}

ssize_t __read_chk(int file, void* to, std::size_t length, std::size_t room) {
    check(length, room);
    return read(file, to, length);
}

void __explicit_bzero_chk(void* memory, std::size_t length, std::size_t room) {
    check(length, room);
    explicit_bzero(memory, length);
}

int __vsnprintf_chk(char* to, std::size_t size, int, std::size_t room, const char* format, va_list values) {
    check(size, room);
    return std::vsnprintf(to, size, format, values);
}

int __snprintf_chk(char* to, std::size_t size, int flag, std::size_t room, const char* format, ...) {
    va_list values;
    va_start(values, format);
    const int length = __vsnprintf_chk(to, size, flag, room, format, values);
    va_end(values);
    return length;
}
}
