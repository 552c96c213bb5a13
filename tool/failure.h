// How the tool ends, and what it says on the standard error output.
#pragma once

#include "text.h"

namespace velmora::tool {

enum class Exit : int {
    good = 0,
    refused = 1, // some items are invalid or refused; the output is complete
    usage = 2,   // wrong options or operands
    input = 3,   // unreadable or damaged input
    output = 4,  // output that could not be written
    memory = 5,  // out of memory
};

// The worse of two ends.
inline Exit worse(Exit a, Exit b) {
    return static_cast<int>(a) > static_cast<int>(b) ? a : b;
}

enum class Level { error, warning, note };

// What is wrong with one item of the input. Only the text is always there.
struct Finding {
    Text file = {};
    std::uint64_t line = 0;
    Text key = {};              // the column or property at fault
    int code = -1;              // of the library (SEPA_FINDING_), -1 without one
    std::int64_t position = -1; // in bytes
    Text text;
    Level level = Level::error;
};

// --errors json
void set_errors_json(bool json);
// FILE:LINE: KEY: text, or a JSON object, on the standard error output.
void report(const Finding& finding);

// Reports and ends the program. Files that were begun vanish.
[[noreturn]] void fail(Exit code, Text text);
[[noreturn]] void fail(Exit code, Text file, Text text);
// The same with the text of an errno.
[[noreturn]] void fail_errno(Exit code, Text file, int error);

// Writes everything, or ends the program with exit code 4.
void write_all(int fd, Text text, Text file = "standard output");

} // namespace velmora::tool
