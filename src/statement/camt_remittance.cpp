#include "statement/camt_remittance.h"

#include <cstring>

#include "base/ascii.h"
#include "statement/keywords.h"

namespace velmora::camt {
namespace {

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

} // namespace

bool is_no_reference(const char* text) {
    return std::strcmp(text, "NOTPROVIDED") == 0;
}

bool Remittance::add(char* text, std::size_t length) {
    if (keywords_at_ == nowhere && find_keyword_at(text) != nullptr)
        keywords_at_ = text_.empty() ? 0 : text_.length() + 1;
    return text_.add(text, length, ' ');
}

bool Remittance::take(RecordPool& records, sepa_stmt_tx_t& booking) {
    char* text = nullptr;
    const std::size_t keywords_at = keywords_at_;
    keywords_at_ = nowhere;
    if (!text_.take(records, text)) return false;
    if (keywords_at == nowhere || text == nullptr) {
        booking.svwz = text;
        return true;
    }

    // The purpose has a keyword, too; more than one text of it are joined again.
    JoinedText purpose;
    if (keywords_at != 0) {
        const std::size_t length = trim(text, text + keywords_at);
        if (length != 0 && !purpose.add(text, length, ' ')) return false;
    }
    char* const end = text + keywords_at + std::strlen(text + keywords_at);
    for (char* word = text + keywords_at; *word != '\0';) {
        const Keyword& keyword = *find_keyword_at(word);
        char* const value = word + keyword_length;
        word = find_next_keyword(value, end);
        const std::size_t length = trim(value, word);
        if (length == 0) continue;
        if (keyword.value == &sepa_stmt_tx_t::svwz) {
            if (!purpose.add(value, length, ' ')) return false;
        } else if (booking.*keyword.value == nullptr && !is_no_reference(value)) {
            booking.*keyword.value = value;
            if (char* const comma = keyword.is_amount ? std::strchr(value, ',') : nullptr) *comma = '.';
        }
    }
    return purpose.take(records, booking.svwz);
}

} // namespace velmora::camt
