/* The class SEPAStatementParser: an account statement file as nested arrays. */
#include "statement_arrays.h"

zend_class_entry* sepaStP_ce;
zend_object_handlers sepaStP_object_handlers;

static zend_object* create_object(zend_class_entry* entry) {
    return create_bound_object(entry, &sepaStP_object_handlers);
}

void sepaStP_init(zend_class_entry* entry) {
    sepaStP_ce = entry;
    /* Deliberate: the parser is not released with its object but kept until the process ends; programs hold
     * on to what they read while their parsers come and go. */
    bind_class(entry, &sepaStP_object_handlers, create_object, NULL);
    make_statement_keys();
}

PHP_METHOD(SEPAStatementParser, __construct) {
    (void)return_value;
    if (zend_parse_parameters_none() == FAILURE) return;

    bound_object* object = this_object(execute_data);
    if (object->handle && object->std.handlers != &sepaStP_object_handlers) {
        throw_reason("Parser already used"); /* a loop may be on its way through a reader's bookings */
        return;
    }
    sepa_stmt_parser_t* parser = sepa_stmt_parser_new();
    if (!parser) {
        zend_throw_exception(sepa_ce_exception, "can't create SEPAStatementParser object", BINDING_ERROR);
        return;
    }
    sepa_stmt_parser_free(object->handle); /* called by hand on a finished object: it starts again, unused */
    object->handle = parser;
}

bool throw_for_format(zend_long format) {
    if (format == SEPA_STMT_FORMAT_MT940 || format == SEPA_STMT_FORMAT_CAMT ||
        format == SEPA_STMT_FORMAT_MT940_TOLERANT)
        return false;
    zend_throw_exception(sepa_ce_exception, "invalid/unknown statement format", BINDING_ERROR);
    return true;
}

PHP_METHOD(SEPAStatementParser, load) {
    zend_long format;
    char* filename;
    size_t length;
    ZEND_PARSE_PARAMETERS_START(2, 2)
        Z_PARAM_LONG(format)
        Z_PARAM_PATH(filename, length)
    ZEND_PARSE_PARAMETERS_END();

    if (throw_for_format(format)) return;
    sepa_stmt_parser_t* parser = this_object(execute_data)->handle;
    bool refused = php_check_open_basedir(filename);
    /* A refused file is the parser's one load, too: it fails like a file without a name. */
    if (sepa_stmt_parser_load(parser, (uint32_t)format, refused ? "" : filename) == 1) RETURN_TRUE;
    if (refused) {
        zend_throw_exception_ex(sepa_ce_exception, 0, "Can't open input file: %s", strerror(EPERM));
    } else {
        throw_reason(sepa_stmt_parser_getError(parser));
    }
}

sepa_stmt_parser_t* parser_or_throw(zend_execute_data* execute_data) {
    sepa_stmt_parser_t* parser = this_object(execute_data)->handle;
    if (!parser) throw_reason(sepa_stmt_parser_getError(NULL));
    return parser;
}

PHP_METHOD(SEPAStatementParser, getStatements) {
    if (zend_parse_parameters_none() == FAILURE) return;

    sepa_stmt_parser_t* parser = parser_or_throw(execute_data);
    if (parser) return_statements(return_value, parser);
}
