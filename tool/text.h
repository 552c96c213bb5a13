// Texts, and the memory that the tool keeps them in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace velmora::tool {

using Text = std::string_view;

// A piece of a text, as much of it as there is. (substr() would need libstdc++.)
inline Text piece(Text text, std::size_t from, std::size_t length = SIZE_MAX) {
    if (from > text.size()) from = text.size();
    text.remove_prefix(from);
    return {text.data(), length < text.size() ? length : text.size()};
}

inline bool starts_with(Text text, Text start) {
    return text.size() >= start.size() && std::memcmp(text.data(), start.data(), start.size()) == 0;
}

constexpr bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

constexpr char to_upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

constexpr bool is_letter(char c) {
    return to_upper(c) >= 'A' && to_upper(c) <= 'Z';
}

inline bool all_digits(Text text) {
    for (const char c : text)
        if (!is_digit(c)) return false;
    return !text.empty();
}

inline bool equals_ignoring_case(Text a, Text b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (to_upper(a[i]) != to_upper(b[i])) return false;
    return true;
}

inline Text trim(Text text) {
    const auto is_blank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && is_blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && is_blank(text.back()))
        text.remove_suffix(1);
    return text;
}

// The text before the first separator; what follows it stays in `rest`.
inline Text take_until(Text& rest, char separator) {
    const std::size_t at = rest.find(separator);
    const Text first = piece(rest, 0, at);
    rest = at == Text::npos ? Text() : piece(rest, at + 1);
    return first;
}

// A number of at most nine digits, or -1.
inline long small_number(Text text) {
    if (!all_digits(text) || text.size() > 9) return -1;
    long number = 0;
    for (const char c : text)
        number = number * 10 + (c - '0');
    return number;
}

// Length of the valid UTF-8 character that the text begins with; 0 when there is none.
std::size_t utf8_length(Text text);
bool is_utf8(Text text);
// Columns that the text takes on a terminal.
std::size_t display_width(Text text);

// Memory, or the end of the program with exit code 5.
void* allocate(std::size_t size);
// Overwrites the memory before it is freed: most of what the tool reads is account data.
void wipe_and_free(void* memory, std::size_t size);

// Elements one behind the other.
template <typename Element>
class List {
    static_assert(std::is_trivially_copyable_v<Element>);

public:
    List() = default;
    List(const List&) = delete;
    List& operator=(const List&) = delete;
    ~List() { wipe_and_free(elements_, capacity_ * sizeof(Element)); }

    void reserve(std::size_t wanted) {
        if (wanted <= capacity_) return;
        const std::size_t capacity = wanted < 2 * capacity_ ? 2 * capacity_ : wanted;
        auto* elements = static_cast<Element*>(allocate(capacity * sizeof(Element)));
        if (size_ > 0) std::memcpy(static_cast<void*>(elements), elements_, size_ * sizeof(Element));
        wipe_and_free(elements_, capacity_ * sizeof(Element));
        elements_ = elements;
        capacity_ = capacity;
    }
    Element& add(const Element& element) {
        const Element copy = element; // it may be one of ours
        reserve(size_ + 1);
        elements_[size_] = copy;
        return elements_[size_++];
    }
    // The size after bytes were written behind the end, for which room was reserved.
    void set_size(std::size_t size) { size_ = size; }
    void clear() { size_ = 0; }

    Element* data() { return elements_; }
    const Element* data() const { return elements_; }
    [[nodiscard]] std::size_t size() const { return size_; }
    [[nodiscard]] std::size_t capacity() const { return capacity_; }
    [[nodiscard]] bool empty() const { return size_ == 0; }
    Element& operator[](std::size_t i) { return elements_[i]; }
    const Element& operator[](std::size_t i) const { return elements_[i]; }
    Element* begin() { return elements_; }
    Element* end() { return elements_ + size_; }
    const Element* begin() const { return elements_; }
    const Element* end() const { return elements_ + size_; }

private:
    Element* elements_ = nullptr;
    std::size_t size_ = 0, capacity_ = 0;
};

// A text that grows.
class Buffer : public List<char> {
public:
    Buffer& operator<<(Text text) {
        reserve(size() + text.size());
        if (!text.empty()) std::memcpy(data() + size(), text.data(), text.size());
        set_size(size() + text.size());
        return *this;
    }
    Buffer& operator<<(char c) {
        add(c);
        return *this;
    }
    template <typename Number>
    requires std::is_integral_v<Number> Buffer& operator<<(Number number) {
        if constexpr (std::is_signed_v<Number>)
            return signed_number(number);
        else
            return unsigned_number(number);
    }
    [[nodiscard]] Text view() const { return {data(), size()}; }
    // Zero-terminated, valid until the buffer changes.
    const char* c_str() {
        reserve(size() + 1);
        data()[size()] = '\0';
        return data();
    }

private:
    Buffer& signed_number(std::int64_t number);
    Buffer& unsigned_number(std::uint64_t number);
};

// A number with separators, for people: 1,234,567.
void append_grouped(Buffer& out, std::uint64_t number);
// Cents as euros: 1234 as 12.34.
void append_cents(Buffer& out, std::int64_t cents);
// 1/100,000 of a currency unit, exact, with two decimals or as many more as it takes.
void append_amount(Buffer& out, std::int64_t amount);
// An amount in 1/100,000 of its currency unit, the nearest.
std::int64_t hundred_thousandths(double amount);
// An account as --mask shows it: DE89...3000.
void append_masked(Buffer& out, Text account);

} // namespace velmora::tool
