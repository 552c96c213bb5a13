#include "statement/tolerant_lines.h"

#include <bit>
#include <cstring>
#include <string_view>

#include "base/utf8.h"
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace velmora::tolerant {
namespace {

// The characters between the two ":" of a tag as a number.
constexpr std::uint32_t word(std::string_view tag) {
    std::uint32_t value = 0;
    for (const char c : tag)
        value = value << 8 | static_cast<unsigned char>(c);
    return value;
}

void set_tag(Line& line) {
    const std::ptrdiff_t length = line.end - line.begin;
    const char* const tag = line.begin + 1;
    const int size = length >= 4 && tag[2] == ':' ? 2 : length >= 5 && tag[3] == ':' ? 3 : 0;
    if (size == 0) return;
    const auto found = [&](Tag kind) {
        line.tag = kind;
        line.content = line.begin + size + 2;
    };
    switch (word({tag, static_cast<std::size_t>(size)})) {
    case word("61"):
        return found(Tag::booking);
    case word("86"):
        return found(Tag::text);
    case word("20"):
        return found(Tag::reference);
    case word("25"):
    case word("25P"):
        return found(Tag::account);
    case word("28"):
    case word("28C"):
        return found(Tag::number);
    case word("60M"):
        line.is_intermediate = true;
        [[fallthrough]];
    case word("60F"):
        return found(Tag::opening);
    case word("62M"):
        line.is_intermediate = true;
        [[fallthrough]];
    case word("62F"):
        return found(Tag::closing);
    case word("64"):
        return found(Tag::available);
    case word("65"):
        return found(Tag::forward);
    case word("90C"):
    case word("90D"):
        return found(Tag::totals);
    case word("13D"):
    case word("21"):
    case word("34F"):
    case word("NS"):
        return found(Tag::skipped);
    default:
        return;
    }
}

// Of a line that begins with "-".
bool is_end(const Line& line) {
    if (line.begin[1] == '}') return true; // a trailer "{5:...}" may follow
    for (const char* at = line.begin + 1; at != line.end; ++at)
        if (*at != ' ') return false;
    return true;
}

bool is_stop(char c) {
    return c == '\r' || c == '\n' || c == '\0';
}

// The first CR, LF or zero byte; the text has one behind it. `is_ascii` becomes false when a character in
// front of it is not of ASCII.
char* find_stop(char* at, bool& is_ascii) {
#ifdef __SSE2__
    const __m128i largest = _mm_set1_epi8('\r');
    __m128i seen = _mm_setzero_si128();
    for (;; at += 16) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        // All stops are at most a CR; of the other characters there hardly any is met.
        auto low =
            static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(_mm_min_epu8(block, largest), block)));
        while (low != 0 && !is_stop(at[std::countr_zero(low)]))
            low &= low - 1;
        if (low == 0) {
            seen = _mm_or_si128(seen, block);
            continue;
        }
        const auto high = static_cast<unsigned>(_mm_movemask_epi8(block)) & (low - 1) & ~low;
        if ((static_cast<unsigned>(_mm_movemask_epi8(seen)) | high) != 0) is_ascii = false;
        return at + std::countr_zero(low);
    }
#else
    for (; !is_stop(*at); ++at)
        if ((*at & 0x80) != 0) is_ascii = false;
    return at;
#endif
}

bool is_padding(char c) {
    return c == '\0' || c == '\x1A' || c == '\r' || c == '\n' || c == ' ';
}

} // namespace

Lines::Lines(const FileText& text) : begin_(text.data()), end_(begin_ + text.size()) {
    if (text.size() >= 3 && std::memcmp(begin_, "\xEF\xBB\xBF", 3) == 0) begin_ += 3;
    char* end = end_;
    while (end != begin_ && is_padding(end[-1]))
        --end;
    *end = '\0';
    // What follows the last character is nothing but line ends.
    bool is_ascii = true;
    if (find_stop(begin_, is_ascii) >= end &&
        memmem(begin_, static_cast<std::size_t>(end - begin_), "@@", 2) != nullptr)
        ends_with_at_signs_ = true;
    end_ = end;
}

char* Lines::find_end(char* at, char*& next, bool& is_ascii) const {
    if (ends_with_at_signs_) {
        void* const signs = memmem(at, static_cast<std::size_t>(end_ - at), "@@", 2);
        char* const stop = signs != nullptr ? static_cast<char*>(signs) : end_;
        next = signs != nullptr ? stop + 2 : end_;
        is_ascii = false; // is not looked at
        return stop;
    }
    char* const stop = find_stop(at, is_ascii);
    next = stop;
    if (*stop == '\n')
        ++next;
    else if (*stop == '\r')
        next += stop[1] == '\n' ? 2 : stop[1] == '\r' && stop[2] == '\n' ? 3 : 1;
    return stop;
}

std::ptrdiff_t Lines::count_characters(const char* begin, const char* end) const {
    std::ptrdiff_t count = end - begin;
    if (is_ascii_ || !is_utf8_) return count;
    for (const char* at = begin; at != end; ++at)
        if ((*at & 0xC0) == 0x80) --count;
    return count;
}

void Lines::read(char* at, Line& line) {
    line.begin = line.content = at;
    line.tag = Tag::none;
    line.is_intermediate = false;
    bool is_ascii = true;
    line.end = find_end(at, line.next, is_ascii);
    const std::string_view text(at, static_cast<std::size_t>(line.end - at));
    if (!is_ascii) {
        is_ascii_ = false;
        is_utf8_ = is_utf8_ && find_invalid_utf8(text) == nullptr;
    }
    if (*at == '{' && text.starts_with("{1:")) {
        line.tag = Tag::header;
        void* const body = memmem(at, text.size(), "{4:", 3);
        if (body == nullptr || static_cast<char*>(body) + 3 == line.end) return;
        line.begin = line.content = static_cast<char*>(body) + 3; // the first tag stands on the same line
    }
    if (*line.begin == ':')
        set_tag(line);
    else if (*line.begin == '-' && is_end(line))
        line.tag = Tag::end;
}

bool Lines::ends_statement(const Line& line) {
    if (next_tag_.begin <= line.begin) {
        next_tag_ = {end_, nullptr, end_, end_, Tag::reference, false};
        for (char* at = line.next; at < end_;) {
            Line ahead;
            read(at, ahead);
            if (ahead.tag != Tag::none && ahead.tag != Tag::end) {
                next_tag_ = ahead;
                break;
            }
            if (ahead.next == at) break; // a zero byte, which is refused when it is read
            at = ahead.next;
        }
    }
    return next_tag_.tag == Tag::reference || next_tag_.tag == Tag::header;
}

} // namespace velmora::tolerant
