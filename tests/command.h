// Running other programs, which the tests of the finished library need.
#pragma once

#include <cstdio>
#include <string>
#include <sys/wait.h>

struct CommandResult {
    int status; // exit status, -1 when the program did not end by itself
    std::string output;
};

// Runs a shell command; its output is what it writes to stdout and stderr.
inline CommandResult run(const std::string& command) {
    CommandResult result = {-1, ""};
    FILE* pipe = popen(("(" + command + ") 2>&1").c_str(), "r");
    if (pipe == nullptr) return result;
    char chunk[4096];
    while (const std::size_t length = std::fread(chunk, 1, sizeof chunk, pipe))
        result.output.append(chunk, length);
    const int status = pclose(pipe);
    if (WIFEXITED(status)) result.status = WEXITSTATUS(status);
    return result;
}
