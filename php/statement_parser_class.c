/* The class SEPAStatementParser: an MT940 file as nested arrays. */
#include "binding.h"

zend_class_entry* sepaStP_ce;
zend_object_handlers sepaStP_object_handlers;

/* Deliberate: the parser with its file is not released with the object but kept until the process ends
 * (callers rely on it). */
typedef struct {
    sepa_stmt_parser_t* parser; /* null until the constructor succeeds */
    bool loaded; /* after a load that failed midway there are statements that must not be read */
    zend_object std;
} parser_object;

static parser_object* object_of(zend_object* std) {
    return (parser_object*)((char*)std - offsetof(parser_object, std));
}

static zend_object* create_object(zend_class_entry* entry) {
    parser_object* object = ecalloc(1, sizeof *object + zend_object_properties_size(entry));
    zend_object_std_init(&object->std, entry);
    object_properties_init(&object->std, entry);
    object->std.handlers = &sepaStP_object_handlers;
    return &object->std;
}

/* Every key of the arrays that getStatements() builds. */
/* clang-format off */
#define ARRAY_KEYS(KEY)                                                                           \
    KEY(ref) KEY(account) KEY(number) KEY(page) KEY(openSaldo) KEY(openCurrency) KEY(openDate)    \
    KEY(closeSaldo) KEY(closeCurrency) KEY(closeDate) KEY(tx) KEY(valuta) KEY(booked) KEY(amount) \
    KEY(code) KEY(bankref) KEY(gvc) KEY(extcode) KEY(txtext) KEY(primanota) KEY(bank) KEY(name)   \
    KEY(purpose) KEY(eref) KEY(kref) KEY(mref) KEY(cred) KEY(debt) KEY(purp) KEY(coam) KEY(oamt)  \
    KEY(svwz) KEY(abwa) KEY(abwe)
/* clang-format on */

#define KEY_NUMBER(name) KEY_##name,
#define KEY_TEXT(name) #name,
typedef enum { ARRAY_KEYS(KEY_NUMBER) KEY_COUNT } array_key;

/* Made once, with their hashes: a large file puts each of them into 100,000 arrays. */
static zend_string* key_strings[KEY_COUNT];

static void make_key_strings(void) {
    static const char texts[KEY_COUNT][16] = {ARRAY_KEYS(KEY_TEXT)};
    for (int i = 0; i < KEY_COUNT; i++) {
        key_strings[i] = zend_new_interned_string(zend_string_init(texts[i], strlen(texts[i]), 1));
    }
}

void sepaStP_init(zend_class_entry* entry) {
    sepaStP_ce = entry;
    entry->create_object = create_object;
    engine_forbid_serialisation(entry);
    memcpy(&sepaStP_object_handlers, zend_get_std_object_handlers(), sizeof sepaStP_object_handlers);
    sepaStP_object_handlers.offset = offsetof(parser_object, std);
    sepaStP_object_handlers.clone_obj = NULL;
    make_key_strings();
}

/* ------------------------------------------------------------------------------------------------------
 * Methods
 * --------------------------------------------------------------------------------------------------- */

PHP_METHOD(SEPAStatementParser, __construct) {
    (void)return_value;
    if (zend_parse_parameters_none() == FAILURE) return;

    sepa_stmt_parser_t* parser = sepa_stmt_parser_new();
    if (!parser) {
        zend_throw_exception(sepa_ce_exception, "can't create SEPAStatementParser object", BINDING_ERROR);
        return;
    }
    parser_object* object = object_of(Z_OBJ(EX(This)));
    sepa_stmt_parser_free(object->parser); /* called by hand on a finished object: it starts again, unused */
    object->parser = parser;
    object->loaded = false;
}

PHP_METHOD(SEPAStatementParser, load) {
    zend_long format;
    char* filename;
    size_t length;
    ZEND_PARSE_PARAMETERS_START(2, 2)
        Z_PARAM_LONG(format)
        Z_PARAM_PATH(filename, length)
    ZEND_PARSE_PARAMETERS_END();

    if (format != SEPA_STMT_FORMAT_MT940) {
        zend_throw_exception(sepa_ce_exception, "invalid/unknown statement format", BINDING_ERROR);
        return;
    }
    if (php_check_open_basedir(filename)) {
        zend_throw_exception_ex(sepa_ce_exception, 0, "Can't open input file: %s", strerror(EPERM));
        return;
    }
    parser_object* object = object_of(Z_OBJ(EX(This)));
    if (sepa_stmt_parser_load(object->parser, SEPA_STMT_FORMAT_MT940, filename) == 1) {
        object->loaded = true;
        RETURN_TRUE;
    }
    zend_throw_exception(sepa_ce_exception, sepa_stmt_parser_getError(object->parser), 0);
}

static void put(zval* array, array_key key, zval* value) {
    zend_hash_add_new(Z_ARRVAL_P(array), key_strings[key], value);
}

static void put_text(zval* array, array_key key, const char* text) {
    zval value;
    size_t length = strlen(text);
    if (length == 0) {
        ZVAL_EMPTY_STRING(&value);
    } else {
        ZVAL_STRINGL(&value, text, length);
    }
    put(array, key, &value);
}

static void put_text_if_set(zval* array, array_key key, const char* text) {
    if (text) put_text(array, key, text);
}

static void put_number(zval* array, array_key key, uint32_t number) {
    zval value;
    ZVAL_LONG(&value, number);
    put(array, key, &value);
}

static void put_number_if_set(zval* array, array_key key, uint32_t number) {
    if (number) put_number(array, key, number);
}

static void put_amount(zval* array, array_key key, double amount) {
    zval value;
    ZVAL_DOUBLE(&value, amount);
    put(array, key, &value);
}

/* Bookings come by date: equal dates in a row share one string. */
typedef struct {
    int year, month, day;
    zend_string* text; /* null before the first date */
} date_text;

static zend_string* text_of(date_text* last, const struct tm* date) {
    if (!last->text || last->day != date->tm_mday || last->month != date->tm_mon ||
        last->year != date->tm_year) {
        char text[11];
        /* A date that a broken file put out of every range may not fit: strftime() then returns 0. */
        size_t length = strftime(text, sizeof text, "%Y-%m-%d", date);
        if (last->text) zend_string_release(last->text);
        *last = (date_text){date->tm_year, date->tm_mon, date->tm_mday, zend_string_init(text, length, 0)};
    }
    return zend_string_copy(last->text);
}

static void put_date(zval* array, array_key key, const struct tm* date, date_text* last) {
    zval value;
    ZVAL_STR(&value, text_of(last, date));
    put(array, key, &value);
}

static void put_transaction(zval* list, const sepa_stmt_tx_t* tx, date_text* last) {
    zval entry;
    array_init_size(&entry, 16);
    put_date(&entry, KEY_valuta, &tx->valuta, last);
    if (tx->booked.tm_year > 0) put_date(&entry, KEY_booked, &tx->booked, last);
    put_amount(&entry, KEY_amount, tx->amount);
    put_text(&entry, KEY_code, tx->code);
    put_text_if_set(&entry, KEY_ref, tx->ref);
    /* Deliberate: the customer reference stands here, too (callers rely on it). */
    if (tx->bankref) put_text_if_set(&entry, KEY_bankref, tx->ref);
    put_number(&entry, KEY_gvc, tx->gvc);
    put_number_if_set(&entry, KEY_extcode, tx->extcode);
    put_text_if_set(&entry, KEY_txtext, tx->txtext);
    put_text_if_set(&entry, KEY_primanota, tx->primanota);
    put_text(&entry, KEY_bank, tx->bank);
    put_text(&entry, KEY_account, tx->account);
    put_text(&entry, KEY_name, tx->name);
    put_text_if_set(&entry, KEY_purpose, tx->purpose);
    put_text_if_set(&entry, KEY_eref, tx->eref);
    put_text_if_set(&entry, KEY_kref, tx->kref);
    put_text_if_set(&entry, KEY_mref, tx->mref);
    put_text_if_set(&entry, KEY_cred, tx->cred);
    put_text_if_set(&entry, KEY_debt, tx->debt);
    put_text_if_set(&entry, KEY_purp, tx->purp);
    put_text_if_set(&entry, KEY_coam, tx->coam);
    put_text_if_set(&entry, KEY_oamt, tx->oamt);
    put_text_if_set(&entry, KEY_svwz, tx->svwz);
    put_text_if_set(&entry, KEY_abwa, tx->abwa);
    put_text_if_set(&entry, KEY_abwe, tx->abwe);
    zend_hash_next_index_insert_new(Z_ARRVAL_P(list), &entry);
}

static void put_statement(zval* list, const sepa_stmt_t* statement, date_text* last) {
    zval entry, transactions;
    array_init_size(&entry, 16);
    put_text_if_set(&entry, KEY_ref, statement->ref);
    put_text_if_set(&entry, KEY_account, statement->account);
    put_number_if_set(&entry, KEY_number, statement->number);
    put_number_if_set(&entry, KEY_page, statement->page);
    put_amount(&entry, KEY_openSaldo, statement->openSaldo);
    put_text(&entry, KEY_openCurrency, statement->openCurrency);
    put_date(&entry, KEY_openDate, &statement->openDate, last);
    put_amount(&entry, KEY_closeSaldo, statement->closeSaldo);
    put_text(&entry, KEY_closeCurrency, statement->closeCurrency);
    put_date(&entry, KEY_closeDate, &statement->closeDate, last);
    array_init(&transactions);
    for (const sepa_stmt_tx_t* tx = statement->first_tx; tx; tx = tx->next)
        put_transaction(&transactions, tx, last);
    put(&entry, KEY_tx, &transactions);
    zend_hash_next_index_insert_new(Z_ARRVAL_P(list), &entry);
}

PHP_METHOD(SEPAStatementParser, getStatements) {
    if (zend_parse_parameters_none() == FAILURE) return;

    const parser_object* object = object_of(Z_OBJ(EX(This)));
    if (!object->parser) {
        zend_throw_exception(sepa_ce_exception, sepa_stmt_parser_getError(NULL), 0);
        return;
    }
    const sepa_stmt_t* statement = object->loaded ? sepa_stmt_parser_getStatement(object->parser) : NULL;
    if (!statement) RETURN_NULL();
    array_init(return_value);
    date_text last = {0};
    for (; statement; statement = statement->next)
        put_statement(return_value, statement, &last);
    if (last.text) zend_string_release(last.text);
}
