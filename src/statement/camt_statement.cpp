// Statements and balances of camt messages.
#include <cstring>

#include "base/ascii.h"
#include "statement/camt_reading.h"

namespace velmora::camt {
namespace {

// 0 for what is no decimal number of 32 bits.
std::uint32_t to_number(const char* text) {
    std::uint32_t number = 0;
    if (text == nullptr) return 0;
    for (; *text != '\0'; ++text)
        if (!is_digit(*text) || __builtin_mul_overflow(number, 10U, &number) ||
            __builtin_add_overflow(number, static_cast<std::uint32_t>(*text - '0'), &number))
            return 0;
    return number;
}

const sepa_stmt_balance_t* find_first(const sepa_stmt_info_t& info, const char* code) {
    for (std::uint32_t i = 0; i < info.balanceCount; ++i)
        if (std::strcmp(info.balances[i].code, code) == 0) return &info.balances[i];
    return nullptr;
}

const sepa_stmt_balance_t* find_last(const sepa_stmt_info_t& info, const char* code) {
    for (std::uint32_t i = info.balanceCount; i > 0; --i)
        if (std::strcmp(info.balances[i - 1].code, code) == 0) return &info.balances[i - 1];
    return nullptr;
}

void set_balances(sepa_stmt_t& statement, const sepa_stmt_info_t& info) {
    const sepa_stmt_balance_t* opening = find_first(info, "OPBD");
    if (opening == nullptr) opening = find_first(info, "PRCD");
    if (opening == nullptr) opening = find_first(info, "ITBD");
    const sepa_stmt_balance_t* closing = find_first(info, "CLBD");
    if (closing == nullptr) closing = find_last(info, "ITBD");
    if (opening != nullptr) {
        statement.openSaldo = opening->amount;
        statement.openDate = opening->date;
        std::memcpy(statement.openCurrency, opening->currency, sizeof statement.openCurrency);
    }
    if (closing != nullptr && closing != opening) {
        statement.closeSaldo = closing->amount;
        statement.closeDate = closing->date;
        std::memcpy(statement.closeCurrency, closing->currency, sizeof statement.closeCurrency);
    }
}

void set_totals(sepa_stmt_info_t& info, const Statement& fields) {
    info.entries = fields.all.count;
    info.entrySum = fields.all.sum;
    info.creditEntries = fields.credits.count;
    info.creditSum = fields.credits.sum;
    info.debitEntries = fields.debits.count;
    info.debitSum = fields.debits.sum;
}

char* first_of(char* one, char* other) {
    return one != nullptr ? one : other;
}

} // namespace

bool begin_statement(Reading& reading) {
    reading.fields.statement = {};
    reading.balances.clear();
    reading.statement = reading.records.allocate<StatementPiece>();
    return reading.statement != nullptr || out_of_memory(reading);
}

bool end_balance(Reading& reading) {
    const Balance& fields = reading.fields.balance;
    if (!fields.amount.is_given() || fields.sign == Sign::unknown)
        return refuse(reading, "a balance without its amount");
    sepa_stmt_balance_t balance{};
    std::memcpy(balance.code, fields.code, sizeof balance.code);
    std::memcpy(balance.currency, fields.amount.currency, sizeof balance.currency);
    balance.interim = std::strcmp(fields.sub_type, "INTM") == 0;
    balance.amount = fields.sign == Sign::debit && fields.amount.exact != 0 ? -fields.amount.nearest
                                                                            : fields.amount.nearest;
    balance.date = fields.date;
    const bool kept = reading.balances.append({reinterpret_cast<const char*>(&balance), sizeof balance});
    return kept || out_of_memory(reading);
}

bool end_statement(Reading& reading) {
    const Statement& fields = reading.fields.statement;
    const Message& message = reading.fields.message;
    sepa_stmt_t& statement = reading.statement->statement;
    sepa_stmt_info_t& info = reading.statement->info;

    statement.ref = fields.id;
    statement.account = first_of(fields.iban, fields.account);
    statement.number = to_number(first_of(fields.electronic_number, fields.legal_number));
    const bool has_page = fields.page.number != nullptr;
    const Page& page = has_page ? fields.page : message.page;
    statement.page = to_number(page.number);

    info.kind = message.kind;
    info.version = message.version;
    info.messageId = message.id;
    info.created = first_of(fields.created, message.created);
    info.from = fields.from;
    info.to = fields.to;
    info.lastPage = page.number == nullptr || page.is_last != 0;
    std::memcpy(info.copy, fields.copy, sizeof info.copy);
    info.owner = fields.owner;
    std::memcpy(info.bic, fields.bic, sizeof info.bic);
    std::memcpy(info.currency, fields.currency, sizeof info.currency);
    info.text = fields.text;
    info.utf8 = 1;
    set_totals(info, fields);

    if (!reading.balances.empty()) {
        const char* const balances = reading.records.copy_text(reading.balances.view());
        if (balances == nullptr) return out_of_memory(reading);
        info.balances = reinterpret_cast<const sepa_stmt_balance_t*>(balances);
        info.balanceCount =
            static_cast<std::uint32_t>(reading.balances.view().size() / sizeof(sepa_stmt_balance_t));
    }
    set_balances(statement, info);

    sepa_stmt_parser_t& parser = reading.parser;
    (parser.first == nullptr ? parser.first : parser.last->next) = &statement;
    parser.last = &statement;
    return true;
}

} // namespace velmora::camt
