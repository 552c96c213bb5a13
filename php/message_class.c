/* The class SEPAMessage: a message with a rulebook of its own. The setters that it has in common with the
 * class SEPA are in sepa_class.c. */
#include "engine.h" /* the first: it says which of libc's functions there are */

#include "message/add_all.h"
#include "output_file.h"
#include "property_list.h"

#include <stdlib.h>

static void return_object_or_throw(INTERNAL_FUNCTION_PARAMETERS, sepa_t* message, int success) {
    if (success) RETURN_ZVAL(getThis(), 1, 0);
    throw_reason(sepa_getError(message));
}

PHP_METHOD(SEPAMessage, __construct) {
    (void)return_value;
    zend_long type;
    char* rulebook = NULL;
    size_t length = 0;
    ZEND_PARSE_PARAMETERS_START(1, 2)
        Z_PARAM_LONG(type)
        Z_PARAM_OPTIONAL
        Z_PARAM_STRING_EX(rulebook, length, 1, 0)
    ZEND_PARSE_PARAMETERS_END();

    if (!rulebook || !throw_for_zero_byte(rulebook, length))
        construct_message(this_object(execute_data), type, rulebook);
}

PHP_METHOD(SEPAMessage, setRulebook) {
    char* rulebook;
    size_t length;
    ZEND_PARSE_PARAMETERS_START(1, 1)
        Z_PARAM_STRING(rulebook, length)
    ZEND_PARSE_PARAMETERS_END();

    if (throw_for_zero_byte(rulebook, length)) return;
    sepa_t* message = this_object(execute_data)->handle;
    return_object_or_throw(INTERNAL_FUNCTION_PARAM_PASSTHRU, message, sepa_setRulebook(message, rulebook));
}

PHP_METHOD(SEPAMessage, set) {
    char* key;
    size_t length;
    zval* value;
    ZEND_PARSE_PARAMETERS_START(2, 2)
        Z_PARAM_STRING(key, length)
        Z_PARAM_ZVAL(value)
    ZEND_PARSE_PARAMETERS_END();

    /* A default that is false or null is none. */
    bool is_set = Z_TYPE_P(value) != IS_NULL && Z_TYPE_P(value) != IS_FALSE;
    zend_string* text = is_set ? zval_get_string(value) : NULL;
    if (!EG(exception) && !throw_for_zero_byte(key, length) &&
        !(text && throw_for_zero_byte(ZSTR_VAL(text), ZSTR_LEN(text)))) {
        sepa_t* message = this_object(execute_data)->handle;
        return_object_or_throw(INTERNAL_FUNCTION_PARAM_PASSTHRU, message,
                               sepa_set(message, key, text ? ZSTR_VAL(text) : NULL));
    }
    if (text) zend_string_release(text);
}

PHP_METHOD(SEPAMessage, test) {
    HashTable* properties;
    ZEND_PARSE_PARAMETERS_START(1, 1)
        Z_PARAM_ARRAY_HT(properties)
    ZEND_PARSE_PARAMETERS_END();

    property_list list;
    const char* reason = fill_list(&list, properties);
    sepa_t* message = EG(exception) ? NULL : message_or_throw(execute_data);
    if (message) {
        if (!reason && !sepa_test(message, list.pairs)) reason = sepa_getError(message);
        if (reason) RETVAL_STRING(reason);
    }
    release_list(&list);
}

PHP_METHOD(SEPAMessage, getTotals) {
    if (zend_parse_parameters_none() == FAILURE) return;

    sepa_t* message = this_object(execute_data)->handle;
    sepa_totals_t totals;
    if (!sepa_getTotals(message, &totals)) {
        throw_reason(sepa_getError(message));
        return;
    }
    array_init_size(return_value, 3);
    add_assoc_long(return_value, "payments", (zend_long)totals.payments);
    add_assoc_long(return_value, "cents", (zend_long)totals.cents);
    add_assoc_long(return_value, "blocks", (zend_long)totals.blocks);
}

PHP_METHOD(SEPAMessage, save) {
    char* filename;
    size_t length;
    ZEND_PARSE_PARAMETERS_START(1, 1)
        Z_PARAM_PATH(filename, length)
    ZEND_PARSE_PARAMETERS_END();

    sepa_t* message = this_object(execute_data)->handle;
    char* document = sepa_toXML(message);
    if (!document) {
        throw_reason(sepa_getError(message));
        return;
    }
    size_t size = strlen(document);
    const char* reason = write_whole_file(filename, document, size);
    if (reason) {
        zend_throw_exception_ex(sepa_ce_exception, 0, "Can't write output file: %s", reason);
    } else {
        RETVAL_LONG((zend_long)size);
    }
    explicit_bzero(document, size);
    free(document);
}

/* ------------------------------------------------------------------------------------------------------
 * Several payments, all of them or none: first they become lists, which may run the script's own code, then
 * the library adds all of them or none.
 * --------------------------------------------------------------------------------------------------- */

typedef struct {
    zval properties; /* holds what the list points into */
    property_list list;
    zval key; /* under which the script has it, an integer or a text */
} batch_payment;

typedef struct {
    batch_payment* payments;
    uint32_t count, room;
} payment_batch;

static void throw_for_payment(const batch_payment* payment, uint32_t position, const char* reason) {
    zend_string* key = zval_get_string((zval*)&payment->key);
    throw_reason(reason); /* becomes the previous one of the next */
    zend_throw_exception_ex(sepa_ce_exception, position, "Payment %s: %s", ZSTR_VAL(key), reason);
    zend_string_release(key);
}

/* False with an exception. Takes over the key. */
static bool append_payment(payment_batch* batch, zval* properties, zval* key) {
    if (batch->count == batch->room) {
        batch->room = batch->room ? 2 * batch->room : 16;
        batch->payments = safe_erealloc(batch->payments, batch->room, sizeof *batch->payments, 0);
    }
    uint32_t position = batch->count++;
    batch_payment* payment = &batch->payments[position];
    ZVAL_DEREF(properties);
    ZVAL_COPY(&payment->properties, properties);
    payment->list = (property_list){0};
    payment->key = *key;
    const char* reason = "Not an array";
    if (Z_TYPE_P(properties) == IS_ARRAY) reason = fill_list(&payment->list, Z_ARRVAL(payment->properties));
    if (reason) throw_for_payment(payment, position, reason);
    return !EG(exception);
}

static int append_current(zend_object_iterator* iterator, void* context) {
    payment_batch* batch = context;
    zval key, *properties = iterator->funcs->get_current_data(iterator);
    if (EG(exception)) return ZEND_HASH_APPLY_STOP;
    ZVAL_UNDEF(&key);
    if (iterator->funcs->get_current_key) iterator->funcs->get_current_key(iterator, &key);
    if (EG(exception)) return ZEND_HASH_APPLY_STOP;
    if (Z_TYPE(key) != IS_LONG && Z_TYPE(key) != IS_STRING) { /* generators have keys of any kind */
        zval_ptr_dtor(&key);
        ZVAL_LONG(&key, batch->count);
    }
    return append_payment(batch, properties, &key) ? ZEND_HASH_APPLY_KEEP : ZEND_HASH_APPLY_STOP;
}

static void append_array(payment_batch* batch, HashTable* array) {
    zend_ulong number;
    zend_string* name;
    zval *properties, key;
    ZEND_HASH_FOREACH_KEY_VAL(array, number, name, properties) {
        if (name) {
            ZVAL_STR_COPY(&key, name);
        } else {
            ZVAL_LONG(&key, (zend_long)number);
        }
        if (!append_payment(batch, properties, &key)) return;
    }
    ZEND_HASH_FOREACH_END();
}

static void add_batch(sepa_t* message, const payment_batch* batch, zval* return_value) {
    size_t refused;
    const char* const** lists = safe_emalloc(batch->count, sizeof *lists, 0);
    for (uint32_t i = 0; i < batch->count; i++)
        lists[i] = batch->payments[i].list.pairs;
    if (velmora_add_all(message, lists, batch->count, &refused)) {
        RETVAL_LONG(batch->count);
    } else {
        throw_for_payment(&batch->payments[refused], (uint32_t)refused, sepa_getError(message));
    }
    efree(lists);
}

static void release_batch(payment_batch* batch) {
    for (uint32_t i = 0; i < batch->count; i++) {
        batch_payment* payment = &batch->payments[i];
        if (payment->list.pairs) release_list(&payment->list);
        zval_ptr_dtor(&payment->properties);
        zval_ptr_dtor(&payment->key);
    }
    if (batch->payments) efree(batch->payments);
}

PHP_METHOD(SEPAMessage, addAll) {
    zval* payments;
    ZEND_PARSE_PARAMETERS_START(1, 1)
        Z_PARAM_ZVAL(payments)
    ZEND_PARSE_PARAMETERS_END();

    payment_batch batch = {0};
    if (Z_TYPE_P(payments) == IS_ARRAY) {
        append_array(&batch, Z_ARRVAL_P(payments));
    } else if (Z_TYPE_P(payments) == IS_OBJECT &&
               instanceof_function(Z_OBJCE_P(payments), zend_ce_traversable)) {
        spl_iterator_apply(payments, append_current, &batch);
    } else {
        engine_refuse_argument(payments);
    }
    /* Asked for only now: the script's code may have called the constructor by hand. */
    sepa_t* message = EG(exception) ? NULL : message_or_throw(execute_data);
    if (message) add_batch(message, &batch, return_value);
    release_batch(&batch);
}
