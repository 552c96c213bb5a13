/* Files that appear whole or not at all. */
#pragma once

#include <stddef.h>

/* Writes a file, in place of the one that may be there, under PHP's rules for paths. Null, or the reason why
 * nothing has changed. */
const char* write_whole_file(const char* path, const char* data, size_t size);
