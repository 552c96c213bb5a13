// Compiled patterns, through the exported pointers to libc's pattern functions.
#pragma once

#include <regex.h>

namespace velmora {

// Resolves the functions if need be; false when they are not to be had.
bool pattern_functions_ready();

// Compiles an extended regular expression; the functions must be ready.
bool compile_pattern(regex_t* pattern, const char* text);

// Whether the whole text fits the pattern (the patterns are anchored).
bool pattern_matches(const regex_t* pattern, const char* text);

void release_pattern(regex_t* pattern);

} // namespace velmora
