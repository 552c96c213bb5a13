/* A payment as scripts write it, an array of properties, in the form that sepa_add() takes. */
#pragma once

#include "binding.h"

enum { NUMERIC_KEY_SIZE = 10 };

/* One allocation, beginning at pairs. */
typedef struct {
    const char** pairs;                     /* key, value, ..., null, null */
    zend_string** values;                   /* what the pairs' values point into */
    char (*numeric_keys)[NUMERIC_KEY_SIZE]; /* what the pairs' keys point into, where the array has numbers */
    uint32_t count;
} property_list;

/* Makes a list, which is to be released in any case; it points into the array, too, which somebody must hold.
 * Returns why the payment is refused. The list is not to be used then, nor after an exception, which the
 * script's own code may throw while a value becomes a text. */
const char* fill_list(property_list* list, HashTable* properties);

void release_list(property_list* list);
