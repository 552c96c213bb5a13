/* The class SEPA: one object owns one payment message. Its setters are SEPAMessage's, too. */
#include "property_list.h"

#include <stdlib.h>

zend_class_entry* sepa_ce;
zend_object_handlers sepa_object_handlers;

static zend_object* create_object(zend_class_entry* entry) {
    return create_bound_object(entry, &sepa_object_handlers);
}

static void release_message(zend_object* std) {
    bound_object* object = bound_object_of(std);
    sepa_free(object->handle);
    object->handle = NULL;
    zend_object_std_dtor(std);
}

void sepa_class_init(zend_class_entry* entry) {
    sepa_ce = entry;
    bind_class(entry, &sepa_object_handlers, create_object, release_message);
}

/* ------------------------------------------------------------------------------------------------------
 * Methods of a message. One whose constructor did not run has a null handle, which every call of the library
 * refuses and sepa_getError() names.
 * --------------------------------------------------------------------------------------------------- */

static sepa_t* message_of(zend_execute_data* execute_data) {
    return this_object(execute_data)->handle;
}

sepa_t* message_or_throw(zend_execute_data* execute_data) {
    sepa_t* message = message_of(execute_data);
    if (!message) throw_reason(sepa_getError(NULL));
    return message;
}

static void return_success_or_throw(sepa_t* message, int success, zval* return_value) {
    if (success) RETURN_TRUE;
    throw_reason(sepa_getError(message));
}

/* The same for a setter: as a method of SEPA it returns true, as one of SEPAMessage the object. */
static void set_or_throw(INTERNAL_FUNCTION_PARAMETERS, sepa_t* message, int success) {
    if (success && EX(func)->common.scope != sepa_ce) RETURN_ZVAL(getThis(), 1, 0);
    return_success_or_throw(message, success, return_value);
}

/* The library takes 32 bits: what does not fit must not become a valid value by losing its upper half. */
static uint32_t to_uint32(zend_long number) {
    return number < 0 || number > UINT32_MAX ? UINT32_MAX : (uint32_t)number;
}

void construct_message(bound_object* object, zend_long type, const char* rulebook) {
    if (type != SEPA_MSGTYPE_DDI && type != SEPA_MSGTYPE_CTI) {
        zend_throw_exception(sepa_ce_exception, "invalid/unknown message type", BINDING_ERROR);
        return;
    }
    sepa_t* message = sepa_new((uint32_t)type);
    if (!message) {
        zend_throw_exception(sepa_ce_exception, "can't create SEPA message object", BINDING_ERROR);
        return;
    }
    if (rulebook && !sepa_setRulebook(message, rulebook)) {
        zend_throw_exception(sepa_ce_exception, sepa_getError(message), BINDING_ERROR);
        sepa_free(message);
        return;
    }
    sepa_free(object->handle); /* called by hand on a finished object: it starts again, empty */
    object->handle = message;
}

PHP_METHOD(SEPA, __construct) {
    (void)return_value;
    zend_long type;
    ZEND_PARSE_PARAMETERS_START(1, 1)
        Z_PARAM_LONG(type)
    ZEND_PARSE_PARAMETERS_END();

    construct_message(this_object(execute_data), type, NULL);
}

static void set_text(INTERNAL_FUNCTION_PARAMETERS, int (*set)(sepa_t*, const char*)) {
    char* text;
    size_t length;
    ZEND_PARSE_PARAMETERS_START(1, 1)
        Z_PARAM_STRING(text, length)
    ZEND_PARSE_PARAMETERS_END();

    if (throw_for_zero_byte(text, length)) return;
    sepa_t* message = message_of(execute_data);
    set_or_throw(INTERNAL_FUNCTION_PARAM_PASSTHRU, message, set(message, text));
}

PHP_METHOD(SEPA, setIBAN) {
    set_text(INTERNAL_FUNCTION_PARAM_PASSTHRU, sepa_setIBAN);
}

PHP_METHOD(SEPA, setBIC) {
    set_text(INTERNAL_FUNCTION_PARAM_PASSTHRU, sepa_setBIC);
}

PHP_METHOD(SEPA, setName) {
    set_text(INTERNAL_FUNCTION_PARAM_PASSTHRU, sepa_setName);
}

PHP_METHOD(SEPA, setCreditorIdentifier) {
    set_text(INTERNAL_FUNCTION_PARAM_PASSTHRU, sepa_setCreditorIdentifier);
}

PHP_METHOD(SEPA, setDate) {
    set_text(INTERNAL_FUNCTION_PARAM_PASSTHRU, sepa_setDate);
}

PHP_METHOD(SEPA, setMessageId) {
    set_text(INTERNAL_FUNCTION_PARAM_PASSTHRU, sepa_setMessageId);
}

PHP_METHOD(SEPA, setDDType) {
    zend_long type;
    ZEND_PARSE_PARAMETERS_START(1, 1)
        Z_PARAM_LONG(type)
    ZEND_PARSE_PARAMETERS_END();

    sepa_t* message = message_of(execute_data);
    set_or_throw(INTERNAL_FUNCTION_PARAM_PASSTHRU, message, sepa_setDDType(message, to_uint32(type)));
}

PHP_METHOD(SEPA, setBatchBooking) {
    zend_bool batch;
    ZEND_PARSE_PARAMETERS_START(1, 1)
        Z_PARAM_BOOL(batch)
    ZEND_PARSE_PARAMETERS_END();

    sepa_t* message = message_of(execute_data);
    set_or_throw(INTERNAL_FUNCTION_PARAM_PASSTHRU, message, sepa_setBatchBooking(message, batch ? 1 : 0));
}

/* ------------------------------------------------------------------------------------------------------
 * Transactions
 * --------------------------------------------------------------------------------------------------- */

PHP_METHOD(SEPA, add) {
    HashTable* properties;
    ZEND_PARSE_PARAMETERS_START(1, 1)
        Z_PARAM_ARRAY_HT(properties)
    ZEND_PARSE_PARAMETERS_END();

    property_list list;
    const char* reason = fill_list(&list, properties);
    if (reason) {
        throw_reason(reason);
    } else if (!EG(exception)) {
        sepa_t* message = message_of(execute_data);
        return_success_or_throw(message, sepa_add(message, list.pairs), return_value);
    }
    release_list(&list);
}

PHP_METHOD(SEPA, toXML) {
    if (zend_parse_parameters_none() == FAILURE) return;

    sepa_t* message = message_of(execute_data);
    char* document = sepa_toXML(message);
    if (!document) {
        throw_reason(sepa_getError(message));
        return;
    }
    RETVAL_STRING(document);
    free(document);
}

/* ------------------------------------------------------------------------------------------------------
 * Static methods: false for every failure, never an exception
 * --------------------------------------------------------------------------------------------------- */

/* The only argument of most static methods; null after a wrong one, which the engine has reported. One with a
 * zero byte is the empty text, which nothing accepts. */
static const char* one_text(zend_execute_data* execute_data) {
    char* text = NULL;
    size_t length;
    ZEND_PARSE_PARAMETERS_START(1, 1)
        Z_PARAM_STRING(text, length)
    ZEND_PARSE_PARAMETERS_END_EX(return NULL);
    return has_zero_byte(text, length) ? "" : text;
}

PHP_METHOD(SEPA, init) {
    zend_long option;
    char* value;
    size_t length;
    ZEND_PARSE_PARAMETERS_START(2, 2)
        Z_PARAM_LONG(option)
        Z_PARAM_STRING(value, length)
    ZEND_PARSE_PARAMETERS_END();

    if (has_zero_byte(value, length)) RETURN_FALSE;
    RETURN_BOOL(option == (int)option && sepa_init((int)option, value) == 1);
}

PHP_METHOD(SEPA, IBAN_convert) {
    char *country, *account, *bank_code;
    size_t country_length, account_length, bank_code_length;
    zval* status_variable = NULL;
    ZEND_PARSE_PARAMETERS_START(3, 4)
        Z_PARAM_STRING(country, country_length)
        Z_PARAM_STRING(account, account_length)
        Z_PARAM_STRING(bank_code, bank_code_length)
        Z_PARAM_OPTIONAL
        Z_PARAM_ZVAL(status_variable)
    ZEND_PARSE_PARAMETERS_END();

    char iban[36] = "";
    uint8_t status = 0;
    bool refused = has_zero_byte(country, country_length) || has_zero_byte(account, account_length) ||
                   has_zero_byte(bank_code, bank_code_length);
    int result = refused ? -1 : sepa_iban_convert(country, account, bank_code, iban, &status);
    if (status_variable) {
        zval number;
        ZVAL_LONG(&number, status);
        engine_assign(status_variable, &number);
    }
    if (result != 1) RETURN_FALSE;
    RETURN_STRING(iban);
}

PHP_METHOD(SEPA, IBAN_getBIC) {
    const char* iban = one_text(execute_data);
    char bic[12] = "";
    if (!iban) return;
    if (sepa_iban_getBIC(iban, bic) != 1) RETURN_FALSE;
    RETURN_STRING(bic);
}

PHP_METHOD(SEPA, IBAN_check) {
    const char* iban = one_text(execute_data);
    if (!iban) return;
    RETURN_BOOL(sepa_iban_check(iban) == 1);
}

PHP_METHOD(SEPA, BIC_getBankName) {
    const char* bic = one_text(execute_data);
    sepa_bank_t* bank;
    if (!bic) return;
    if (sepa_bic_getBank(bic, &bank) != 1) RETURN_FALSE;
    if (bank->name) {
        RETVAL_STRING(bank->name);
    } else {
        RETVAL_FALSE;
    }
    free(bank);
}

PHP_METHOD(SEPA, BIC_getBankFlags) {
    const char* bic = one_text(execute_data);
    sepa_bank_t* bank;
    if (!bic) return;
    if (sepa_bic_getBank(bic, &bank) != 1) RETURN_FALSE;
    RETVAL_LONG(bank->flags);
    free(bank);
}
