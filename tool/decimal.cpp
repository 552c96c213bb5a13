#include "decimal.h"

namespace velmora::tool {
namespace {

// Groups of three digits behind a first one of one to three: "1.234.567".
bool is_grouped(Text text, char separator) {
    const Text first = take_until(text, separator);
    if (first.size() > 3 || !all_digits(first)) return false;
    for (bool more = true; more;) {
        more = text.find(separator) != Text::npos;
        const Text group = take_until(text, separator);
        if (group.size() != 3 || !all_digits(group)) return false;
    }
    return true;
}

std::size_t count(Text text, char wanted) {
    std::size_t found = 0;
    for (const char c : text)
        found += c == wanted;
    return found;
}

std::int64_t refuse(Text& why, Text reason) {
    why = reason;
    return -1;
}

} // namespace

std::int64_t parse_amount(Text text, DecimalRule rule, Text& why) {
    text = trim(text);
    if (text.empty()) return refuse(why, "amount missing");
    if (text.front() == '-') return refuse(why, "negative amount");
    for (const char c : text)
        if (!is_digit(c) && c != '.' && c != ',') return refuse(why, "not an amount");
    const std::size_t points = count(text, '.'), commas = count(text, ',');

    // The decimal mark, or none; the other one groups thousands.
    char decimal = '\0';
    if (rule.said != '\0') {
        decimal = rule.said;
    } else if (points > 0 && commas > 0) {
        decimal = text.rfind('.') > text.rfind(',') ? '.' : ',';
    } else if (points == 1 || commas == 1) {
        const char only = points == 1 ? '.' : ',';
        if (is_grouped(text, only))
            return refuse(why, "could be thousands or decimals: say --decimal point or comma");
        decimal = only;
    }
    const char grouping = decimal == '.' ? ',' : decimal == ',' ? '.' : points > 0 ? '.' : ',';
    if (decimal == ',' && rule.said == '\0' && rule.marks == Mark::point)
        return refuse(why, "\",\" is no decimal mark here: say --decimal comma");

    const std::size_t at = decimal == '\0' ? Text::npos : text.find(decimal);
    const Text whole = piece(text, 0, at);
    Text decimals = at == Text::npos ? Text() : piece(text, at + 1);
    if (at != Text::npos && (decimals.empty() || whole.empty() || !all_digits(decimals)))
        return refuse(why, "not an amount");
    if (whole.find(grouping) == Text::npos ? !all_digits(whole) : !is_grouped(whole, grouping))
        return refuse(why, "not an amount");
    while (decimals.size() > 2 && decimals.back() == '0')
        decimals.remove_suffix(1);
    if (decimals.size() > 2) return refuse(why, "more than two decimals: amounts are not rounded");

    std::int64_t cents = 0;
    const auto add = [&cents](char digit) { cents = cents * 10 + (digit - '0'); };
    for (const char c : whole) {
        if (c == grouping) continue;
        if (cents > INT64_MAX / 100'000) return refuse(why, "amount too large");
        add(c);
    }
    for (std::size_t i = 0; i < 2; ++i)
        add(i < decimals.size() ? decimals[i] : '0');
    return cents;
}

} // namespace velmora::tool
