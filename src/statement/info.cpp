#include "statement/info.h"

#include <cstring>

namespace velmora {

const sepa_stmt_tx_info_t& find_info(sepa_stmt_parser_t& parser, const sepa_stmt_tx_t& booking) {
    if (parser.format != SEPA_STMT_FORMAT_MT940) return reinterpret_cast<const BookingPiece&>(booking).info;
    const auto& piece = reinterpret_cast<const PlainBookingPiece&>(booking);
    parser.plain_info.debit = piece.debit;
    parser.plain_info.signedAmount = piece.signed_amount;
    std::memcpy(parser.plain_info.currency, piece.currency, sizeof piece.currency);
    return parser.plain_info;
}

} // namespace velmora
