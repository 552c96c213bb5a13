// A clock that the tests set: the linker leads every call of time() here.
#pragma once

#include <ctime>

inline std::time_t clock_is_set_to = 0; // 0: it is not set

extern "C" {
std::time_t __real_time(std::time_t*);
[[gnu::used]] inline std::time_t __wrap_time(std::time_t*) {
    return clock_is_set_to != 0 ? clock_is_set_to : __real_time(nullptr);
}
}
