// Amounts as statements carry them, without the rounding of a double.
#pragma once

#include <cstdint>
#include <limits>

namespace velmora {

// Exact amounts count 1/100,000 of the currency unit.
inline constexpr std::int64_t exact_unit = 100000;
inline constexpr int exact_decimals = 5;
// For an amount that is too large for that or has more decimals.
inline constexpr std::int64_t no_exact_amount = std::numeric_limits<std::int64_t>::max();

// An unsigned decimal number.
struct Decimal {
    const char* begin;    // behind leading zeros
    const char* end;      // behind the number
    std::uint64_t number; // all digits as one whole number
    int decimals;         // how many of them stand behind the point
    bool empty;           // no digit at all
    bool overflow;        // more digits than `number` holds

    std::int64_t exact() const; // or no_exact_amount
    double nearest() const;
};

// Reads digits with at most one "." or `mark` anywhere among them. Only numbers with "." may overflow.
Decimal scan_decimal(const char* text, char mark = '.');

// The exact amount next to a double that is not negative, or no_exact_amount.
std::int64_t nearest_exact(double amount);

} // namespace velmora
