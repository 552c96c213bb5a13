// Rounding of amounts; the parser and formatter of amounts are in the public header.
#pragma once

#include <cstddef>
#include <cstdint>

namespace velmora {

// The nearest whole number, halves away from zero. Written here because libc leaves it to libm.
inline double round_half_away(double value) {
    constexpr double all_whole = 4503599627370496.0; // 2^52: no fractions from here on
    if (!(value > -all_whole && value < all_whole)) return value;
    const auto whole = static_cast<double>(static_cast<std::int64_t>(value));
    const double rest = value - whole;
    if (rest >= 0.5) return whole + 1;
    if (rest <= -0.5) return whole - 1;
    return whole;
}

inline double round_to_cents(double amount) {
    return round_half_away(amount * 100.0) / 100.0;
}

// Cents as a whole number; amounts beyond its range stop at its ends.
std::int64_t to_cents(double amount);

// A sum of cents, which stops at the ends of its range, too.
inline std::int64_t add_cents(std::int64_t sum, std::int64_t cents) {
    std::int64_t result = 0;
    if (!__builtin_add_overflow(sum, cents, &result)) return result;
    return cents < 0 ? INT64_MIN : INT64_MAX;
}

// Writes cents as an amount with two decimals, cut to `size` bytes but terminated; returns the terminator's
// place.
char* write_cents(char* buffer, std::size_t size, std::int64_t cents);

} // namespace velmora
