/*
 * Loads the shared object into a plain C program and does one check with it.
 *
 *   load_library LIBRARY    prints the nanoseconds that dlopen took
 */
#include <dlfcn.h>
#include <stdio.h>
#include <time.h>

typedef int (*iban_check_t)(const char* iban);

int main(int argc, char** argv) {
    struct timespec before, after;
    iban_check_t check;
    void* library;
    if (argc != 2) return 2;
    clock_gettime(CLOCK_MONOTONIC, &before);
    library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    clock_gettime(CLOCK_MONOTONIC, &after);
    if (!library) {
        fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    *(void**)&check = dlsym(library, "sepa_iban_check");
    if (!check || check("AT611904300234573201") != 1 || check("AT611904300234573202") != -1) return 1;
    printf("%ld\n", (after.tv_sec - before.tv_sec) * 1000000000L + (after.tv_nsec - before.tv_nsec));
    return dlclose(library);
}
