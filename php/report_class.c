/* The class SEPAReport: a status report of the bank (pain.002) as arrays. */
#include "binding.h"
#include "record.h"

static zend_object_handlers handlers;

/* clang-format off */
#define ITEM(name, kind) MEMBER(sepa_report_item_t, name, kind)
static record_member item_members[] = {
    ITEM(level, UINT8), ITEM(status, CHARS), ITEM(messageId, TEXT_IF_SET), ITEM(messageName, TEXT_IF_SET),
    ITEM(blockId, TEXT_IF_SET), ITEM(instructionId, TEXT_IF_SET), ITEM(endToEndId, TEXT_IF_SET),
    ITEM(uetr, TEXT_IF_SET), ITEM(statusId, TEXT_IF_SET), ITEM(reference, TEXT_IF_SET),
    ITEM(reason, TEXT_IF_SET), ITEM(reasons, TEXT_IF_SET), ITEM(text, TEXT_IF_SET),
    ITEM(amount, DOUBLE_IF_SET), ITEM(currency, CHARS_IF_SET), ITEM(count, UINT32_IF_SET),
    ITEM(name, TEXT_IF_SET), ITEM(iban, CHARS_IF_SET), ITEM(mandate, TEXT_IF_SET),
    ITEM(date, CHARS_IF_SET),
};
/* clang-format on */

static zend_object* create_object(zend_class_entry* entry) {
    return create_bound_object(entry, &handlers);
}

static void release_report(zend_object* std) {
    bound_object* object = bound_object_of(std);
    sepa_report_free(object->handle);
    object->handle = NULL;
    zend_object_std_dtor(std);
}

void report_class_init(zend_class_entry* entry) {
    bind_class(entry, &handlers, create_object, release_report);
    make_keys(item_members, MEMBER_COUNT(item_members));
}

PHP_METHOD(SEPAReport, __construct) {
    (void)return_value;
    if (zend_parse_parameters_none() == FAILURE) return;

    sepa_report_t* report = sepa_report_new();
    if (!report) {
        zend_throw_exception(sepa_ce_exception, "can't create SEPAReport object", BINDING_ERROR);
        return;
    }
    bound_object* object = this_object(execute_data);
    sepa_report_free(object->handle); /* called by hand on a finished object: it starts again, unused */
    object->handle = report;
}

PHP_METHOD(SEPAReport, load) {
    char* filename;
    size_t length;
    ZEND_PARSE_PARAMETERS_START(1, 1)
        Z_PARAM_PATH(filename, length)
    ZEND_PARSE_PARAMETERS_END();

    sepa_report_t* report = this_object(execute_data)->handle;
    bool refused = php_check_open_basedir(filename);
    /* A refused file is the report's one load, too: it fails like a file without a name. */
    if (sepa_report_load(report, refused ? "" : filename) == 1) RETURN_TRUE;
    if (refused) {
        zend_throw_exception_ex(sepa_ce_exception, 0, "Can't open input file: %s", strerror(EPERM));
    } else {
        throw_reason(sepa_report_getError(report));
    }
}

PHP_METHOD(SEPAReport, loadString) {
    char* data;
    size_t size;
    ZEND_PARSE_PARAMETERS_START(1, 1)
        Z_PARAM_STRING(data, size)
    ZEND_PARSE_PARAMETERS_END();

    sepa_report_t* report = this_object(execute_data)->handle;
    if (sepa_report_loadMemory(report, data, size) == 1) RETURN_TRUE;
    throw_reason(sepa_report_getError(report));
}

static void make_item(zval* array, const sepa_report_item_t* item) {
    array_init_size(array, 16);
    put_members(array, item_members, MEMBER_COUNT(item_members), item, NULL);
}

PHP_METHOD(SEPAReport, getItems) {
    if (zend_parse_parameters_none() == FAILURE) return;

    const sepa_report_item_t* item = sepa_report_getItem(this_object(execute_data)->handle);
    array_init(return_value);
    for (; item; item = item->next) {
        zval array;
        make_item(&array, item);
        add_next_index_zval(return_value, &array);
    }
}

PHP_METHOD(SEPAReport, match) {
    char* id;
    size_t length;
    ZEND_PARSE_PARAMETERS_START(1, 1)
        Z_PARAM_STRING(id, length)
    ZEND_PARSE_PARAMETERS_END();

    const sepa_report_item_t* item;
    if (throw_for_zero_byte(id, length)) return;
    if (sepa_report_match(this_object(execute_data)->handle, id, &item) == 1) make_item(return_value, item);
}

PHP_METHOD(SEPAReport, reasonText) {
    char* code;
    size_t length;
    ZEND_PARSE_PARAMETERS_START(1, 1)
        Z_PARAM_STRING(code, length)
    ZEND_PARSE_PARAMETERS_END();

    const char* text = has_zero_byte(code, length) ? NULL : sepa_reason_text(code);
    if (text) RETURN_STRING(text);
}
