/* The PHP engine as the binding sees it: its headers, and everything in which the engine versions 7.2 to 8.6
 * differ. No other file written by hand asks for the version. */
#pragma once

/* One shared object serves as PHP's module and as a library on machines without PHP: so every reference to
 * the engine is a weak one, which may stay empty. All headers of all versions give what the engine exports
 * this attribute; here it says "weak" as well. */
#define visibility(kind) visibility(kind), weak

#include <php.h>

#include <Zend/zend_exceptions.h>
#include <Zend/zend_interfaces.h>
#include <ext/standard/info.h>

#undef visibility

/* The tables generated from sepa.stub.php. */
#if PHP_VERSION_ID >= 80000
#define ENGINE_ARGINFO "sepa_arginfo.h"
#else
#define ENGINE_ARGINFO "sepa_legacy_arginfo.h"
#endif

/* Writes a number into a variable passed by reference. Typed references (7.4) convert it or throw. */
static inline void engine_assign_number(zval* variable, zend_long number) {
    if (!Z_ISREF_P(variable)) return; /* a by-value call: nobody would see it */
#ifdef ZEND_TRY_ASSIGN_REF_LONG
    ZEND_TRY_ASSIGN_REF_LONG(variable, number);
#else
    zval old;
    variable = Z_REFVAL_P(variable);
    ZVAL_COPY_VALUE(&old, variable);
    ZVAL_LONG(variable, number);
    zval_ptr_dtor(&old);
#endif
}

/* Forbids serialisation. From 8.1 on the generated registration sets the class flag for that. */
static inline void engine_forbid_serialisation(zend_class_entry* entry) {
#ifdef ZEND_ACC_NOT_SERIALIZABLE
    (void)entry;
#else
    entry->serialize = zend_class_serialize_deny;
    entry->unserialize = zend_class_unserialize_deny;
#endif
}
