/* The class SEPAText: texts with the characters that banks take. */
#include "binding.h"

static void return_report(zval* variable, const sepa_text_report_t* report) {
    zval array;
    array_init_size(&array, 4);
    add_assoc_long(&array, "changed", report->changed);
    add_assoc_long(&array, "replaced", report->replaced);
    add_assoc_long(&array, "cut", report->cut);
    add_assoc_long(&array, "first", report->first);
    engine_assign(variable, &array);
}

PHP_METHOD(SEPAText, convert) {
    char* text;
    size_t length;
    zend_long mode = SEPA_TEXT_KEEP, limit = 0;
    zval* report_variable = NULL;
    ZEND_PARSE_PARAMETERS_START(1, 4)
        Z_PARAM_STRING(text, length)
        Z_PARAM_OPTIONAL
        Z_PARAM_LONG(mode)
        Z_PARAM_LONG(limit)
        Z_PARAM_ZVAL(report_variable)
    ZEND_PARSE_PARAMETERS_END();

    if (throw_for_zero_byte(text, length)) return;
    if ((mode != SEPA_TEXT_KEEP && mode != SEPA_TEXT_BASIC) || limit < 0) {
        zend_throw_exception(sepa_ce_exception, "Invalid mode or limit", BINDING_ERROR);
        return;
    }
    /* Most results are hardly longer than their text; a longer one is made a second time. */
    sepa_text_report_t report;
    size_t size = length + length / 4 + 16;
    zend_string* result;
    for (;;) {
        result = zend_string_alloc(size - 1, 0);
        int needed = sepa_text_convert(text, (uint32_t)mode, (size_t)limit, ZSTR_VAL(result), size, &report);
        if (needed < 0) {
            zend_string_efree(result);
            throw_reason("Invalid UTF-8 in text");
            return;
        }
        if ((size_t)needed < size) {
            RETVAL_STR(zend_string_truncate(result, (size_t)needed, 0));
            break;
        }
        zend_string_efree(result);
        size = (size_t)needed + 1;
    }
    if (report_variable) return_report(report_variable, &report);
}
