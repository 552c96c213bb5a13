#include "statement/tolerant_fields.h"

#include <cstring>

#include "base/ascii.h"

namespace velmora::tolerant {
namespace {

// At most so many bytes of a text, without cutting a character of UTF-8 apart.
std::size_t cut_length(std::string_view text, std::size_t most) {
    if (text.size() <= most) return text.size();
    const auto continues = [&](std::size_t at) { return (text[at] & 0xC0) == 0x80; };
    std::size_t length = most;
    while (length != 0 && most - length < 3 && continues(length))
        --length;
    return continues(length) ? most : length;
}

// "1.234,56" becomes "1234.56".
std::string_view with_decimal_point(std::string_view text) {
    if (std::memchr(text.data(), ',', text.size()) == nullptr) return text;
    char* const begin = const_cast<char*>(text.data());
    char* out = begin;
    for (const char c : text)
        if (c != '.') *out++ = c == ',' ? '.' : c;
    *out = '\0';
    return {begin, static_cast<std::size_t>(out - begin)};
}

} // namespace

bool looks_like_iban(std::string_view text) {
    if (text.size() < 15 || text.size() > 34) return false;
    if (!is_capital(text[0]) || !is_capital(text[1]) || !is_digit(text[2]) || !is_digit(text[3]))
        return false;
    for (const char c : text)
        if (!is_capital(c) && !is_digit(c)) return false;
    return true;
}

bool Fields::keep_copy(std::string_view text) {
    if (text.empty()) return true;
    const char* const copy = reader_.records.copy_text(text);
    return copy != nullptr ? keep({copy, text.size()}) : reader_.no_memory();
}

bool Fields::set(char*& field, std::string_view text) {
    if (text.empty()) return true;
    if (field != nullptr) return keep(text);
    field = const_cast<char*>(text.data());
    return true;
}

bool Fields::set_end_to_end_reference(std::string_view text) {
    return text == "NOTPROVIDED" || set(booking_.eref, text);
}

bool Fields::set_keyword(const Keyword& keyword, std::string_view text) {
    if (keyword.value == &sepa_stmt_tx_t::eref) return set_end_to_end_reference(text);
    return set(booking_.*keyword.value, keyword.is_amount ? with_decimal_point(text) : text);
}

template <std::size_t size>
bool Fields::set(char (&field)[size], std::string_view text) {
    if (field[0] != '\0') return text == field || keep_copy(text);
    const std::size_t length = cut_length(text, size - 1);
    std::memcpy(field, text.data(), length);
    return length == text.size() || keep_copy(text);
}

bool Fields::set_account(std::string_view text) {
    return set(booking_.account, text);
}

bool Fields::set_bank(std::string_view text) {
    return set(booking_.bank, text);
}

bool Fields::set_iban(std::string_view text) {
    if (booking_.account[0] != '\0' && !looks_like_iban(booking_.account) && looks_like_iban(text)) {
        if (!keep_copy(booking_.account)) return false;
        explicit_bzero(booking_.account, sizeof booking_.account);
    }
    return set_account(text);
}

bool Fields::set_name(std::string_view text) {
    if (text.empty()) return true;
    if (info().fullName != nullptr) return keep_copy(text);
    const std::size_t length = cut_length(text, sizeof booking_.name - 1);
    std::memcpy(booking_.name, text.data(), length);
    info().fullName = length == text.size() ? booking_.name : reader_.records.copy_text(text);
    return info().fullName != nullptr || reader_.no_memory();
}

} // namespace velmora::tolerant
