#include "bank/pattern.h"

#include <dlfcn.h>
#include <locale.h>

#include "velmora.h"

int (*libc_regcomp)(regex_t*, const char*, int) = nullptr;
int (*libc_regexec)(const regex_t*, const char*, size_t, regmatch_t*, int) = nullptr;
void (*libc_regfree)(regex_t*) = nullptr;

void libc_regex_init(void) {
    if (libc_regcomp != nullptr) return;
    // Only the C library that is loaded already: a second one would bring a second state.
    void* libc = dlopen("libc.so.6", RTLD_LAZY | RTLD_NOLOAD);
    if (libc == nullptr) return;
    libc_regcomp = reinterpret_cast<decltype(libc_regcomp)>(dlsym(libc, "regcomp"));
    libc_regexec = reinterpret_cast<decltype(libc_regexec)>(dlsym(libc, "regexec"));
    libc_regfree = reinterpret_cast<decltype(libc_regfree)>(dlsym(libc, "regfree"));
    dlclose(libc);
}

namespace velmora {

bool pattern_functions_ready() {
    libc_regex_init();
    return libc_regcomp != nullptr && libc_regexec != nullptr;
}

bool compile_pattern(regex_t* pattern, const char* text) {
    // In the C locale, whatever the process has chosen: "[A-Z]" means the same everywhere then, and libc
    // matches bytes instead of wide characters, several times as fast.
    const locale_t c_locale = newlocale(LC_ALL_MASK, "C", nullptr);
    const locale_t callers_locale = uselocale(c_locale);
    const bool compiled = libc_regcomp(pattern, text, REG_EXTENDED) == 0;
    uselocale(callers_locale);
    if (c_locale != nullptr) freelocale(c_locale);
    return compiled;
}

bool pattern_matches(const regex_t* pattern, const char* text) {
    return libc_regexec != nullptr && libc_regexec(pattern, text, 0, nullptr, 0) == 0;
}

void release_pattern(regex_t* pattern) {
    if (libc_regfree != nullptr) libc_regfree(pattern);
}

} // namespace velmora
