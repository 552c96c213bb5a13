// What the information of a booking (":86:") fills, from whichever of its forms.
#pragma once

#include <string_view>

#include "statement/keywords.h"
#include "statement/tolerant.h"

namespace velmora::tolerant {

// Two capitals, two digits, and capitals and digits to 15 to 34 characters.
bool looks_like_iban(std::string_view text);

// Fills a booking. What is filled stays; another text for it, and one that is cut, is kept in the booking's
// text. All texts are pieces of the file with a zero byte behind them. False without memory.
class Fields {
public:
    explicit Fields(Reader& reader) : reader_(reader), booking_(reader.booking->booking) {}

    bool set(char*& field, std::string_view text);
    bool set_keyword(const Keyword& keyword, std::string_view text);
    // Not if it only says that there is none.
    bool set_end_to_end_reference(std::string_view text);
    bool set_account(std::string_view text);
    // Takes the place of an account that is no IBAN.
    bool set_iban(std::string_view text);
    bool set_bank(std::string_view text);
    bool set_name(std::string_view text);
    bool keep(std::string_view text) { return add_text(reader_, reader_.booking_text, text); }
    // For a text whose place in the file others may move into.
    bool keep_copy(std::string_view text);

    sepa_stmt_tx_t& booking() { return booking_; }
    sepa_stmt_tx_info_t& info() { return reader_.booking->info; }

private:
    template <std::size_t size>
    bool set(char (&field)[size], std::string_view text);

    Reader& reader_;
    sepa_stmt_tx_t& booking_;
};

} // namespace velmora::tolerant
