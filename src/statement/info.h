// The records of the formats that give more than sepa_stmt_t and sepa_stmt_tx_t hold.
#pragma once

#include <cstdint>

#include "statement/parser.h"

namespace velmora {

// What stands behind a record is found by the record's address: it is the first member.
struct BookingPiece {
    sepa_stmt_tx_t booking;
    sepa_stmt_tx_info_t info;
};

struct StatementPiece {
    sepa_stmt_t statement;
    sepa_stmt_info_t info;
};

// Of format 1, whose information is made when it is asked for.
struct PlainBookingPiece {
    sepa_stmt_tx_t booking;
    std::int64_t signed_amount;
    char currency[4];
    std::uint8_t debit;
};

// Of a booking of this parser. For format 1 valid until the next call.
const sepa_stmt_tx_info_t& find_info(sepa_stmt_parser_t& parser, const sepa_stmt_tx_t& booking);

} // namespace velmora
