#include "statement_arrays.h"

/* clang-format off */
#define STATEMENT(name, kind) MEMBER(sepa_stmt_t, name, kind)
static record_member statement_members[] = {
    STATEMENT(ref, TEXT_IF_SET), STATEMENT(account, TEXT_IF_SET),
    STATEMENT(number, UINT32_IF_SET), STATEMENT(page, UINT32_IF_SET),
    STATEMENT(openSaldo, DOUBLE), STATEMENT(openCurrency, CHARS), STATEMENT(openDate, DATE),
    STATEMENT(closeSaldo, DOUBLE), STATEMENT(closeCurrency, CHARS), STATEMENT(closeDate, DATE),
};

#define INFO(name, kind) MEMBER(sepa_stmt_info_t, name, kind)
static record_member info_members[] = {
    INFO(kind, UINT16_IF_SET), INFO(version, UINT16_IF_SET), INFO(messageId, TEXT_IF_SET),
    INFO(created, TEXT_IF_SET), INFO(from, TEXT_IF_SET), INFO(to, TEXT_IF_SET), INFO(lastPage, BOOL),
    INFO(copy, CHARS_IF_SET), INFO(owner, TEXT_IF_SET), INFO(bic, CHARS_IF_SET),
    INFO(currency, CHARS_IF_SET), INFO(text, TEXT_IF_SET), INFO(utf8, BOOL),
    INFO(entries, UINT64_IF_SET), INFO(creditEntries, UINT64_IF_SET), INFO(debitEntries, UINT64_IF_SET),
    INFO(entrySum, DOUBLE_IF_SET), INFO(creditSum, DOUBLE_IF_SET), INFO(debitSum, DOUBLE_IF_SET),
};

#define BALANCE(name, kind) MEMBER(sepa_stmt_balance_t, name, kind)
static record_member balance_members[] = {
    BALANCE(code, CHARS), BALANCE(amount, DOUBLE), BALANCE(currency, CHARS), BALANCE(date, DATE),
    BALANCE(interim, BOOL),
};

#define BOOKING(name, kind) MEMBER(sepa_stmt_tx_t, name, kind)
static record_member booking_members[] = {
    BOOKING(valuta, DATE), BOOKING(booked, DATE_IF_SET), BOOKING(amount, DOUBLE), BOOKING(code, CHARS),
    BOOKING(ref, TEXT_IF_SET), BOOKING(bankref, TEXT_IF_SET), BOOKING(gvc, UINT32),
    BOOKING(extcode, UINT32_IF_SET), BOOKING(txtext, TEXT_IF_SET), BOOKING(primanota, TEXT_IF_SET),
    BOOKING(bank, CHARS), BOOKING(account, CHARS), BOOKING(name, CHARS), BOOKING(purpose, TEXT_IF_SET),
    BOOKING(eref, TEXT_IF_SET), BOOKING(kref, TEXT_IF_SET), BOOKING(mref, TEXT_IF_SET),
    BOOKING(cred, TEXT_IF_SET), BOOKING(debt, TEXT_IF_SET), BOOKING(purp, TEXT_IF_SET),
    BOOKING(coam, TEXT_IF_SET), BOOKING(oamt, TEXT_IF_SET), BOOKING(svwz, TEXT_IF_SET),
    BOOKING(abwa, TEXT_IF_SET), BOOKING(abwe, TEXT_IF_SET),
};
static record_member reversal_member[] = {BOOKING(reversal, BOOL)};

#define TX_INFO(name, kind) MEMBER(sepa_stmt_tx_info_t, name, kind)
static record_member booking_info_members[] = {
    TX_INFO(debit, BOOL), TX_INFO(status, CHARS_IF_SET), TX_INFO(currency, CHARS_IF_SET),
    TX_INFO(signedAmount, EXACT), TX_INFO(entry, UINT32_IF_SET), TX_INFO(part, UINT32_IF_SET),
    TX_INFO(parts, UINT32_IF_SET), TX_INFO(entryAmount, DOUBLE_IF_SET), TX_INFO(batchCount, UINT32_IF_SET),
    TX_INFO(batchMessageId, TEXT_IF_SET), TX_INFO(batchPaymentId, TEXT_IF_SET),
    TX_INFO(fullName, TEXT_IF_SET), TX_INFO(ultimateDebtor, TEXT_IF_SET),
    TX_INFO(ultimateCreditor, TEXT_IF_SET), TX_INFO(returnReason, TEXT_IF_SET),
    TX_INFO(returnText, TEXT_IF_SET), TX_INFO(creditorReference, TEXT_IF_SET), TX_INFO(domain, CHARS_IF_SET),
    TX_INFO(family, CHARS_IF_SET), TX_INFO(subFamily, CHARS_IF_SET), TX_INFO(proprietaryCode, TEXT_IF_SET),
    TX_INFO(proprietaryIssuer, TEXT_IF_SET), TX_INFO(charges, DOUBLE_IF_SET),
    TX_INFO(chargesCurrency, CHARS_IF_SET), TX_INFO(instructedAmount, DOUBLE_IF_SET),
    TX_INFO(instructedCurrency, CHARS_IF_SET), TX_INFO(exchangeRate, TEXT_IF_SET),
    TX_INFO(messageId, TEXT_IF_SET), TX_INFO(paymentId, TEXT_IF_SET), TX_INFO(instructionId, TEXT_IF_SET),
    TX_INFO(transactionId, TEXT_IF_SET), TX_INFO(uetr, TEXT_IF_SET), TX_INFO(entryReference, TEXT_IF_SET),
    TX_INFO(proprietaryReference, TEXT_IF_SET), TX_INFO(text, TEXT_IF_SET),
};

/* Members that are lists. */
static record_member list_members[] = {{"tx", 0, MEMBER_TEXT_IF_SET, NULL},
                                       {"balances", 0, MEMBER_TEXT_IF_SET, NULL}};
/* clang-format on */
enum { TX_LIST, BALANCE_LIST };

#define MAKE_KEYS(members) make_keys(members, MEMBER_COUNT(members))
#define PUT_MEMBERS(array, members, record, last)                                                            \
    put_members(array, members, MEMBER_COUNT(members), record, last)

void make_statement_keys(void) {
    MAKE_KEYS(statement_members);
    MAKE_KEYS(info_members);
    MAKE_KEYS(balance_members);
    MAKE_KEYS(booking_members);
    MAKE_KEYS(reversal_member);
    MAKE_KEYS(booking_info_members);
    MAKE_KEYS(list_members);
}

void make_booking(zval* array, sepa_stmt_parser_t* parser, const sepa_stmt_info_t* info,
                  const sepa_stmt_tx_t* booking, date_text* last) {
    if (info) {
        array_init_size(array, 32);
        PUT_MEMBERS(array, booking_members, booking, last);
        PUT_MEMBERS(array, reversal_member, booking, last);
        PUT_MEMBERS(array, booking_info_members, sepa_stmt_parser_getTxInfo(parser, booking), last);
        return;
    }
    /* Deliberate: in format 1 the customer reference stands as "bankref", too; programs match bookings by it.
     */
    sepa_stmt_tx_t shown = *booking;
    if (shown.bankref) shown.bankref = shown.ref;
    array_init_size(array, 16);
    PUT_MEMBERS(array, booking_members, &shown, last);
}

static void put_list(zval* array, int list, zval* value) {
    zend_hash_add_new(Z_ARRVAL_P(array), list_members[list].name, value);
}

static void make_statement(zval* array, sepa_stmt_parser_t* parser, const sepa_stmt_t* statement,
                           date_text* last) {
    const sepa_stmt_info_t* info = sepa_stmt_parser_getInfo(parser, statement);
    array_init_size(array, info ? 32 : 16);
    PUT_MEMBERS(array, statement_members, statement, last);
    zval bookings;
    array_init(&bookings);
    for (const sepa_stmt_tx_t* tx = statement->first_tx; tx; tx = tx->next) {
        zval booking;
        make_booking(&booking, parser, info, tx, last);
        zend_hash_next_index_insert_new(Z_ARRVAL(bookings), &booking);
    }
    put_list(array, TX_LIST, &bookings);
    if (!info) return;
    PUT_MEMBERS(array, info_members, info, last);
    zval balances;
    array_init(&balances);
    for (uint32_t i = 0; i < info->balanceCount; i++) {
        zval balance;
        array_init_size(&balance, 8);
        PUT_MEMBERS(&balance, balance_members, &info->balances[i], last);
        zend_hash_next_index_insert_new(Z_ARRVAL(balances), &balance);
    }
    put_list(array, BALANCE_LIST, &balances);
}

void return_statements(zval* return_value, sepa_stmt_parser_t* parser) {
    const sepa_stmt_t* statement = sepa_stmt_parser_getStatement(parser);
    if (!statement) RETURN_NULL();
    array_init(return_value);
    date_text last = {0};
    for (; statement; statement = statement->next) {
        zval array;
        make_statement(&array, parser, statement, &last);
        zend_hash_next_index_insert_new(Z_ARRVAL_P(return_value), &array);
    }
    release_date(&last);
}
