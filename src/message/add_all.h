/* Several payments at once: all of them or none. Not exported; for the PHP binding, which is C. */
#pragma once

#include <stddef.h>
#include <velmora.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Like sepa_add() for each. When one is refused or memory runs out nothing has changed, and `refused` gets
 * its number, from 0 on. */
int velmora_add_all(sepa_t* message, const char* const* const* payments, size_t count, size_t* refused);

#ifdef __cplusplus
}
#endif
