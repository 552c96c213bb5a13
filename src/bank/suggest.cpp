// What could be meant by a German IBAN with a typing error.
#include <cstring>
#include <utility>

#include "bank/iban_check.h"
#include "bank/iban_rules.h"
#include "base/ascii.h"
#include "velmora.h"

using namespace velmora;

namespace {

// The list of candidates, as far as the caller's text has room for them.
class Candidates {
public:
    static constexpr int most = 3;

    Candidates(char* text, std::size_t size) : text_(text), size_(size) { *text_ = '\0'; }

    int count() const { return count_; }
    bool is_full() const { return count_ == most || size_ < length_ + (count_ > 0) + german_iban_length + 1; }
    void add_if_valid(const char* iban) {
        if (is_full() || iban_validate(iban, nullptr) != 1) return;
        if (count_++ > 0) text_[length_++] = ' ';
        std::memcpy(text_ + length_, iban, german_iban_length + 1);
        length_ += german_iban_length;
    }

private:
    char* text_;
    std::size_t size_;
    std::size_t length_ = 0;
    int count_ = 0;
};

bool is_german_iban_of_digits(const char* iban) {
    if (iban[0] != 'D' || iban[1] != 'E') return false;
    std::size_t length = 2;
    while (is_digit(iban[length]))
        ++length;
    return length == german_iban_length && iban[length] == '\0';
}

} // namespace

// Of two neighbours swapped the whole check finds the true IBAN alone nearly always; of one digit changed in
// two of three cases. Therefore swaps come first. Two errors lead to wrong candidates, which nobody can tell.
int sepa_iban_suggest(const char* iban, char* candidates, size_t size) {
    if (candidates == nullptr || size == 0) return 0;
    char given[german_iban_length + 2]; // one character too many is noticed
    const bool is_of_length = sepa_iban_normalise(iban, given, sizeof given) == 1;
    Candidates result(candidates, size);
    if (!is_of_length || !is_german_iban_of_digits(given) || iban_validate(given, nullptr) == 1) return 0;

    for (std::size_t i = 2; i + 1 < german_iban_length; ++i) {
        if (given[i] == given[i + 1]) continue;
        std::swap(given[i], given[i + 1]);
        result.add_if_valid(given);
        std::swap(given[i], given[i + 1]);
    }
    for (std::size_t i = 2; i < german_iban_length && !result.is_full(); ++i) {
        const char original = given[i];
        for (char digit = '0'; digit <= '9'; ++digit) {
            given[i] = digit;
            if (digit != original) result.add_if_valid(given);
        }
        given[i] = original;
    }
    return result.count();
}
