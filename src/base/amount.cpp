#include "base/amount.h"

#include <algorithm>
#include <cerrno>
#include <cfloat>
#include <cstdint>
#include <limits>

#include "base/ascii.h"
#include "velmora.h"

namespace velmora {
namespace {

static_assert(FLT_EVAL_METHOD == 0, "amounts are calculated with a double's precision: -msse2 -mfpmath=sse");

constexpr int digits_counted = 18;
constexpr int low_digits = 9; // the last nine significant digits are gathered apart from those before
constexpr int largest_exponent = 511;
constexpr double powers_of_ten[] = {1.0e1, 1.0e2, 1.0e4, 1.0e8, 1.0e16, 1.0e32, 1.0e64, 1.0e128, 1.0e256};

double power_of_ten(int exponent) {
    double power = 1.0;
    for (int bit = 0; exponent != 0; exponent >>= 1, ++bit)
        if (exponent & 1) power *= powers_of_ten[bit];
    return power;
}

// Reads digits with at most one point among them.
struct Mantissa {
    std::int64_t high = 0;
    std::int64_t low = 0;
    int exponent = 0; // of the significant digits read as a whole number
    bool empty = true;
    const char* end = nullptr;
};

Mantissa read_mantissa(const char* text) {
    std::ptrdiff_t digits = 0;
    std::ptrdiff_t before_point = -1;
    const char* p = text;
    for (; is_digit(*p) || (*p == '.' && before_point < 0); ++p) {
        if (*p == '.')
            before_point = digits;
        else
            ++digits;
    }
    Mantissa mantissa;
    mantissa.end = p;
    if (digits == 0) return mantissa;
    mantissa.empty = false;
    if (before_point < 0) before_point = digits;

    const std::ptrdiff_t used = std::min<std::ptrdiff_t>(digits, digits_counted);
    std::ptrdiff_t left = used;
    for (const char* q = text; left > 0; ++q) {
        if (*q == '.') continue;
        std::int64_t& part = left > low_digits ? mantissa.high : mantissa.low;
        part = part * 10 + (*q - '0');
        --left;
    }
    constexpr std::ptrdiff_t limit = 1000000000;
    mantissa.exponent = static_cast<int>(std::clamp(before_point - used, -limit, limit));
    return mantissa;
}

// Reads "E", an optional sign and digits; the digits may be missing. An "E" before a letter begins a word, as
// in "12.50EUR", and stays where it is.
int read_exponent(const char*& p) {
    if ((*p != 'E' && *p != 'e') || is_letter(p[1])) return 0;
    ++p;
    const bool negative = *p == '-';
    if (*p == '-' || *p == '+') ++p;
    int exponent = 0;
    for (; is_digit(*p); ++p)
        if (exponent < 100000000) exponent = exponent * 10 + (*p - '0');
    return negative ? -exponent : exponent;
}

} // namespace

std::int64_t to_cents(double amount) {
    const double cents = round_half_away(amount * 100.0);
    constexpr double range = 9223372036854775808.0; // 2^63
    if (cents >= range) return std::numeric_limits<std::int64_t>::max();
    if (cents < -range) return std::numeric_limits<std::int64_t>::min();
    return cents == cents ? static_cast<std::int64_t>(cents) : 0;
}

char* write_cents(char* buffer, std::size_t size, std::int64_t signed_cents) {
    char* p = buffer;
    const char* const last = buffer + size - 1; // kept for the terminator
    const auto put = [&](char c) {
        if (p < last) *p++ = c;
    };

    std::uint64_t cents = static_cast<std::uint64_t>(signed_cents);
    if (signed_cents < 0) cents = 0 - cents;
    std::uint64_t divisor = 10;
    while (divisor <= cents / 10)
        divisor *= 10;

    if (signed_cents < 0) put('-');
    if (cents <= 99) {
        put('0');
        put('.');
    }
    for (; divisor != 0; divisor /= 10) {
        put(static_cast<char>('0' + cents / divisor));
        cents %= divisor;
        if (divisor == 100) put('.');
    }
    *p = '\0';
    return p;
}

} // namespace velmora

double __sepa_strtod(const char* text, char** end) {
    using namespace velmora;
    if (end != nullptr) *end = const_cast<char*>(text);
    if (text == nullptr) return 0.0;

    const char* p = text;
    while (is_space(*p))
        ++p;
    const bool negative = *p == '-';
    if (*p == '-' || *p == '+') ++p;

    const Mantissa mantissa = read_mantissa(p);
    if (mantissa.empty) return negative ? -0.0 : 0.0;
    p = mantissa.end;
    int exponent = mantissa.exponent + read_exponent(p);
    if (end != nullptr) *end = const_cast<char*>(p);

    const bool divides = exponent < 0;
    if (divides) exponent = -exponent;
    if (exponent > largest_exponent) {
        errno = ERANGE;
        exponent = largest_exponent;
    }
    double value = static_cast<double>(mantissa.high) * 1e9 + static_cast<double>(mantissa.low);
    // Zero stays zero: times an infinite power it would be no number.
    if (value != 0.0) value = divides ? value / power_of_ten(exponent) : value * power_of_ten(exponent);
    return negative ? -value : value;
}

char* __sepa_d2str(char* buf, size_t size, double amount) {
    using namespace velmora;
    return size == 0 || buf == nullptr ? buf : write_cents(buf, size, to_cents(amount));
}
