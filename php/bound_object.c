/* Objects that own a handle of the library, and how their methods fail. */
#include "binding.h"

zend_object* create_bound_object(zend_class_entry* entry, const zend_object_handlers* handlers) {
    bound_object* object = ecalloc(1, sizeof *object + zend_object_properties_size(entry));
    zend_object_std_init(&object->std, entry);
    object_properties_init(&object->std, entry);
    object->std.handlers = handlers;
    return &object->std;
}

void bind_class(zend_class_entry* entry, zend_object_handlers* handlers,
                zend_object* (*create)(zend_class_entry*), void (*release)(zend_object*)) {
    entry->create_object = create;
    engine_forbid_serialisation(entry);
    memcpy(handlers, zend_get_std_object_handlers(), sizeof *handlers);
    handlers->offset = offsetof(bound_object, std);
    if (release) handlers->free_obj = release;
    handlers->dtor_obj = zend_objects_destroy_object;
    handlers->clone_obj = NULL;
}

void throw_reason(const char* reason) {
    zend_throw_exception(sepa_ce_exception, reason, 0);
}

const char zero_byte_reason[] = "Text contains a zero byte";

bool throw_for_zero_byte(const char* text, size_t length) {
    if (EXPECTED(!has_zero_byte(text, length))) return false;
    throw_reason(zero_byte_reason);
    return true;
}
