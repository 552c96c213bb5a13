// Letters and digits of ASCII. Nothing here asks the locale: what a payment file may hold does not depend on
// where it is written.
#pragma once

#include <string_view>

namespace velmora {

constexpr bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

constexpr bool is_capital(char c) {
    return c >= 'A' && c <= 'Z';
}

constexpr bool is_letter(char c) {
    return is_capital(c) || (c >= 'a' && c <= 'z');
}

constexpr bool is_letter_or_digit(char c) {
    return is_letter(c) || is_digit(c);
}

// Blank, tab, line feed, vertical tab, form feed and carriage return.
constexpr bool is_space(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr char to_upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

constexpr bool equals_ignoring_case(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::string_view::size_type i = 0; i < a.size(); ++i)
        if (to_upper(a[i]) != to_upper(b[i])) return false;
    return true;
}

} // namespace velmora
