// Dates and times as texts.
#pragma once

#include <string_view>

#include "base/ascii.h"

namespace velmora {

// Reads a number as libc's strptime() does in the C locale: behind white space, as many digits as can belong
// to it, at most `digits`. Moves behind it; false when there is none between `smallest` and `largest`.
constexpr bool read_date_number(const char*& at, int digits, int smallest, int largest) {
    while (is_space(*at))
        ++at;
    if (!is_digit(*at)) return false;
    int value = 0;
    do {
        value = value * 10 + (*at++ - '0');
    } while (--digits > 0 && value * 10 <= largest && is_digit(*at));
    return value >= smallest && value <= largest;
}

// Whether a text begins with year, month and day, as strptime() takes "%Y-%m-%d": what follows does not
// count, and neither does the length of the month.
constexpr bool begins_with_date(const char* text) {
    return read_date_number(text, 4, 0, 9999) && *text++ == '-' && read_date_number(text, 2, 1, 12) &&
           *text++ == '-' && read_date_number(text, 2, 1, 31);
}

// Whether a text fits a pattern of the same length, in which "0" stands for any digit.
constexpr bool has_form(std::string_view text, std::string_view pattern) {
    if (text.size() != pattern.size()) return false;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (pattern[i] == '0' ? !is_digit(text[i]) : text[i] != pattern[i]) return false;
    return true;
}

// The number of so many digits at `at`.
constexpr int digits_at(std::string_view text, std::size_t at, std::size_t count) {
    int value = 0;
    for (std::size_t i = at; i < at + count; ++i)
        value = value * 10 + (text[i] - '0');
    return value;
}

// A day of the calendar as yyyy-mm-dd, from the year 1 on.
constexpr bool is_calendar_date(std::string_view text) {
    constexpr int february = 2;
    constexpr int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (!has_form(text, "0000-00-00")) return false;
    const int year = digits_at(text, 0, 4), month = digits_at(text, 5, 2), day = digits_at(text, 8, 2);
    if (year < 1 || month < 1 || month > 12 || day < 1) return false;
    const bool is_leap_year = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return day <= lengths[month - 1] + (month == february && is_leap_year ? 1 : 0);
}

// A time of day as hh:mm:ss, from 00:00:00 to 23:59:59.
constexpr bool is_time_of_day(std::string_view text) {
    return has_form(text, "00:00:00") && digits_at(text, 0, 2) < 24 && digits_at(text, 3, 2) < 60 &&
           digits_at(text, 6, 2) < 60;
}

} // namespace velmora
