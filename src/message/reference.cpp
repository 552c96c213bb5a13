#include "message/reference.h"

#include <cstring>

#include "base/ascii.h"
#include "base/mod97.h"
#include "velmora.h"

namespace velmora {
namespace {

constexpr std::size_t head_length = 4; // RF and the check digits
constexpr int smallest_check = 2, largest_check = 98;

bool is_reference_character(char c) {
    return is_capital(c) || is_digit(c);
}

} // namespace

ReferenceFault reference_fault(std::string_view reference) {
    if (reference.size() <= head_length || reference.size() > longest_reference ||
        !reference.starts_with("RF") || !is_digit(reference[2]) || !is_digit(reference[3]))
        return ReferenceFault::form;
    for (const char c : reference)
        if (!is_reference_character(c)) return ReferenceFault::form;
    // 00, 01 and 99 leave the same remainders as others and are not given out.
    const int check = (reference[2] - '0') * 10 + (reference[3] - '0');
    const bool fits = check >= smallest_check && check <= largest_check &&
                      mod97_rotated(reference, head_length, Letters::upper_case) == 1;
    return fits ? ReferenceFault::none : ReferenceFault::check_digits;
}

std::size_t compact(const char* text, char* out, std::size_t room) {
    std::size_t length = 0;
    for (; *text != '\0'; ++text) {
        if (*text == ' ') continue;
        if (length == room) return room + 1;
        out[length++] = to_upper(*text);
    }
    return length;
}

} // namespace velmora

using namespace velmora;

int sepa_reference_check(const char* reference) {
    if (reference == nullptr) return -1;
    const std::string_view text(reference, strnlen(reference, longest_reference + 1));
    return reference_fault(text) == ReferenceFault::none ? 1 : -1;
}

int sepa_reference_make(const char* text, char* reference) {
    if (reference == nullptr) return -1;
    char made[longest_reference] = {'R', 'F', '0', '0'};
    constexpr std::size_t room = longest_reference - head_length;
    const std::size_t length = text == nullptr ? 0 : compact(text, made + head_length, room);
    *reference = '\0';
    if (length == 0 || length > room) return -1;
    for (std::size_t i = 0; i < length; ++i)
        if (!is_reference_character(made[head_length + i])) return -1;
    const std::string_view whole(made, head_length + length);
    const int check = largest_check - mod97_rotated(whole, head_length, Letters::upper_case);
    made[2] = static_cast<char>('0' + check / 10);
    made[3] = static_cast<char>('0' + check % 10);
    std::memcpy(reference, made, whole.size());
    reference[whole.size()] = '\0';
    return 1;
}
