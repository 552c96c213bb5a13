#include "statement/camt_remittance.h"

#include <cstring>

#include "base/ascii.h"
#include "statement/keywords.h"

namespace velmora::camt {
namespace {

// Between the texts from the first with keywords on. XML forbids it inside of them.
constexpr char boundary = '\x1F';

const Keyword* find_keyword_at(const char* text) {
    const bool is_long_enough = strnlen(text, keyword_length) == keyword_length;
    return is_long_enough && text[keyword_word_length] == '+' ? find_keyword(text) : nullptr;
}

// The next keyword behind a blank, or the text's end.
char* find_next_keyword(char* text, char* end) {
    if (end - text <= static_cast<std::ptrdiff_t>(keyword_length)) return end;
    for (char* from = text + keyword_length; from != end;) {
        auto* const plus = static_cast<char*>(std::memchr(from, '+', static_cast<std::size_t>(end - from)));
        if (plus == nullptr) break;
        char* const word = plus - keyword_word_length;
        if (is_space(word[-1]) && find_keyword_at(word) != nullptr) return word;
        from = plus + 1;
    }
    return end;
}

// Cuts the blanks in front of `end` off; returns the length that is left.
std::size_t trim(char* begin, char* end) {
    if (end == begin) return 0;
    while (end != begin && is_space(end[-1]))
        --end;
    if (*end != '\0') *end = '\0';
    return static_cast<std::size_t>(end - begin);
}

// False without memory.
bool add_to(JoinedText& purpose, char* text, char* end) {
    const std::size_t length = trim(text, end);
    return length == 0 || purpose.add(text, length, ' ');
}

// A text that begins with a keyword. What the booking knows already stays. False without memory.
bool split(char* text, char* end, sepa_stmt_tx_t& booking, JoinedText& purpose) {
    for (char* word = text; *word != '\0';) {
        const Keyword& keyword = *find_keyword_at(word);
        char* const value = word + keyword_length;
        word = find_next_keyword(value, end);
        if (keyword.value == &sepa_stmt_tx_t::svwz) {
            if (!add_to(purpose, value, word)) return false;
        } else if (trim(value, word) != 0 && booking.*keyword.value == nullptr && !is_no_reference(value)) {
            booking.*keyword.value = value;
            if (char* const comma = keyword.is_amount ? std::strchr(value, ',') : nullptr) *comma = '.';
        }
    }
    return true;
}

} // namespace

bool is_no_reference(const char* text) {
    return std::strcmp(text, "NOTPROVIDED") == 0;
}

bool Remittance::add(char* text, std::size_t length) {
    has_keywords_ |= find_keyword_at(text) != nullptr;
    return text_.add(text, length, has_keywords_ ? boundary : ' ');
}

bool Remittance::take(RecordPool& records, sepa_stmt_tx_t& booking) {
    char* text = nullptr;
    const bool has_keywords = has_keywords_;
    has_keywords_ = false;
    if (!text_.take(records, text)) return false;
    if (!has_keywords || text == nullptr) {
        booking.svwz = text;
        return true;
    }

    // The purpose has a keyword, too; more than one text of it are joined again.
    JoinedText purpose;
    for (char *next, *piece = text; *piece != '\0'; piece = next) {
        char* const end = strchrnul(piece, boundary);
        next = *end == boundary ? end + 1 : end;
        if (*end != '\0') *end = '\0';
        if (!(find_keyword_at(piece) != nullptr ? split(piece, end, booking, purpose)
                                                : add_to(purpose, piece, end)))
            return false;
    }
    return purpose.take(records, booking.svwz);
}

} // namespace velmora::camt
