/* What the files of the PHP binding share. */
#pragma once

#include "engine.h"

#include <stdbool.h>

#include <velmora.h>

/* The globals of the module, exported under these names. */
extern zend_class_entry* sepa_ce;
extern zend_class_entry* sepa_ce_exception;
extern zend_object_handlers sepa_object_handlers;
extern zend_class_entry* sepaStP_ce;
extern zend_object_handlers sepaStP_object_handlers;

/* Code of the exceptions that the binding's own checks throw; what the library reports carries 0. */
enum { BINDING_ERROR = 42 };

/* Complete a class that has just been registered with its methods. */
void sepa_class_init(zend_class_entry* entry);
void sepaStP_init(zend_class_entry* entry);
void statement_reader_init(zend_class_entry* entry);
void check_class_init(void);
void report_class_init(zend_class_entry* entry);

/* The second module, which the first one starts. */
extern zend_module_entry velmora_module_entry;

/* An object with a handle of the library's: a message, a statement parser. */
typedef struct {
    void* handle; /* null until the constructor succeeds */
    zend_object std;
} bound_object;

static inline bound_object* bound_object_of(zend_object* std) {
    return (bound_object*)((char*)std - offsetof(bound_object, std));
}

/* The object whose method runs. */
static inline bound_object* this_object(const zend_execute_data* execute_data) {
    return bound_object_of(Z_OBJ(execute_data->This));
}

/* Completes a class of such objects, which can be neither cloned nor serialised. `create` makes them by
 * create_bound_object() with the same handlers; `release` frees the handle, if the object's end does. */
void bind_class(zend_class_entry* entry, zend_object_handlers* handlers,
                zend_object* (*create)(zend_class_entry*), void (*release)(zend_object*));
zend_object* create_bound_object(zend_class_entry* entry, const zend_object_handlers* handlers);

/* Throws a SEPAException with code 0. */
void throw_reason(const char* reason);

/* Texts of the library end at their first zero byte: the rest of such a text would be checked by nobody and
 * yet stay in the script's variable. */
static inline bool has_zero_byte(const char* text, size_t length) {
    return memchr(text, 0, length) != NULL;
}

extern const char zero_byte_reason[];

/* Whether the text has one; an exception is thrown then. */
bool throw_for_zero_byte(const char* text, size_t length);

/* Puts a new message into an object, in place of the one that it may have, or throws. Without a rulebook it
 * follows the process. */
void construct_message(bound_object* object, zend_long type, const char* rulebook);

/* The message of a method's object; null and an exception when its constructor did not run. */
sepa_t* message_or_throw(zend_execute_data* execute_data);
