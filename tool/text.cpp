#include "text.h"

#include <cstdlib>

#include "failure.h"

namespace velmora::tool {

std::size_t utf8_length(Text text) {
    if (text.empty()) return 0;
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byte(0);
    if (first < 0x80) return 1;
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byte(i) & 0xC0) != 0x80) return 0;
    // Too long forms, surrogates, and what lies beyond U+10FFFF.
    if ((first == 0xE0 && byte(1) < 0xA0) || (first == 0xED && byte(1) > 0x9F) ||
        (first == 0xF0 && byte(1) < 0x90) || (first == 0xF4 && byte(1) > 0x8F))
        return 0;
    return length;
}

bool is_utf8(Text text) {
    while (!text.empty()) {
        const std::size_t length = utf8_length(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

std::size_t display_width(Text text) {
    std::size_t width = 0;
    for (const char c : text)
        width += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    return width;
}

void* allocate(std::size_t size) {
    void* memory = std::malloc(size);
    if (memory == nullptr) fail(Exit::memory, "out of memory");
    return memory;
}

void wipe_and_free(void* memory, std::size_t size) {
    if (memory == nullptr) return;
    explicit_bzero(memory, size);
    std::free(memory);
}

Buffer& Buffer::unsigned_number(std::uint64_t number) {
    if (number < 10) return *this << static_cast<char>('0' + number);
    char digits[20];
    char* start = digits + sizeof digits;
    do {
        *--start = static_cast<char>('0' + number % 10);
        number /= 10;
    } while (number > 0);
    return *this << Text(start, static_cast<std::size_t>(digits + sizeof digits - start));
}

Buffer& Buffer::signed_number(std::int64_t number) {
    if (number >= 0) return unsigned_number(static_cast<std::uint64_t>(number));
    *this << '-';
    return unsigned_number(0 - static_cast<std::uint64_t>(number));
}

void append_grouped(Buffer& out, std::uint64_t number) {
    if (number >= 1000) {
        append_grouped(out, number / 1000);
        out << ',';
        if (number % 1000 < 100) out << '0';
        if (number % 1000 < 10) out << '0';
    }
    out << number % 1000;
}

namespace {

void append_decimal(Buffer& out, std::int64_t number, std::uint64_t unit, std::size_t decimals) {
    const bool negative = number < 0;
    const auto value = negative ? 0 - static_cast<std::uint64_t>(number) : static_cast<std::uint64_t>(number);
    if (negative) out << '-';
    out << value / unit << '.';
    char digits[8];
    std::uint64_t rest = value % unit;
    for (std::size_t i = decimals; i-- > 0; rest /= 10)
        digits[i] = static_cast<char>('0' + rest % 10);
    while (decimals > 2 && digits[decimals - 1] == '0')
        --decimals;
    out << Text(digits, decimals);
}

} // namespace

void append_cents(Buffer& out, std::int64_t cents) {
    append_decimal(out, cents, 100, 2);
}

void append_amount(Buffer& out, std::int64_t amount) {
    append_decimal(out, amount, 100'000, 5);
}

std::int64_t hundred_thousandths(double amount) {
    const double scaled = amount * 100'000;
    if (!(scaled > -9e18 && scaled < 9e18)) return 0;
    return static_cast<std::int64_t>(scaled < 0 ? scaled - 0.5 : scaled + 0.5);
}

void append_masked(Buffer& out, Text account) {
    const std::size_t head = account.size() >= 15 ? 4 : 0;
    const std::size_t tail = account.size() >= 15 ? 4 : account.size() >= 7 ? 3 : 0;
    out << piece(account, 0, head) << "..." << piece(account, account.size() - tail);
}

} // namespace velmora::tool
