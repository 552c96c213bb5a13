#include "base/local_time.h"

namespace velmora {

int utc_offset_at(const Day& day, int second) {
    constexpr std::time_t one_day = 86400;
    constexpr long seconds_in_minute = 60, largest = 14L * 60; // what a time in XML can hold
    std::tm parts{};
    parts.tm_year = day.year - 1900;
    parts.tm_mon = day.month - 1;
    parts.tm_mday = day.day;
    parts.tm_sec = second;
    const std::time_t as_utc = timegm(&parts);
    const auto offset_at = [](std::time_t time) { return local_time(time).tm_gmtoff; };
    long offset = offset_at(as_utc - one_day);
    if (offset_at(as_utc - offset) != offset) {
        const long later = offset_at(as_utc + one_day);
        if (offset_at(as_utc - later) == later) offset = later;
    }
    const long minutes = offset / seconds_in_minute;
    return static_cast<int>(minutes > largest ? largest : minutes < -largest ? -largest : minutes);
}

} // namespace velmora
