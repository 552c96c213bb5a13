/* The PHP module "SEPA": its entry, start-up and information block. The classes are in sepa_class.c and
 * statement_parser_class.c, their method tables and the constants come from sepa.stub.php. It starts the
 * module "velmora" (velmora_module.c). */
#include "binding.h"
#include "engine_names.h"

#include ENGINE_ARGINFO

zend_class_entry* sepa_ce_exception;

static PHP_MINIT_FUNCTION(sepa) {
    sepa_class_init(register_class_SEPA());
    sepa_ce_exception = register_class_SEPAException(zend_ce_exception);
    sepaStP_init(register_class_SEPAStatementParser());
    register_sepa_symbols(module_number);
    /* A module that dl() loads ends with the request, one that is started here does not. */
    if (type == MODULE_TEMPORARY) return SUCCESS;
    /* The last act: behind it the engine has forgotten which module it is starting. */
    return zend_startup_module(&velmora_module_entry);
}

static PHP_MINFO_FUNCTION(sepa) {
    (void)zend_module;
    php_info_print_table_start();
    php_info_print_table_header(2, "libvelmora", "enabled");
    php_info_print_table_row(2, "Version", VELMORA_VERSION);
    php_info_print_table_end();
}

static zend_module_entry sepa_module_entry = {
    STANDARD_MODULE_HEADER,
    "SEPA",
    NULL,
    PHP_MINIT(sepa),
    NULL,
    NULL,
    NULL,
    PHP_MINFO(sepa),
    VELMORA_VERSION,
    STANDARD_MODULE_PROPERTIES,
};

ZEND_DLEXPORT zend_module_entry* get_module(void);

ZEND_DLEXPORT zend_module_entry* get_module(void) {
    const char* refusal = engine_refusal(sepa_module_entry.build_id);
    if (refusal) sepa_module_entry.build_id = refusal;
    return &sepa_module_entry;
}
