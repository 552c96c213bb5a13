#include "bank/normalise.h"

#include <cstring>

#include "base/ascii.h"
#include "velmora.h"

namespace velmora {
namespace {

constexpr char no_break_space[] = "\xC2\xA0";
constexpr char narrow_no_break_space[] = "\xE2\x80\xAF";

const char* skip_blanks(const char* text) {
    for (const char* behind; (behind = skip_blank(text)) != text;)
        text = behind;
    return text;
}

} // namespace

const char* skip_blank(const char* text) {
    if (is_space(*text)) return text + 1;
    if (std::strncmp(text, no_break_space, sizeof(no_break_space) - 1) == 0)
        return text + sizeof(no_break_space) - 1;
    if (std::strncmp(text, narrow_no_break_space, sizeof(narrow_no_break_space) - 1) == 0)
        return text + sizeof(narrow_no_break_space) - 1;
    return text;
}

TypedIban::TypedIban(const char* text) : next_(skip_blanks(text)) {
    const char* word = next_;
    for (const char letter : {'I', 'B', 'A', 'N'}) {
        if (to_upper(*word) != letter) return;
        word = skip_blanks(word + 1);
    }
    next_ = *word == ':' ? skip_blanks(word + 1) : word;
}

char TypedIban::next() {
    position_ = next_;
    if (*next_ != '\0') next_ = skip_blanks(next_ + 1);
    return to_upper(*position_);
}

} // namespace velmora

// What is written never overtakes what is read, so that both may be the same text.
int sepa_iban_normalise(const char* text, char* iban, size_t size) {
    if (iban == nullptr || size == 0) return -1;
    if (text == nullptr) {
        *iban = '\0';
        return -1;
    }
    velmora::TypedIban typed(text);
    for (std::size_t length = 0; length < size; ++length)
        if ((iban[length] = typed.next()) == '\0') return 1;
    *iban = '\0';
    return -1;
}
