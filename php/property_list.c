#include "property_list.h"

static void allocate_list(property_list* list, uint32_t entries) {
    size_t pair_size = 2 * sizeof *list->pairs;
    size_t entry_size = pair_size + sizeof *list->values + sizeof *list->numeric_keys;
    list->pairs = safe_emalloc(entries, entry_size, pair_size);
    list->values = (zend_string**)(list->pairs + 2 * ((size_t)entries + 1));
    list->numeric_keys = (char(*)[NUMERIC_KEY_SIZE])(list->values + entries);
    list->count = 0;
}

void release_list(property_list* list) {
    for (uint32_t i = 0; i < list->count; i++)
        zend_string_release(list->values[i]);
    efree(list->pairs);
}

/* Converting a value may run the script's own code (__toString(), an error handler). It cannot change the
 * array, which is held, but a variable that the array refers to: so the list holds every value itself. */
const char* fill_list(property_list* list, HashTable* properties) {
    zend_ulong number;
    zend_string* name;
    zval* value;
    allocate_list(list, zend_hash_num_elements(properties));
    ZEND_HASH_FOREACH_KEY_VAL_IND(properties, number, name, value) {
        uint32_t i = list->count;
        const char* key = name ? ZSTR_VAL(name) : list->numeric_keys[i];
        if (!name) {
            /* Deliberate: eight characters are kept of longer numbers, as the texts of refusals show them. */
            snprintf(list->numeric_keys[i], NUMERIC_KEY_SIZE - 1, ZEND_LONG_FMT, (zend_long)number);
        }
        zend_string* text = zval_get_string(value);
        list->values[i] = text;
        list->pairs[2 * i] = key;
        list->pairs[2 * i + 1] = ZSTR_VAL(text);
        list->count = i + 1;
        if (UNEXPECTED(EG(exception))) return NULL;
        if ((name && has_zero_byte(key, ZSTR_LEN(name))) || has_zero_byte(ZSTR_VAL(text), ZSTR_LEN(text)))
            return zero_byte_reason;
    }
    ZEND_HASH_FOREACH_END();
    list->pairs[2 * list->count] = NULL;
    list->pairs[2 * list->count + 1] = NULL;
    return NULL;
}
