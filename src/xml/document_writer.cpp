#include "xml/document_writer.h"

#include <cstdlib>
#include <utility>

#include "base/amount.h"
#include "base/pages.h"

namespace velmora {
namespace {

constexpr std::size_t smallest_size = 4096;

// What a byte becomes in element content; empty when it stays itself.
constexpr std::string_view replacement(char c) {
    switch (c) {
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '&':
        return "&amp;";
    default:
        return {};
    }
}

// Whether one of eight characters has to be replaced.
bool needs_escape(std::uint64_t eight) {
    constexpr std::uint64_t each = 0x0101010101010101, high_bits = each * 0x80;
    const auto holds = [&](char c) {
        const std::uint64_t difference = eight ^ each * static_cast<unsigned char>(c);
        return (difference - each) & ~difference;
    };
    // "<" and ">" differ in one bit, which all characters are given here.
    const std::uint64_t angles = (eight | each * 2) ^ each * static_cast<unsigned char>('>');
    return ((holds('&') | ((angles - each) & ~angles)) & high_bits) != 0;
}

// How many characters at the beginning stay as they are, eight at a time.
std::size_t plain_prefix(std::string_view text) {
    std::size_t at = 0;
    std::uint64_t eight = 0;
    for (; at + sizeof eight <= text.size(); at += sizeof eight) {
        std::memcpy(&eight, text.data() + at, sizeof eight);
        if (needs_escape(eight)) return at;
    }
    while (at < text.size() && replacement(text[at]).empty())
        ++at;
    return at;
}

} // namespace

DocumentWriter::DocumentWriter(std::size_t expected_size) {
    const std::size_t size = expected_size < smallest_size ? smallest_size : expected_size;
    begin_ = static_cast<char*>(std::malloc(size));
    if (begin_ == nullptr) return;
    end_ = begin_;
    limit_ = begin_ + size;
    prefer_huge_pages(begin_, size);
}

DocumentWriter::~DocumentWriter() {
    discard();
}

void DocumentWriter::discard() {
    if (begin_ == nullptr) return;
    explicit_bzero(begin_, static_cast<std::size_t>(end_ - begin_));
    std::free(begin_);
    begin_ = end_ = limit_ = nullptr;
}

bool DocumentWriter::grow(std::size_t size) {
    if (begin_ == nullptr) return false;
    const auto used = static_cast<std::size_t>(end_ - begin_);
    const std::size_t new_size = used + used / 2 + size + smallest_size;
    auto* memory = static_cast<char*>(std::malloc(new_size));
    if (memory != nullptr) std::memcpy(memory, begin_, used);
    discard();
    if (memory == nullptr) return false;
    begin_ = memory;
    end_ = memory + used;
    limit_ = memory + new_size;
    return true;
}

void DocumentWriter::escaped_line(std::string_view open, std::string_view text, std::string_view close) {
    std::size_t plain = plain_prefix(text);
    if (plain == text.size()) return append(open, text, close);
    append(open, std::string_view(text.data(), plain));
    for (; plain < text.size(); ++plain) {
        const std::string_view replaced = replacement(text[plain]);
        append(replaced.empty() ? std::string_view(&text[plain], 1) : replaced);
    }
    append(close);
}

void DocumentWriter::amount(std::string_view open, double euros, std::string_view close) {
    cents(open, to_cents(euros), close);
}

void DocumentWriter::cents(std::string_view open, std::int64_t cents, std::string_view close) {
    char buffer[32];
    const char* end = write_cents(buffer, sizeof buffer, cents);
    append(open, std::string_view(buffer, end), close);
}

void DocumentWriter::number(std::string_view open, std::uint64_t number, std::string_view close) {
    char buffer[20];
    char* const end = buffer + sizeof buffer;
    char* begin = end;
    do
        *--begin = static_cast<char>('0' + number % 10);
    while ((number /= 10) != 0);
    append(open, std::string_view(begin, end), close);
}

char* DocumentWriter::release() {
    if (begin_ == nullptr) return nullptr;
    *end_ = '\0';
    limit_ = end_ = nullptr;
    return std::exchange(begin_, nullptr);
}

} // namespace velmora
