#include "bank/bic.h"

#include <cstring>

#include "bank/pattern.h"
#include "bank/regex.h"
#include "base/ascii.h"

namespace velmora {
namespace {

// Bank and country, location, branch.
constexpr Pattern bic_pattern = read_pattern("^[A-Z]{6}[A-Z2-9][A-NP-Z0-9]([A-Z0-9]{3})?$");
static_assert(bic_pattern.shortest == head_office_bic_length && bic_pattern.longest == bic_length);

} // namespace

bool is_bic(const char* text) {
    bind_libc_regex();
    if (text == nullptr) return false;
    const std::size_t length = strnlen(text, bic_length + 1);
    if (length != bic_pattern.shortest && length != bic_pattern.longest) return false;
    return find_wrong_bic_character(text) == length;
}

std::size_t find_wrong_bic_character(const char* text) {
    std::size_t i = 0;
    while (text[i] != '\0' && (bic_pattern.places[i] & place_set(text[i])) != 0)
        ++i;
    return i;
}

const char* upper_case_bic(const char* text, char* buffer) {
    if (text == nullptr) return nullptr;
    for (std::size_t i = 0; i <= bic_length; ++i) {
        buffer[i] = to_upper(text[i]);
        if (text[i] == '\0') return buffer;
    }
    return nullptr;
}

} // namespace velmora
