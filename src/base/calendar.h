// Dates as texts.
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

} // namespace velmora
