/* The PHP engine as the binding sees it: its headers, and everything in which the engine versions 7.2 to 8.6
 * differ. No other file written by hand asks for the version. */
#pragma once

/* One shared object serves as PHP's module and as a library on machines without PHP: so every reference to
 * the engine is a weak one, which may stay empty. All headers of all versions give what the engine exports
 * this attribute; here it says "weak" as well. */
#define visibility(kind) visibility(kind), weak

#include <php.h>

#include <Zend/zend_exceptions.h>
#include <Zend/zend_inheritance.h>
#include <Zend/zend_interfaces.h>
#include <ext/spl/spl_iterators.h>
#include <ext/standard/info.h>

#undef visibility

/* The tables generated from sepa.stub.php and velmora.stub.php. */
#if PHP_VERSION_ID >= 80000
#define ENGINE_ARGINFO "sepa_arginfo.h"
#define ENGINE_VELMORA_ARGINFO "velmora_arginfo.h"
#else
#define ENGINE_ARGINFO "sepa_legacy_arginfo.h"
#define ENGINE_VELMORA_ARGINFO "velmora_legacy_arginfo.h"
#endif

/* Moves a value into a variable passed by reference. Typed references (7.4) convert it or throw. */
static inline void engine_assign(zval* variable, zval* value) {
    if (!Z_ISREF_P(variable)) { /* a by-value call: nobody would see it */
        zval_ptr_dtor(value);
        return;
    }
#ifdef ZEND_TRY_ASSIGN_REF_TMP
    ZEND_TRY_ASSIGN_REF_TMP(variable, value);
#else
    zval old;
    variable = Z_REFVAL_P(variable);
    ZVAL_COPY_VALUE(&old, variable);
    ZVAL_COPY_VALUE(variable, value);
    zval_ptr_dtor(&old);
#endif
}

/* Lets a method of this class return what walks an object: a loop's iterator as an object of its own, which
 * before 8.0 nobody but the loop can have. */
static inline void engine_let_walk(zend_class_entry* entry,
                                   zend_object_iterator* (*get_iterator)(zend_class_entry*, zval*, int)) {
    entry->get_iterator = get_iterator;
#if PHP_VERSION_ID < 80000
    zend_class_implements(entry, 1, zend_ce_traversable);
#endif
}

static inline void engine_return_walk(zval* return_value, zval* object) {
#if PHP_VERSION_ID >= 80000
    zend_create_internal_iterator_zval(return_value, object);
#else
    ZVAL_COPY(return_value, object);
#endif
}

/* Registers a class below another. Its methods may return something else than those of the same name above
 * it: the engine's comparison of the two, which would warn about that, is left out. */
static inline zend_class_entry* engine_register_below(zend_class_entry* (*register_class)(zend_class_entry*),
                                                      zend_class_entry* parent) {
#if PHP_VERSION_ID >= 80100
    zend_class_entry* entry = register_class(NULL);
    zend_do_inheritance_ex(entry, parent, true);
    return entry;
#else
    return register_class(parent);
#endif
}

/* The engine's own complaint about an only argument that a loop cannot walk. */
static inline void engine_refuse_argument(const zval* argument) {
#if PHP_VERSION_ID >= 80000
    zend_argument_type_error(1, "must be of type Traversable|array, %s given", zend_zval_type_name(argument));
#else
    zend_type_error("Argument 1 must be iterable, %s given", zend_zval_type_name((zval*)argument));
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
