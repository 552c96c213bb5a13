// The exported pointers to libc's pattern functions. The checks fill them and have no use for them.
#pragma once

#include "velmora.h"

namespace velmora {

// Deliberate: every check of an IBAN, a BIC or a structured address field does this; programs that call
// through the pointers rely on it.
inline void bind_libc_regex() {
    if (__atomic_load_n(&libc_regcomp, __ATOMIC_RELAXED) == nullptr) libc_regex_init();
}

} // namespace velmora
