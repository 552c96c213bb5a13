/* This is a generated file, edit the .stub.php file instead.
 * Stub hash: 098c727bc4e1488aed14b26bb67bc163b484bb9a */

ZEND_BEGIN_ARG_WITH_RETURN_TYPE_INFO_EX(arginfo_class_SEPAStatementReader_loadString, 0, 2, _IS_BOOL, 0)
	ZEND_ARG_TYPE_INFO(0, format, IS_LONG, 0)
	ZEND_ARG_TYPE_INFO(0, data, IS_STRING, 0)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_WITH_RETURN_OBJ_TYPE_MASK_EX(arginfo_class_SEPAStatementReader_getBookings, 0, 0, Traversable, MAY_BE_ARRAY)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_WITH_RETURN_TYPE_INFO_EX(arginfo_class_SEPAStatementReader_check, 0, 0, IS_ARRAY, 0)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_WITH_RETURN_TYPE_INFO_EX(arginfo_class_SEPAText_convert, 0, 1, IS_STRING, 0)
	ZEND_ARG_TYPE_INFO(0, text, IS_STRING, 0)
	ZEND_ARG_TYPE_INFO_WITH_DEFAULT_VALUE(0, mode, IS_LONG, 0, "SEPA_TEXT_KEEP")
	ZEND_ARG_TYPE_INFO_WITH_DEFAULT_VALUE(0, limit, IS_LONG, 0, "0")
	ZEND_ARG_TYPE_INFO_WITH_DEFAULT_VALUE(1, report, IS_ARRAY, 1, "null")
ZEND_END_ARG_INFO()


ZEND_METHOD(SEPAStatementReader, loadString);
ZEND_METHOD(SEPAStatementReader, getBookings);
ZEND_METHOD(SEPAStatementReader, check);
ZEND_METHOD(SEPAText, convert);


static const zend_function_entry class_SEPAStatementReader_methods[] = {
	ZEND_ME(SEPAStatementReader, loadString, arginfo_class_SEPAStatementReader_loadString, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPAStatementReader, getBookings, arginfo_class_SEPAStatementReader_getBookings, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPAStatementReader, check, arginfo_class_SEPAStatementReader_check, ZEND_ACC_PUBLIC)
	ZEND_FE_END
};


static const zend_function_entry class_SEPAText_methods[] = {
	ZEND_ME(SEPAText, convert, arginfo_class_SEPAText_convert, ZEND_ACC_PUBLIC|ZEND_ACC_STATIC)
	ZEND_FE_END
};

static void register_velmora_symbols(int module_number)
{
	REGISTER_LONG_CONSTANT("SEPA_STMT_FORMAT_CAMT", 53, CONST_PERSISTENT | CONST_CS);
	REGISTER_LONG_CONSTANT("SEPA_STMT_FORMAT_MT940_TOLERANT", 940, CONST_PERSISTENT | CONST_CS);
	REGISTER_LONG_CONSTANT("SEPA_TEXT_KEEP", 0, CONST_PERSISTENT | CONST_CS);
	REGISTER_LONG_CONSTANT("SEPA_TEXT_BASIC", 1, CONST_PERSISTENT | CONST_CS);
}

static zend_class_entry *register_class_SEPAStatementReader(zend_class_entry *class_entry_SEPAStatementParser)
{
	zend_class_entry ce, *class_entry;

	INIT_CLASS_ENTRY(ce, "SEPAStatementReader", class_SEPAStatementReader_methods);
	class_entry = zend_register_internal_class_ex(&ce, class_entry_SEPAStatementParser);
#if (PHP_VERSION_ID >= 80100)
	class_entry->ce_flags |= ZEND_ACC_NOT_SERIALIZABLE;
#endif

	return class_entry;
}

static zend_class_entry *register_class_SEPAText(void)
{
	zend_class_entry ce, *class_entry;

	INIT_CLASS_ENTRY(ce, "SEPAText", class_SEPAText_methods);
	class_entry = zend_register_internal_class_ex(&ce, NULL);
	class_entry->ce_flags |= ZEND_ACC_FINAL;

	return class_entry;
}
