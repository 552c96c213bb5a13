/* This is a generated file, edit the .stub.php file instead.
 * Stub hash: 6308bcdb0dfe09054b90c4f91f2b8c24d3d05699 */

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPA___construct, 0, 0, 1)
	ZEND_ARG_TYPE_INFO(0, type, IS_LONG, 0)
ZEND_END_ARG_INFO()

#if (PHP_VERSION_ID >= 80100)
ZEND_BEGIN_ARG_WITH_TENTATIVE_RETURN_TYPE_INFO_EX(arginfo_class_SEPA_setIBAN, 0, 1, _IS_BOOL, 0)
#else
ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPA_setIBAN, 0, 0, 1)
#endif
	ZEND_ARG_TYPE_INFO(0, iban, IS_STRING, 0)
ZEND_END_ARG_INFO()

#if (PHP_VERSION_ID >= 80100)
ZEND_BEGIN_ARG_WITH_TENTATIVE_RETURN_TYPE_INFO_EX(arginfo_class_SEPA_setBIC, 0, 1, _IS_BOOL, 0)
#else
ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPA_setBIC, 0, 0, 1)
#endif
	ZEND_ARG_TYPE_INFO(0, bic, IS_STRING, 0)
ZEND_END_ARG_INFO()

#if (PHP_VERSION_ID >= 80100)
ZEND_BEGIN_ARG_WITH_TENTATIVE_RETURN_TYPE_INFO_EX(arginfo_class_SEPA_setName, 0, 1, _IS_BOOL, 0)
#else
ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPA_setName, 0, 0, 1)
#endif
	ZEND_ARG_TYPE_INFO(0, name, IS_STRING, 0)
ZEND_END_ARG_INFO()

#if (PHP_VERSION_ID >= 80100)
ZEND_BEGIN_ARG_WITH_TENTATIVE_RETURN_TYPE_INFO_EX(arginfo_class_SEPA_setCreditorIdentifier, 0, 1, _IS_BOOL, 0)
#else
ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPA_setCreditorIdentifier, 0, 0, 1)
#endif
	ZEND_ARG_TYPE_INFO(0, identifier, IS_STRING, 0)
ZEND_END_ARG_INFO()

#if (PHP_VERSION_ID >= 80100)
ZEND_BEGIN_ARG_WITH_TENTATIVE_RETURN_TYPE_INFO_EX(arginfo_class_SEPA_setDate, 0, 1, _IS_BOOL, 0)
#else
ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPA_setDate, 0, 0, 1)
#endif
	ZEND_ARG_TYPE_INFO(0, date, IS_STRING, 0)
ZEND_END_ARG_INFO()

#if (PHP_VERSION_ID >= 80100)
ZEND_BEGIN_ARG_WITH_TENTATIVE_RETURN_TYPE_INFO_EX(arginfo_class_SEPA_setDDType, 0, 1, _IS_BOOL, 0)
#else
ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPA_setDDType, 0, 0, 1)
#endif
	ZEND_ARG_TYPE_INFO(0, type, IS_LONG, 0)
ZEND_END_ARG_INFO()

#if (PHP_VERSION_ID >= 80100)
ZEND_BEGIN_ARG_WITH_TENTATIVE_RETURN_TYPE_INFO_EX(arginfo_class_SEPA_setBatchBooking, 0, 1, _IS_BOOL, 0)
#else
ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPA_setBatchBooking, 0, 0, 1)
#endif
	ZEND_ARG_TYPE_INFO(0, batch, _IS_BOOL, 0)
ZEND_END_ARG_INFO()

#if (PHP_VERSION_ID >= 80100)
ZEND_BEGIN_ARG_WITH_TENTATIVE_RETURN_TYPE_INFO_EX(arginfo_class_SEPA_setMessageId, 0, 1, _IS_BOOL, 0)
#else
ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPA_setMessageId, 0, 0, 1)
#endif
	ZEND_ARG_TYPE_INFO(0, id, IS_STRING, 0)
ZEND_END_ARG_INFO()

#if (PHP_VERSION_ID >= 80100)
ZEND_BEGIN_ARG_WITH_TENTATIVE_RETURN_TYPE_INFO_EX(arginfo_class_SEPA_add, 0, 1, _IS_BOOL, 0)
#else
ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPA_add, 0, 0, 1)
#endif
	ZEND_ARG_TYPE_INFO(0, transaction, IS_ARRAY, 0)
ZEND_END_ARG_INFO()

#if (PHP_VERSION_ID >= 80100)
ZEND_BEGIN_ARG_WITH_TENTATIVE_RETURN_TYPE_INFO_EX(arginfo_class_SEPA_toXML, 0, 0, IS_STRING, 0)
#else
ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPA_toXML, 0, 0, 0)
#endif
ZEND_END_ARG_INFO()

#if (PHP_VERSION_ID >= 80100)
ZEND_BEGIN_ARG_WITH_TENTATIVE_RETURN_TYPE_INFO_EX(arginfo_class_SEPA_init, 0, 2, _IS_BOOL, 0)
#else
ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPA_init, 0, 0, 2)
#endif
	ZEND_ARG_TYPE_INFO(0, option, IS_LONG, 0)
	ZEND_ARG_TYPE_INFO(0, value, IS_STRING, 0)
ZEND_END_ARG_INFO()

#if (PHP_VERSION_ID >= 80100)
ZEND_BEGIN_ARG_WITH_TENTATIVE_RETURN_TYPE_MASK_EX(arginfo_class_SEPA_IBAN_convert, 0, 3, MAY_BE_STRING|MAY_BE_FALSE)
#else
ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPA_IBAN_convert, 0, 0, 3)
#endif
	ZEND_ARG_TYPE_INFO(0, country, IS_STRING, 0)
	ZEND_ARG_TYPE_INFO(0, account, IS_STRING, 0)
	ZEND_ARG_TYPE_INFO(0, bankCode, IS_STRING, 0)
	ZEND_ARG_INFO_WITH_DEFAULT_VALUE(1, status, "null")
ZEND_END_ARG_INFO()

#if (PHP_VERSION_ID >= 80100)
ZEND_BEGIN_ARG_WITH_TENTATIVE_RETURN_TYPE_MASK_EX(arginfo_class_SEPA_IBAN_getBIC, 0, 1, MAY_BE_STRING|MAY_BE_FALSE)
#else
ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPA_IBAN_getBIC, 0, 0, 1)
#endif
	ZEND_ARG_TYPE_INFO(0, iban, IS_STRING, 0)
ZEND_END_ARG_INFO()

#define arginfo_class_SEPA_IBAN_check arginfo_class_SEPA_setIBAN

#if (PHP_VERSION_ID >= 80100)
ZEND_BEGIN_ARG_WITH_TENTATIVE_RETURN_TYPE_MASK_EX(arginfo_class_SEPA_BIC_getBankName, 0, 1, MAY_BE_STRING|MAY_BE_FALSE)
#else
ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPA_BIC_getBankName, 0, 0, 1)
#endif
	ZEND_ARG_TYPE_INFO(0, bic, IS_STRING, 0)
ZEND_END_ARG_INFO()

#if (PHP_VERSION_ID >= 80100)
ZEND_BEGIN_ARG_WITH_TENTATIVE_RETURN_TYPE_MASK_EX(arginfo_class_SEPA_BIC_getBankFlags, 0, 1, MAY_BE_LONG|MAY_BE_FALSE)
#else
ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPA_BIC_getBankFlags, 0, 0, 1)
#endif
	ZEND_ARG_TYPE_INFO(0, bic, IS_STRING, 0)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAStatementParser___construct, 0, 0, 0)
ZEND_END_ARG_INFO()

#if (PHP_VERSION_ID >= 80100)
ZEND_BEGIN_ARG_WITH_TENTATIVE_RETURN_TYPE_INFO_EX(arginfo_class_SEPAStatementParser_load, 0, 2, _IS_BOOL, 0)
#else
ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAStatementParser_load, 0, 0, 2)
#endif
	ZEND_ARG_TYPE_INFO(0, format, IS_LONG, 0)
	ZEND_ARG_TYPE_INFO(0, filename, IS_STRING, 0)
ZEND_END_ARG_INFO()

#if (PHP_VERSION_ID >= 80100)
ZEND_BEGIN_ARG_WITH_TENTATIVE_RETURN_TYPE_INFO_EX(arginfo_class_SEPAStatementParser_getStatements, 0, 0, IS_ARRAY, 1)
#else
ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAStatementParser_getStatements, 0, 0, 0)
#endif
ZEND_END_ARG_INFO()


ZEND_METHOD(SEPA, __construct);
ZEND_METHOD(SEPA, setIBAN);
ZEND_METHOD(SEPA, setBIC);
ZEND_METHOD(SEPA, setName);
ZEND_METHOD(SEPA, setCreditorIdentifier);
ZEND_METHOD(SEPA, setDate);
ZEND_METHOD(SEPA, setDDType);
ZEND_METHOD(SEPA, setBatchBooking);
ZEND_METHOD(SEPA, setMessageId);
ZEND_METHOD(SEPA, add);
ZEND_METHOD(SEPA, toXML);
ZEND_METHOD(SEPA, init);
ZEND_METHOD(SEPA, IBAN_convert);
ZEND_METHOD(SEPA, IBAN_getBIC);
ZEND_METHOD(SEPA, IBAN_check);
ZEND_METHOD(SEPA, BIC_getBankName);
ZEND_METHOD(SEPA, BIC_getBankFlags);
ZEND_METHOD(SEPAStatementParser, __construct);
ZEND_METHOD(SEPAStatementParser, load);
ZEND_METHOD(SEPAStatementParser, getStatements);


static const zend_function_entry class_SEPA_methods[] = {
	ZEND_ME(SEPA, __construct, arginfo_class_SEPA___construct, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPA, setIBAN, arginfo_class_SEPA_setIBAN, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPA, setBIC, arginfo_class_SEPA_setBIC, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPA, setName, arginfo_class_SEPA_setName, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPA, setCreditorIdentifier, arginfo_class_SEPA_setCreditorIdentifier, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPA, setDate, arginfo_class_SEPA_setDate, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPA, setDDType, arginfo_class_SEPA_setDDType, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPA, setBatchBooking, arginfo_class_SEPA_setBatchBooking, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPA, setMessageId, arginfo_class_SEPA_setMessageId, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPA, add, arginfo_class_SEPA_add, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPA, toXML, arginfo_class_SEPA_toXML, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPA, init, arginfo_class_SEPA_init, ZEND_ACC_PUBLIC|ZEND_ACC_STATIC)
	ZEND_ME(SEPA, IBAN_convert, arginfo_class_SEPA_IBAN_convert, ZEND_ACC_PUBLIC|ZEND_ACC_STATIC)
	ZEND_ME(SEPA, IBAN_getBIC, arginfo_class_SEPA_IBAN_getBIC, ZEND_ACC_PUBLIC|ZEND_ACC_STATIC)
	ZEND_ME(SEPA, IBAN_check, arginfo_class_SEPA_IBAN_check, ZEND_ACC_PUBLIC|ZEND_ACC_STATIC)
	ZEND_ME(SEPA, BIC_getBankName, arginfo_class_SEPA_BIC_getBankName, ZEND_ACC_PUBLIC|ZEND_ACC_STATIC)
	ZEND_ME(SEPA, BIC_getBankFlags, arginfo_class_SEPA_BIC_getBankFlags, ZEND_ACC_PUBLIC|ZEND_ACC_STATIC)
	ZEND_FE_END
};


static const zend_function_entry class_SEPAException_methods[] = {
	ZEND_FE_END
};


static const zend_function_entry class_SEPAStatementParser_methods[] = {
	ZEND_ME(SEPAStatementParser, __construct, arginfo_class_SEPAStatementParser___construct, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPAStatementParser, load, arginfo_class_SEPAStatementParser_load, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPAStatementParser, getStatements, arginfo_class_SEPAStatementParser_getStatements, ZEND_ACC_PUBLIC)
	ZEND_FE_END
};

static void register_sepa_symbols(int module_number)
{
	REGISTER_LONG_CONSTANT("SEPA_DDTYPE_CORE", 0, CONST_PERSISTENT | CONST_CS);
	REGISTER_LONG_CONSTANT("SEPA_DDTYPE_COR1", 1, CONST_PERSISTENT | CONST_CS);
	REGISTER_LONG_CONSTANT("SEPA_DDTYPE_B2B", 2, CONST_PERSISTENT | CONST_CS);
	REGISTER_LONG_CONSTANT("SEPA_MSGTYPE_DDI", 1, CONST_PERSISTENT | CONST_CS);
	REGISTER_LONG_CONSTANT("SEPA_MSGTYPE_CTI", 2, CONST_PERSISTENT | CONST_CS);
	REGISTER_LONG_CONSTANT("SEPA_INIT_RULEBOOK", 3, CONST_PERSISTENT | CONST_CS);
	REGISTER_LONG_CONSTANT("SEPA_SCL_SCT", 1, CONST_PERSISTENT | CONST_CS);
	REGISTER_LONG_CONSTANT("SEPA_SCL_SDD", 2, CONST_PERSISTENT | CONST_CS);
	REGISTER_LONG_CONSTANT("SEPA_SCL_COR1", 4, CONST_PERSISTENT | CONST_CS);
	REGISTER_LONG_CONSTANT("SEPA_SCL_B2B", 8, CONST_PERSISTENT | CONST_CS);
	REGISTER_LONG_CONSTANT("SEPA_STMT_FORMAT_MT940", 1, CONST_PERSISTENT | CONST_CS);
}

static zend_class_entry *register_class_SEPA(void)
{
	zend_class_entry ce, *class_entry;

	INIT_CLASS_ENTRY(ce, "SEPA", class_SEPA_methods);
	class_entry = zend_register_internal_class_ex(&ce, NULL);
#if (PHP_VERSION_ID >= 80100)
	class_entry->ce_flags |= ZEND_ACC_NOT_SERIALIZABLE;
#endif

	return class_entry;
}

static zend_class_entry *register_class_SEPAException(zend_class_entry *class_entry_Exception)
{
	zend_class_entry ce, *class_entry;

	INIT_CLASS_ENTRY(ce, "SEPAException", class_SEPAException_methods);
	class_entry = zend_register_internal_class_ex(&ce, class_entry_Exception);

	return class_entry;
}

static zend_class_entry *register_class_SEPAStatementParser(void)
{
	zend_class_entry ce, *class_entry;

	INIT_CLASS_ENTRY(ce, "SEPAStatementParser", class_SEPAStatementParser_methods);
	class_entry = zend_register_internal_class_ex(&ce, NULL);
#if (PHP_VERSION_ID >= 80100)
	class_entry->ce_flags |= ZEND_ACC_NOT_SERIALIZABLE;
#endif

	return class_entry;
}
