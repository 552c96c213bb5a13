#include "statement/camt_codes.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "base/ascii.h"

namespace velmora::camt {
namespace {

constexpr std::size_t max_journal_number = 10;

struct BusinessCode {
    char family[5];
    char sub_family[5];
    char direction;
    std::uint8_t code;
};
constexpr BusinessCode business_codes[] = {
#include "data/business_codes.inc"
};

// Cuts off what stands before the next "+".
std::string_view next_piece(const char*& at) {
    const char* const end = strchrnul(at, '+');
    const std::string_view piece(at, static_cast<std::size_t>(end - at));
    at = *end == '+' ? end + 1 : end;
    return piece;
}

// 0 for what is no number of at most so many digits.
std::uint32_t to_number(std::string_view digits, std::size_t max_digits) {
    std::uint32_t number = 0;
    if (digits.size() > max_digits) return 0;
    for (const char c : digits) {
        if (!is_digit(c)) return 0;
        number = number * 10 + static_cast<std::uint32_t>(c - '0');
    }
    return number;
}

bool is_business_code(std::string_view piece) {
    return piece.size() == 3 && std::all_of(piece.begin(), piece.end(), is_digit);
}

} // namespace

bool read_german_code(const char* code, RecordPool& records, sepa_stmt_tx_t& booking) {
    const bool has_pieces = std::strchr(code, '+') != nullptr;
    std::string_view piece = next_piece(code);
    const bool has_swift_code = piece.size() == 4 && (piece[0] == 'N' || piece[0] == 'S' || piece[0] == 'F');
    if (has_swift_code) std::memcpy(booking.code, piece.data() + 1, 3);
    if (!has_pieces) return true;
    // Some banks leave the SWIFT code out.
    if (has_swift_code || !is_business_code(piece)) piece = next_piece(code);
    if (!is_business_code(piece) && !has_swift_code) return true; // of another kind
    if (is_business_code(piece)) booking.gvc = to_number(piece, 3);

    const std::string_view journal = next_piece(code);
    if (!journal.empty()) {
        booking.primanota = records.copy_text({journal.data(), std::min(journal.size(), max_journal_number)});
        if (booking.primanota == nullptr) return false;
    }
    booking.extcode = to_number(next_piece(code), 9);
    return true;
}

std::uint32_t find_business_code(const char* domain, const char* family, const char* sub_family, bool debit) {
    if (std::strcmp(domain, "PMNT") != 0) return 0;
    for (const BusinessCode& row : business_codes)
        if (std::strcmp(row.sub_family, sub_family) == 0 && std::strcmp(row.family, family) == 0 &&
            row.direction == (debit ? 'D' : 'C'))
            return row.code;
    return 0;
}

bool is_direct_debit(std::uint32_t business_code) {
    constexpr std::uint8_t codes[] = {104, 105, 106, 107, 108, 109, 171, 174,
                                      181, 192, 193, 194, 195, 196, 197};
    return std::find(std::begin(codes), std::end(codes), business_code) != std::end(codes);
}

} // namespace velmora::camt
