// Entries of camt messages and the bookings made of them.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "base/amount.h"
#include "base/ascii.h"
#include "base/exact_amount.h"
#include "statement/camt_codes.h"
#include "statement/camt_reading.h"

namespace velmora::camt {
namespace {

char* first_of(char* one, char* other) {
    return one != nullptr ? one : other;
}

double with_sign(const Amount& amount, Sign sign) {
    // There is no negative zero in a statement.
    return sign == Sign::debit && amount.nearest != 0 ? -amount.nearest : amount.nearest;
}

std::int64_t exact_with_sign(const Amount& amount, Sign sign) {
    if (amount.exact == no_exact_amount) return no_exact_amount;
    return sign == Sign::debit ? -amount.exact : amount.exact;
}

bool is_same(const Amount& a, const Amount& b) {
    return a.exact == b.exact && a.nearest == b.nearest && std::strcmp(a.currency, b.currency) == 0;
}

// Copies what fits of a text, whole characters only.
template <std::size_t size>
void copy_cut(char (&field)[size], const char* text) {
    if (text == nullptr) return;
    std::size_t length = strnlen(text, size);
    if (length == size)
        for (--length; length != 0 && (text[length] & 0xC0) == 0x80;)
            --length;
    std::memcpy(field, text, length);
    field[length] = '\0';
}

// ------------------------------------------------------------------------------------------------------
// Counterpart

bool owns(const Party& party, const char* account) {
    const char* const own = party.any_account();
    return own != nullptr && account != nullptr && std::strcmp(own, account) == 0;
}

// Money comes from the debtor and goes to the creditor, unless that is the owner of the account: returns
// repeat the parties of the payment that comes back. Where accounts do not tell, the return itself does.
const Party& find_counterpart(const Part& part, Sign sign, const char* own_account) {
    const Party& usual = sign == Sign::debit ? part.creditor : part.debtor;
    const Party& other = sign == Sign::debit ? part.debtor : part.creditor;
    if (owns(usual, own_account)) return other;
    return part.is_return != 0 && !owns(other, own_account) ? other : usual;
}

void set_counterpart(BookingPiece& piece, const Party& party) {
    piece.info.fullName = party.any_name();
    copy_cut(piece.booking.name, party.any_name());
    copy_cut(piece.booking.account, party.any_account());
    copy_cut(piece.booking.bank, first_of(party.bic, party.clearing_member));
}

// ------------------------------------------------------------------------------------------------------
// What an entry has for parts that have none

bool set_codes(Reading& reading, BookingPiece& piece, const Codes& part, const Codes& entry) {
    sepa_stmt_tx_info_t& info = piece.info;
    const Codes& domain = part.domain[0] != '\0' ? part : entry;
    std::memcpy(info.domain, domain.domain, sizeof info.domain);
    std::memcpy(info.family, domain.family, sizeof info.family);
    std::memcpy(info.subFamily, domain.sub_family, sizeof info.subFamily);
    const Codes& proprietary = part.proprietary != nullptr ? part : entry;
    info.proprietaryCode = proprietary.proprietary;
    info.proprietaryIssuer = proprietary.issuer;
    if (info.proprietaryCode != nullptr)
        return read_german_code(info.proprietaryCode, reading.records, piece.booking);
    piece.booking.gvc = find_business_code(info.domain, info.family, info.subFamily, info.debit != 0);
    return true;
}

// The charges that the payer bore in words of MT940, without a sign.
bool set_charges(Reading& reading, BookingPiece& piece, const Charges& charges) {
    const Sum* const sum = charges.chosen();
    if (sum == nullptr) return true;
    piece.info.charges = sum->value();
    std::memcpy(piece.info.chargesCurrency, sum->currency, sizeof sum->currency);
    char text[32];
    __sepa_d2str(text, sizeof text, piece.info.charges < 0 ? -piece.info.charges : piece.info.charges);
    piece.booking.coam = reading.records.copy_text(text);
    return piece.booking.coam != nullptr;
}

void set_instructed(BookingPiece& piece, const Amount& instructed, const Amount& amount, Sign sign) {
    if (!instructed.is_given()) return;
    piece.info.instructedAmount = with_sign(instructed, sign);
    std::memcpy(piece.info.instructedCurrency, instructed.currency, sizeof instructed.currency);
    if (!is_same(instructed, amount)) piece.booking.oamt = instructed.text;
}

// ------------------------------------------------------------------------------------------------------
// Bookings

void set_references(BookingPiece& piece, const Part& part) {
    sepa_stmt_tx_t& booking = piece.booking;
    sepa_stmt_tx_info_t& info = piece.info;
    booking.bankref = part.details.bank_reference;
    booking.kref = booking.ref = first_of(part.instruction_id, part.payment_id);
    booking.mref = part.mandate_id;
    if (part.end_to_end_id != nullptr && !is_no_reference(part.end_to_end_id))
        booking.eref = part.end_to_end_id;
    booking.purp = first_of(part.purpose, part.proprietary_purpose);
    booking.purpose = info.text = part.text;
    booking.abwa = info.ultimateDebtor = part.debtor.ultimate_name;
    booking.abwe = info.ultimateCreditor = part.creditor.ultimate_name;
    info.messageId = part.message_id;
    info.paymentId = part.payment_id;
    info.instructionId = part.instruction_id;
    info.transactionId = part.transaction_id;
    info.uetr = part.uetr;
    info.proprietaryReference = part.proprietary_reference;
    info.creditorReference = part.creditor_reference;
    info.returnReason = part.return_reason;
    info.batchCount = part.batch.count;
    info.batchMessageId = part.batch.message_id;
    info.batchPaymentId = part.batch.payment_id;
}

// Of direct debits only: elsewhere the same identifications are a party's passport or register number.
void set_identifications(sepa_stmt_tx_t& booking, const Part& part) {
    if (booking.mref == nullptr && !is_direct_debit(booking.gvc)) return;
    booking.cred = first_of(booking.cred, part.creditor.any_id());
    booking.debt = first_of(booking.debt, part.debtor.any_id());
}

// A record of the part that has been read; without one the part is empty.
bool fill(Reading& reading, BookingPiece& piece, const Amount& amount, Sign sign) {
    const Part& part = reading.fields.part;
    const Details& details = part.details;
    const Details& entry = reading.fields.entry.details;
    sepa_stmt_tx_t& booking = piece.booking;
    sepa_stmt_tx_info_t& info = piece.info;

    booking.amount = with_sign(amount, sign);
    info.debit = sign == Sign::debit;
    info.signedAmount = exact_with_sign(amount, sign);
    std::memcpy(info.currency, entry.amount.currency, sizeof info.currency);
    const bool has_amounts = details.instructed.is_given() || details.transaction.is_given();
    set_instructed(piece, has_amounts ? details.instructed : entry.instructed, amount, sign);
    info.exchangeRate = first_of(details.exchange_rate, entry.exchange_rate);

    const Statement& statement = reading.fields.statement;
    set_counterpart(piece, find_counterpart(part, sign, first_of(statement.iban, statement.account)));
    set_references(piece, part);
    const Charges& charges = details.charges.chosen() != nullptr ? details.charges : entry.charges;
    if (!set_codes(reading, piece, details.codes, entry.codes) || !set_charges(reading, piece, charges))
        return out_of_memory(reading);
    set_identifications(booking, part);
    if (!reading.remittance.take(reading.records, booking) ||
        !reading.return_text.take(reading.records, info.returnText))
        return out_of_memory(reading);
    set_identifications(booking, part); // the mandate may be among the keywords
    return true;
}

BookingPiece* new_piece(Reading& reading) {
    if (reading.spare == nullptr) return reading.records.allocate<BookingPiece>();
    BookingPiece* const piece = reading.spare;
    reading.spare = reinterpret_cast<BookingPiece*>(piece->booking.next);
    std::memset(piece, 0, sizeof *piece);
    return piece;
}

void append_part(Reading& reading, BookingPiece* piece) {
    if (reading.first_part == nullptr)
        reading.first_part = piece;
    else
        reading.last_part->booking.next = &piece->booking;
    reading.last_part = piece;
}

// The parts will not become bookings; their records serve others.
void drop_parts(Reading& reading) {
    reading.parts_add_up = false;
    if (reading.first_part == nullptr) return;
    reading.last_part->booking.next = reinterpret_cast<sepa_stmt_tx_t*>(reading.spare);
    reading.spare = reading.first_part;
    reading.first_part = reading.last_part = nullptr;
}

// In the currency of the entry, or null.
const Amount* amount_of_part(const Details& part, const Amount& entry) {
    for (const Amount* amount : {&part.amount, &part.transaction, &part.instructed})
        if (amount->is_given() &&
            (amount->currency[0] == '\0' || std::strcmp(amount->currency, entry.currency) == 0))
            return amount;
    return nullptr;
}

// One of several parts has been read.
bool end_part(Reading& reading) {
    if (!reading.parts_add_up) return true;
    const Details& entry = reading.fields.entry.details;
    const Details& part = reading.fields.part.details;
    const Amount* const amount = amount_of_part(part, entry.amount);
    const Sign sign = part.sign != Sign::unknown ? part.sign : entry.sign;
    std::int64_t signed_amount = 0;
    if (amount == nullptr || (signed_amount = exact_with_sign(*amount, sign)) == no_exact_amount ||
        __builtin_add_overflow(reading.sum_of_parts, signed_amount, &reading.sum_of_parts)) {
        drop_parts(reading);
        return true;
    }
    BookingPiece* const piece = new_piece(reading);
    if (piece == nullptr) return out_of_memory(reading);
    append_part(reading, piece);
    return fill(reading, *piece, *amount, sign);
}

// An amount without a currency is in that of the account.
bool has_amount(Reading& reading) {
    Details& entry = reading.fields.entry.details;
    if (entry.amount.currency[0] == '\0')
        std::memcpy(entry.amount.currency, reading.fields.statement.currency, sizeof entry.amount.currency);
    return entry.amount.is_given() && entry.sign != Sign::unknown;
}

// What all records of an entry have of it.
void complete(Reading& reading, BookingPiece& piece) {
    const Entry& entry = reading.fields.entry;
    sepa_stmt_tx_t& booking = piece.booking;
    sepa_stmt_tx_info_t& info = piece.info;
    booking.booked = entry.booked;
    booking.valuta = entry.valuta.tm_mday != 0 ? entry.valuta : entry.booked;
    booking.reversal = entry.reversal;
    booking.txtext = entry.text;
    booking.bankref = first_of(booking.bankref, entry.details.bank_reference);
    if (booking.ref == nullptr) booking.ref = first_of(info.batchPaymentId, reading.no_reference);
    std::memcpy(info.status, entry.status, sizeof info.status);
    info.entry = reading.fields.statement.entries;
    info.parts = entry.parts;
    info.entryAmount = with_sign(entry.details.amount, entry.details.sign);
    info.entryReference = entry.reference;
}

// A single record for the entry: with the texts of its only part, or without texts when there are several.
bool end_undivided(Reading& reading) {
    const Entry& entry = reading.fields.entry;
    if (entry.parts != 1) {
        Part& part = reading.fields.part;
        part = {};
        part.batch = entry.first_batch.is_given() ? entry.first_batch : entry.batch;
        if (part.batch.count == 0) part.batch.count = entry.parts;
        reading.remittance.clear();
        reading.return_text.clear();
    }
    BookingPiece* const piece = new_piece(reading);
    if (piece == nullptr) return out_of_memory(reading);
    append_part(reading, piece);
    return fill(reading, *piece, entry.details.amount, entry.details.sign);
}

} // namespace

// The part before this one is known to be one of several now.
bool begin_part(Reading& reading) {
    Entry& entry = reading.fields.entry;
    if (entry.parts == 0) {
        reading.sum_of_parts = 0;
        reading.parts_add_up = true;
    } else {
        if (!has_amount(reading)) return refuse(reading, "details before the amount of their entry");
        if (!end_part(reading)) return false;
    }
    ++entry.parts;
    reading.fields.part = {};
    reading.fields.part.batch = entry.batch.is_given() ? entry.batch : entry.first_batch;
    reading.remittance.clear();
    reading.return_text.clear();
    return true;
}

bool end_entry(Reading& reading) {
    Entry& entry = reading.fields.entry;
    Statement& fields = reading.fields.statement;
    if (!has_amount(reading)) return refuse(reading, "an entry without its amount");
    if (entry.status[0] == '\0') std::memcpy(entry.status, "BOOK", sizeof entry.status);
    if (reading.no_reference == nullptr) {
        reading.no_reference = reading.records.copy_text("NONREF");
        if (reading.no_reference == nullptr) return out_of_memory(reading);
    }
    ++fields.entries;

    if (entry.parts > 1) {
        if (!end_part(reading)) return false;
        const std::int64_t amount = exact_with_sign(entry.details.amount, entry.details.sign);
        if (amount == no_exact_amount || reading.sum_of_parts != amount) drop_parts(reading);
    }
    const bool is_divided = reading.first_part != nullptr;
    if (!is_divided && !end_undivided(reading)) return false;

    std::uint32_t part = entry.parts > 1 && !is_divided ? 0 : std::min(entry.parts, 1U);
    for (sepa_stmt_tx_t* booking = &reading.first_part->booking; booking != nullptr;
         booking = booking->next) {
        auto& piece = reinterpret_cast<BookingPiece&>(*booking);
        complete(reading, piece);
        piece.info.part = part++;
    }
    sepa_stmt_t& statement = reading.statement->statement;
    (statement.first_tx == nullptr ? statement.first_tx : statement.last_tx->next) =
        &reading.first_part->booking;
    statement.last_tx = &reading.last_part->booking;
    reading.first_part = reading.last_part = nullptr;
    return true;
}

// ------------------------------------------------------------------------------------------------------
// Sums

void Sum::add(const Amount& amount, Sign sign) {
    if (!is_given) std::memcpy(currency, amount.currency, sizeof currency);
    if (std::strcmp(currency, amount.currency) != 0) return;
    is_given = true;
    nearest += with_sign(amount, sign);
    const std::int64_t signed_amount = exact_with_sign(amount, sign);
    is_inexact |= signed_amount == no_exact_amount || __builtin_add_overflow(exact, signed_amount, &exact);
}

double Sum::value() const {
    return is_inexact ? nearest : static_cast<double>(exact) / static_cast<double>(exact_unit);
}

const Sum* Charges::chosen() const {
    for (const Sum* sum : {&totals, &records, &singles})
        if (sum->is_given) return sum;
    return nullptr;
}

} // namespace velmora::camt
