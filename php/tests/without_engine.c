/* Asks the shared object for its PHP module in a process that is no PHP, and prints the build identifier by
 * which PHP would refuse it.
 *
 *   without_engine LIBRARY
 *
 * Compiled with AN_ENGINE it has one of the engine's names, as a PHP of another version would. */
#include <php.h>

#include <dlfcn.h>

#ifdef AN_ENGINE
void object_properties_init(zend_object* object, zend_class_entry* entry) {
    (void)object;
    (void)entry;
}
#endif

int main(int argc, char** argv) {
    void* library = argc == 2 ? dlopen(argv[1], RTLD_NOW) : NULL;
    if (!library) return 2;
    zend_module_entry* (*get_module)(void);
    *(void**)&get_module = dlsym(library, "get_module");
    puts(get_module()->build_id);
    return 0;
}
