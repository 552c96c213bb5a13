/* This is a generated file, edit the .stub.php file instead.
 * Stub hash: 9814d7cbc2129904952626beadfac7e5a0bb7ab6 */

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAMessage___construct, 0, 0, 1)
	ZEND_ARG_INFO(0, type)
	ZEND_ARG_INFO(0, rulebook)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAMessage_setRulebook, 0, 0, 1)
	ZEND_ARG_INFO(0, rulebook)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAMessage_set, 0, 0, 2)
	ZEND_ARG_INFO(0, key)
	ZEND_ARG_INFO(0, value)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAMessage_setIBAN, 0, 0, 1)
	ZEND_ARG_INFO(0, iban)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAMessage_setBIC, 0, 0, 1)
	ZEND_ARG_INFO(0, bic)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAMessage_setName, 0, 0, 1)
	ZEND_ARG_INFO(0, name)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAMessage_setCreditorIdentifier, 0, 0, 1)
	ZEND_ARG_INFO(0, identifier)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAMessage_setDate, 0, 0, 1)
	ZEND_ARG_INFO(0, date)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAMessage_setDDType, 0, 0, 1)
	ZEND_ARG_INFO(0, type)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAMessage_setBatchBooking, 0, 0, 1)
	ZEND_ARG_INFO(0, batch)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAMessage_setMessageId, 0, 0, 1)
	ZEND_ARG_INFO(0, id)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAMessage_test, 0, 0, 1)
	ZEND_ARG_INFO(0, payment)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAMessage_addAll, 0, 0, 1)
	ZEND_ARG_INFO(0, payments)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAMessage_getTotals, 0, 0, 0)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAMessage_save, 0, 0, 1)
	ZEND_ARG_INFO(0, filename)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAStatementReader_loadString, 0, 0, 2)
	ZEND_ARG_INFO(0, format)
	ZEND_ARG_INFO(0, data)
ZEND_END_ARG_INFO()

#define arginfo_class_SEPAStatementReader_getBookings arginfo_class_SEPAMessage_getTotals

#define arginfo_class_SEPAStatementReader_check arginfo_class_SEPAMessage_getTotals

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAText_convert, 0, 0, 1)
	ZEND_ARG_INFO(0, text)
	ZEND_ARG_INFO(0, mode)
	ZEND_ARG_INFO(0, limit)
	ZEND_ARG_INFO(1, report)
ZEND_END_ARG_INFO()

#define arginfo_class_SEPACheck_iban arginfo_class_SEPAMessage_setIBAN

#define arginfo_class_SEPACheck_bic arginfo_class_SEPAMessage_setBIC

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPACheck_account, 0, 0, 2)
	ZEND_ARG_INFO(0, account)
	ZEND_ARG_INFO(0, bankCode)
ZEND_END_ARG_INFO()

#define arginfo_class_SEPACheck_creditorIdentifier arginfo_class_SEPAMessage_setCreditorIdentifier

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPACheck_reference, 0, 0, 1)
	ZEND_ARG_INFO(0, reference)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPACheck_normalise, 0, 0, 1)
	ZEND_ARG_INFO(0, text)
ZEND_END_ARG_INFO()

#define arginfo_class_SEPACheck_suggest arginfo_class_SEPAMessage_setIBAN

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPACheck_convert, 0, 0, 2)
	ZEND_ARG_INFO(0, bankCode)
	ZEND_ARG_INFO(0, account)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPACheck_bank, 0, 0, 1)
	ZEND_ARG_INFO(0, ibanOrBicOrCode)
	ZEND_ARG_INFO(0, country)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPACheck_dataDate, 0, 0, 0)
	ZEND_ARG_INFO(0, country)
ZEND_END_ARG_INFO()

#define arginfo_class_SEPAReport___construct arginfo_class_SEPAMessage_getTotals

#define arginfo_class_SEPAReport_load arginfo_class_SEPAMessage_save

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAReport_loadString, 0, 0, 1)
	ZEND_ARG_INFO(0, data)
ZEND_END_ARG_INFO()

#define arginfo_class_SEPAReport_getItems arginfo_class_SEPAMessage_getTotals

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAReport_match, 0, 0, 1)
	ZEND_ARG_INFO(0, endToEndId)
ZEND_END_ARG_INFO()

ZEND_BEGIN_ARG_INFO_EX(arginfo_class_SEPAReport_reasonText, 0, 0, 1)
	ZEND_ARG_INFO(0, code)
ZEND_END_ARG_INFO()


ZEND_METHOD(SEPAMessage, __construct);
ZEND_METHOD(SEPAMessage, setRulebook);
ZEND_METHOD(SEPAMessage, set);
ZEND_METHOD(SEPA, setIBAN);
ZEND_METHOD(SEPA, setBIC);
ZEND_METHOD(SEPA, setName);
ZEND_METHOD(SEPA, setCreditorIdentifier);
ZEND_METHOD(SEPA, setDate);
ZEND_METHOD(SEPA, setDDType);
ZEND_METHOD(SEPA, setBatchBooking);
ZEND_METHOD(SEPA, setMessageId);
ZEND_METHOD(SEPAMessage, test);
ZEND_METHOD(SEPAMessage, addAll);
ZEND_METHOD(SEPAMessage, getTotals);
ZEND_METHOD(SEPAMessage, save);
ZEND_METHOD(SEPAStatementReader, loadString);
ZEND_METHOD(SEPAStatementReader, getBookings);
ZEND_METHOD(SEPAStatementReader, check);
ZEND_METHOD(SEPAText, convert);
ZEND_METHOD(SEPACheck, iban);
ZEND_METHOD(SEPACheck, bic);
ZEND_METHOD(SEPACheck, account);
ZEND_METHOD(SEPACheck, creditorIdentifier);
ZEND_METHOD(SEPACheck, reference);
ZEND_METHOD(SEPACheck, normalise);
ZEND_METHOD(SEPACheck, suggest);
ZEND_METHOD(SEPACheck, convert);
ZEND_METHOD(SEPACheck, bank);
ZEND_METHOD(SEPACheck, dataDate);
ZEND_METHOD(SEPAReport, __construct);
ZEND_METHOD(SEPAReport, load);
ZEND_METHOD(SEPAReport, loadString);
ZEND_METHOD(SEPAReport, getItems);
ZEND_METHOD(SEPAReport, match);
ZEND_METHOD(SEPAReport, reasonText);


static const zend_function_entry class_SEPAMessage_methods[] = {
	ZEND_ME(SEPAMessage, __construct, arginfo_class_SEPAMessage___construct, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPAMessage, setRulebook, arginfo_class_SEPAMessage_setRulebook, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPAMessage, set, arginfo_class_SEPAMessage_set, ZEND_ACC_PUBLIC)
	ZEND_MALIAS(SEPA, setIBAN, setIBAN, arginfo_class_SEPAMessage_setIBAN, ZEND_ACC_PUBLIC)
	ZEND_MALIAS(SEPA, setBIC, setBIC, arginfo_class_SEPAMessage_setBIC, ZEND_ACC_PUBLIC)
	ZEND_MALIAS(SEPA, setName, setName, arginfo_class_SEPAMessage_setName, ZEND_ACC_PUBLIC)
	ZEND_MALIAS(SEPA, setCreditorIdentifier, setCreditorIdentifier, arginfo_class_SEPAMessage_setCreditorIdentifier, ZEND_ACC_PUBLIC)
	ZEND_MALIAS(SEPA, setDate, setDate, arginfo_class_SEPAMessage_setDate, ZEND_ACC_PUBLIC)
	ZEND_MALIAS(SEPA, setDDType, setDDType, arginfo_class_SEPAMessage_setDDType, ZEND_ACC_PUBLIC)
	ZEND_MALIAS(SEPA, setBatchBooking, setBatchBooking, arginfo_class_SEPAMessage_setBatchBooking, ZEND_ACC_PUBLIC)
	ZEND_MALIAS(SEPA, setMessageId, setMessageId, arginfo_class_SEPAMessage_setMessageId, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPAMessage, test, arginfo_class_SEPAMessage_test, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPAMessage, addAll, arginfo_class_SEPAMessage_addAll, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPAMessage, getTotals, arginfo_class_SEPAMessage_getTotals, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPAMessage, save, arginfo_class_SEPAMessage_save, ZEND_ACC_PUBLIC)
	ZEND_FE_END
};


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


static const zend_function_entry class_SEPACheck_methods[] = {
	ZEND_ME(SEPACheck, iban, arginfo_class_SEPACheck_iban, ZEND_ACC_PUBLIC|ZEND_ACC_STATIC)
	ZEND_ME(SEPACheck, bic, arginfo_class_SEPACheck_bic, ZEND_ACC_PUBLIC|ZEND_ACC_STATIC)
	ZEND_ME(SEPACheck, account, arginfo_class_SEPACheck_account, ZEND_ACC_PUBLIC|ZEND_ACC_STATIC)
	ZEND_ME(SEPACheck, creditorIdentifier, arginfo_class_SEPACheck_creditorIdentifier, ZEND_ACC_PUBLIC|ZEND_ACC_STATIC)
	ZEND_ME(SEPACheck, reference, arginfo_class_SEPACheck_reference, ZEND_ACC_PUBLIC|ZEND_ACC_STATIC)
	ZEND_ME(SEPACheck, normalise, arginfo_class_SEPACheck_normalise, ZEND_ACC_PUBLIC|ZEND_ACC_STATIC)
	ZEND_ME(SEPACheck, suggest, arginfo_class_SEPACheck_suggest, ZEND_ACC_PUBLIC|ZEND_ACC_STATIC)
	ZEND_ME(SEPACheck, convert, arginfo_class_SEPACheck_convert, ZEND_ACC_PUBLIC|ZEND_ACC_STATIC)
	ZEND_ME(SEPACheck, bank, arginfo_class_SEPACheck_bank, ZEND_ACC_PUBLIC|ZEND_ACC_STATIC)
	ZEND_ME(SEPACheck, dataDate, arginfo_class_SEPACheck_dataDate, ZEND_ACC_PUBLIC|ZEND_ACC_STATIC)
	ZEND_FE_END
};


static const zend_function_entry class_SEPAReport_methods[] = {
	ZEND_ME(SEPAReport, __construct, arginfo_class_SEPAReport___construct, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPAReport, load, arginfo_class_SEPAReport_load, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPAReport, loadString, arginfo_class_SEPAReport_loadString, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPAReport, getItems, arginfo_class_SEPAReport_getItems, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPAReport, match, arginfo_class_SEPAReport_match, ZEND_ACC_PUBLIC)
	ZEND_ME(SEPAReport, reasonText, arginfo_class_SEPAReport_reasonText, ZEND_ACC_PUBLIC|ZEND_ACC_STATIC)
	ZEND_FE_END
};

static void register_velmora_symbols(int module_number)
{
	REGISTER_LONG_CONSTANT("SEPA_STMT_FORMAT_CAMT", 53, CONST_PERSISTENT | CONST_CS);
	REGISTER_LONG_CONSTANT("SEPA_STMT_FORMAT_MT940_TOLERANT", 940, CONST_PERSISTENT | CONST_CS);
	REGISTER_LONG_CONSTANT("SEPA_TEXT_KEEP", 0, CONST_PERSISTENT | CONST_CS);
	REGISTER_LONG_CONSTANT("SEPA_TEXT_BASIC", 1, CONST_PERSISTENT | CONST_CS);
}

static zend_class_entry *register_class_SEPAMessage(zend_class_entry *class_entry_SEPA)
{
	zend_class_entry ce, *class_entry;

	INIT_CLASS_ENTRY(ce, "SEPAMessage", class_SEPAMessage_methods);
	class_entry = zend_register_internal_class_ex(&ce, class_entry_SEPA);
#if (PHP_VERSION_ID >= 80100)
	class_entry->ce_flags |= ZEND_ACC_NOT_SERIALIZABLE;
#endif

	return class_entry;
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

static zend_class_entry *register_class_SEPACheck(void)
{
	zend_class_entry ce, *class_entry;

	INIT_CLASS_ENTRY(ce, "SEPACheck", class_SEPACheck_methods);
	class_entry = zend_register_internal_class_ex(&ce, NULL);
	class_entry->ce_flags |= ZEND_ACC_FINAL;

	return class_entry;
}

static zend_class_entry *register_class_SEPAReport(void)
{
	zend_class_entry ce, *class_entry;

	INIT_CLASS_ENTRY(ce, "SEPAReport", class_SEPAReport_methods);
	class_entry = zend_register_internal_class_ex(&ce, NULL);
#if (PHP_VERSION_ID >= 80100)
	class_entry->ce_flags |= ZEND_ACC_FINAL|ZEND_ACC_NOT_SERIALIZABLE;
#elif (PHP_VERSION_ID >= 70000)
	class_entry->ce_flags |= ZEND_ACC_FINAL;
#endif

	return class_entry;
}
