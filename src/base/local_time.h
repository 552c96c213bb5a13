// Local calendar time.
#pragma once

#include <ctime>

namespace velmora {

// The caller may have changed the time zone since the last call; localtime_r() alone would not notice.
inline std::tm local_time(std::time_t time) {
    std::tm local{};
    tzset();
    localtime_r(&time, &local);
    return local;
}

} // namespace velmora
