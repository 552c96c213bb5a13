/* The PHP module "velmora": what the library can do beyond what the module "SEPA" has always offered. Its
 * tables come from velmora.stub.php. */
#include "binding.h"

#include ENGINE_VELMORA_ARGINFO

static PHP_MINIT_FUNCTION(velmora) {
    (void)type;
    engine_register_below(register_class_SEPAMessage, sepa_ce);
    statement_reader_init(register_class_SEPAStatementReader(sepaStP_ce));
    register_class_SEPAText();
    register_class_SEPACheck();
    check_class_init();
    report_class_init(register_class_SEPAReport());
    register_velmora_symbols(module_number);
    return SUCCESS;
}

static PHP_MINFO_FUNCTION(velmora) {
    (void)zend_module;
    php_info_print_table_start();
    php_info_print_table_row(2, "Version", VELMORA_VERSION);
    php_info_print_table_end();
}

zend_module_entry velmora_module_entry = {
    STANDARD_MODULE_HEADER,
    "velmora",
    NULL,
    PHP_MINIT(velmora),
    NULL,
    NULL,
    NULL,
    PHP_MINFO(velmora),
    VELMORA_VERSION,
    STANDARD_MODULE_PROPERTIES,
};
