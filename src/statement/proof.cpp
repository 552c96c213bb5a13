#include "statement/proof.h"

#include <cstdint>
#include <cstring>

#include "base/amount.h"
#include "base/exact_amount.h"
#include "statement/info.h"

namespace velmora {
namespace {

// Of amounts that fit 64 bits each: high * 2^32 + low, on machines of 32 bits, too.
struct Sum {
    std::int64_t high;
    std::int64_t low; // 0 to 2^32 - 1

    static Sum of(std::int64_t number, std::int64_t factor = 1) {
        constexpr std::int64_t low_bits = 0xFFFFFFFF;
        const std::int64_t low = (number & low_bits) * factor;
        return {(number >> 32) * factor + (low >> 32), low & low_bits};
    }
    Sum operator-(const Sum& other) const {
        const Sum carried = of(low - other.low);
        return {high - other.high + carried.high, carried.low};
    }
    bool operator==(const Sum&) const = default;
    explicit operator double() const {
        return static_cast<double>(high) * 4294967296.0 + static_cast<double>(low);
    }
};

// The decimal number that a double stands for: the one with the fewest decimals.
Sum to_exact(double amount) {
    constexpr double all_whole = 1e15;
    constexpr double largest = 1e18;
    if (!(amount > -all_whole && amount < all_whole)) {
        const double cut = amount > largest ? largest : amount < -largest ? -largest : amount;
        return Sum::of(static_cast<std::int64_t>(cut), exact_unit);
    }
    Sum result{};
    double scale = 1;
    for (std::int64_t unit = exact_unit; unit != 0; unit /= 10, scale *= 10) {
        const double whole = round_half_away(amount * scale);
        result = Sum::of(static_cast<std::int64_t>(whole), unit);
        if (whole / scale == amount) break;
    }
    return result;
}

// The signed amount of a booking that has no exact one.
double nearest_amount(const sepa_stmt_parser_t& parser, const sepa_stmt_tx_t& booking, bool debit) {
    if (parser.format != SEPA_STMT_FORMAT_MT940) return booking.amount;
    const bool counts_255_times = debit != (booking.reversal != 0);
    const double amount = counts_255_times ? booking.amount / 255 : booking.amount;
    return debit ? -amount : amount;
}

bool is_missing(const struct tm& date, const char* currency) {
    return date.tm_mday == 0 && *currency == '\0';
}

} // namespace

int prove_statement(sepa_stmt_parser_t& parser, const sepa_stmt_t& statement, double* difference) {
    if (is_missing(statement.openDate, statement.openCurrency) ||
        is_missing(statement.closeDate, statement.closeCurrency))
        return -1;
    Sum rest = to_exact(statement.closeSaldo) - to_exact(statement.openSaldo);
    for (const sepa_stmt_tx_t* booking = statement.first_tx; booking != nullptr; booking = booking->next) {
        const sepa_stmt_tx_info_t& info = find_info(parser, *booking);
        const bool booked = info.status[0] == '\0' || std::strcmp(info.status, "BOOK") == 0;
        if (!booked) continue;
        rest = rest - (info.signedAmount != no_exact_amount
                           ? Sum::of(info.signedAmount)
                           : to_exact(nearest_amount(parser, *booking, info.debit != 0)));
    }
    if (difference != nullptr) *difference = static_cast<double>(rest) / exact_unit;
    return rest == Sum{} ? 1 : 0;
}

} // namespace velmora
