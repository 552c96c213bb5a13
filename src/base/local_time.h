// Local calendar time.
#pragma once

#include <compare>
#include <ctime>

namespace velmora {

// The caller may have changed the time zone since the last call; localtime_r() alone would not notice.
inline std::tm local_time(std::time_t time) {
    std::tm local{};
    tzset();
    localtime_r(&time, &local);
    return local;
}

// A day of the calendar.
struct Day {
    int year;
    int month; // 1 to 12
    int day;   // 1 to 31

    friend auto operator<=>(const Day&, const Day&) = default;
};

// How many minutes local time is ahead of UTC at a local day and second of it. Where the clocks change, the
// offset before the change counts for an hour that comes twice or not at all.
int utc_offset_at(const Day& day, int second);

inline Day local_day(std::time_t time) {
    const std::tm local = local_time(time);
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday};
}

} // namespace velmora
