// How people write IBANs, and what is meant.
#pragma once

#include <cstddef>

namespace velmora {

// An IBAN as it may be typed, read character by character: without blanks and without "IBAN" or "IBAN:" in
// front, letters in upper case.
class TypedIban {
public:
    explicit TypedIban(const char* text);

    // The next character, '\0' at the end.
    char next();

    // Where the character stands that next() gave last.
    const char* position() const { return position_; }

private:
    const char* position_ = nullptr;
    const char* next_;
};

// The first byte behind a blank that a text begins with: what ASCII has of them, or a space that does not
// break. The text itself when it begins with none.
const char* skip_blank(const char* text);

} // namespace velmora
