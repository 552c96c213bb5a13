#include "bank/regex.h"

int (*libc_regcomp)(regex_t*, const char*, int) = nullptr;
int (*libc_regexec)(const regex_t*, const char*, size_t, regmatch_t*, int) = nullptr;
void (*libc_regfree)(regex_t*) = nullptr;

void libc_regex_init(void) {
    if (__atomic_load_n(&libc_regcomp, __ATOMIC_ACQUIRE) != nullptr) return;
    __atomic_store_n(&libc_regexec, &regexec, __ATOMIC_RELAXED);
    __atomic_store_n(&libc_regfree, &regfree, __ATOMIC_RELAXED);
    // Last: who finds it filled finds the others, too.
    __atomic_store_n(&libc_regcomp, &regcomp, __ATOMIC_RELEASE);
}
