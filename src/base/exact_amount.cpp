#include "base/exact_amount.h"

#include "base/amount.h"
#include "base/ascii.h"
#include "velmora.h"

namespace velmora {
namespace {

constexpr double powers_of_ten[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,
                                    1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19};
constexpr int longest_number = 19;
constexpr std::uint64_t exact_in_double = std::uint64_t{1} << 53;

// Whether the digits from `text` to `end` are a number of 64 bits; there may be something else among them.
bool fits(const char* text, const char* end) {
    std::uint64_t number = 0;
    for (; text != end; ++text)
        if (is_digit(*text) && (__builtin_mul_overflow(number, 10U, &number) ||
                                __builtin_add_overflow(number, static_cast<unsigned>(*text - '0'), &number)))
            return false;
    return true;
}

} // namespace

Decimal scan_decimal(const char* text, char mark) {
    const char* p = text;
    while (*p == '0')
        ++p;
    Decimal decimal{p, nullptr, 0, 0, p == text, false};
    const char* point = nullptr;
    for (;; ++p) {
        if (is_digit(*p))
            decimal.number = decimal.number * 10 + static_cast<std::uint64_t>(*p - '0');
        else if (point == nullptr && (*p == '.' || *p == mark))
            point = p;
        else
            break;
    }
    decimal.end = p;
    if (point != nullptr) decimal.decimals = static_cast<int>(p - point - 1);
    const std::ptrdiff_t digits = p - decimal.begin - (point != nullptr ? 1 : 0);
    decimal.empty &= digits == 0;
    decimal.overflow = digits > longest_number && !fits(decimal.begin, p);
    return decimal;
}

std::int64_t Decimal::exact() const {
    constexpr std::uint64_t factors[] = {100000, 10000, 1000, 100, 10, 1};
    std::uint64_t result = number;
    int places = decimals;
    if (overflow) return no_exact_amount;
    for (; places > exact_decimals; --places) {
        if (result % 10 != 0) return no_exact_amount;
        result /= 10;
    }
    if (__builtin_mul_overflow(result, factors[places], &result)) return no_exact_amount;
    constexpr auto largest = static_cast<std::uint64_t>(no_exact_amount) - 1;
    return result <= largest ? static_cast<std::int64_t>(result) : no_exact_amount;
}

double Decimal::nearest() const {
    if (number == 0 && !overflow) return 0;
    if (overflow || decimals > longest_number) return __sepa_strtod(begin, nullptr);
    if (number <= exact_in_double) return static_cast<double>(number) / powers_of_ten[decimals];
    // Wider than a double where the processor has it, so that only one rounding counts.
    return static_cast<double>(static_cast<long double>(number) / powers_of_ten[decimals]);
}

std::int64_t nearest_exact(double amount) {
    const double units = round_half_away(amount * exact_unit);
    constexpr double range = 9223372036854775808.0; // 2^63
    return units < range ? static_cast<std::int64_t>(units) : no_exact_amount;
}

} // namespace velmora
