#include "message/creditor_identifier.h"

#include "base/mod97.h"

namespace velmora {

const char* creditor_identifier_fault(std::string_view identifier) {
    constexpr std::size_t shortest = 7, longest = 35;
    if (identifier.size() < shortest) return "Creditor Identifier too short";
    if (identifier.size() > longest) return "Creditor Identifier too long";

    // The creditor business code at positions 4 to 6 does not count.
    constexpr std::size_t national_identifier = 7;
    const int remainder = mod97_rotated(identifier, national_identifier, Letters::upper_case);
    if (remainder < 0) return "Invalid character in Creditor Identifier";
    return remainder == 1 ? nullptr : "Invalid Creditor Identifier checksum";
}

} // namespace velmora
