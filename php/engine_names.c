/* References to the engine are weak, and a weak reference that finds nothing stays empty in silence. Before
 * PHP gets the module, this looks whether any did. It includes nothing of PHP and calls libc alone. */
#include "engine_names.h"

#include <link.h>
#include <stddef.h>
#include <stdio.h>
#include <string.h>

#define HIDDEN __attribute__((visibility("hidden")))

/* The linker's own names for what the shared object begins with and for the table that the dynamic linker
 * reads. */
extern const char image[] __asm__("__ehdr_start") HIDDEN;
extern const ElfW(Dyn) dynamic_entries[] __asm__("_DYNAMIC") HIDDEN;

typedef struct {
    unsigned bound;      /* names that the process has */
    const char* missing; /* one that it has not, or null */
} engine_state;

/* Addresses in the dynamic table: glibc has added where the object lies, musl has not. */
static const char* address_of(ElfW(Addr) value) {
    ElfW(Addr) start = (ElfW(Addr))image;
    return (const char*)(value < start ? start + value : value);
}

static int is_of_the_toolchain(const char* name) {
    return strncmp(name, "_ITM_", 5) == 0 || strcmp(name, "__gmon_start__") == 0 ||
           strcmp(name, "__cxa_finalize") == 0;
}

/* Looks at the references in one relocation table. Both kinds of entries begin as ElfW(Rel) does. */
static void look_at(engine_state* state, const ElfW(Addr) * tags, ElfW(Addr) table, size_t size,
                    size_t entry) {
    const ElfW(Sym)* symbols = (const ElfW(Sym)*)address_of(tags[DT_SYMTAB]);
    const char* names = address_of(tags[DT_STRTAB]);
    for (size_t at = 0; at < size; at += entry) {
        const ElfW(Rel)* reference = (const ElfW(Rel)*)(address_of(table) + at);
        const ElfW(Sym)* symbol = &symbols[reference->r_info >> (sizeof(void*) == 8 ? 32 : 8)];
        const char* name = names + symbol->st_name;
        if (symbol->st_shndx != SHN_UNDEF || symbol->st_info >> 4 != STB_WEAK || is_of_the_toolchain(name))
            continue;
        if (*(const ElfW(Addr)*)(image + reference->r_offset)) {
            state->bound++;
        } else {
            state->missing = name;
        }
    }
}

const char* engine_refusal(const char* build_id) {
    ElfW(Addr) tags[DT_NUM] = {0};
    for (const ElfW(Dyn)* entry = dynamic_entries; entry->d_tag != DT_NULL; entry++)
        if (entry->d_tag < DT_NUM) tags[entry->d_tag] = entry->d_un.d_ptr;

    engine_state state = {0, NULL};
    size_t rela = sizeof(ElfW(Rela)), rel = sizeof(ElfW(Rel));
    look_at(&state, tags, tags[DT_RELA], tags[DT_RELASZ], rela);
    look_at(&state, tags, tags[DT_REL], tags[DT_RELSZ], rel);
    look_at(&state, tags, tags[DT_JMPREL], tags[DT_PLTRELSZ], tags[DT_PLTREL] == DT_RELA ? rela : rel);
    if (!state.missing) return NULL;

    static char text[256];
    if (state.bound) {
        snprintf(text, sizeof text, "%s with %s, which this PHP lacks", build_id, state.missing);
    } else {
        snprintf(text, sizeof text,
                 "%s, but this file was loaded into the process before PHP, as a C library: "
                 "let PHP load a copy of it",
                 build_id);
    }
    return text;
}
