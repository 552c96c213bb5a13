#include "bank/regex.h"

int (*libc_regcomp)(regex_t*, const char*, int) = nullptr;
int (*libc_regexec)(const regex_t*, const char*, size_t, regmatch_t*, int) = nullptr;
void (*libc_regfree)(regex_t*) = nullptr;

// Of several threads one fills a pointer, and who comes back from here can read all three without a race.
template <typename Function>
static void fill(Function*& pointer, Function* function) {
    Function* expected = nullptr;
    __atomic_compare_exchange_n(&pointer, &expected, function, false, __ATOMIC_ACQ_REL, __ATOMIC_ACQUIRE);
}

void libc_regex_init(void) {
    if (__atomic_load_n(&libc_regcomp, __ATOMIC_ACQUIRE) != nullptr) return;
    fill(libc_regexec, &regexec);
    fill(libc_regfree, &regfree);
    fill(libc_regcomp, &regcomp); // last: it is the one that is looked at
}
