#include "message/creditor_identifier.h"

#include "base/ascii.h"
#include "base/mod97.h"

namespace velmora {
namespace {

constexpr std::size_t business_code = 4, national_identifier = 7; // where they begin

// Two capitals, two digits, three letters or digits.
bool has_structure(std::string_view identifier) {
    for (std::size_t i = business_code; i < national_identifier; ++i)
        if (!is_letter_or_digit(identifier[i])) return false;
    return is_capital(identifier[0]) && is_capital(identifier[1]) && is_digit(identifier[2]) &&
           is_digit(identifier[3]);
}

// 00, 01 and 99 leave the same remainders as others and are not given out.
bool is_check_number_given_out(std::string_view identifier) {
    const std::string_view digits{identifier.data() + 2, 2};
    return digits != "00" && digits != "01" && digits != "99";
}

} // namespace

const char* creditor_identifier_fault(std::string_view identifier, const Rulebook& rulebook) {
    constexpr std::size_t longest = 35;
    if (identifier.size() < national_identifier + (is_strict(rulebook) ? 1 : 0))
        return "Creditor Identifier too short";
    if (identifier.size() > longest) return "Creditor Identifier too long";
    if (is_strict(rulebook) && !has_structure(identifier)) return "Invalid character in Creditor Identifier";

    // The business code does not count.
    const int remainder = mod97_rotated(identifier, national_identifier, Letters::upper_case);
    if (remainder < 0) return "Invalid character in Creditor Identifier";
    if (remainder != 1 || (is_strict(rulebook) && !is_check_number_given_out(identifier)))
        return "Invalid Creditor Identifier checksum";
    return nullptr;
}

} // namespace velmora
