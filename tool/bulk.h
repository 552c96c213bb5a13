// Questions asked of values: on the command line, of lines, or of a column of a table.
#pragma once

#include "failure.h"
#include "output.h"

namespace velmora::tool {

constexpr std::size_t most_inputs = 2;

struct Task {
    std::span<const Column> echo;    // leading columns of the answer that repeat the input
    std::span<const Column> columns; // the others
    std::size_t inputs;              // values that one question takes
    const char* operands;            // how they are called
    // Writes the cells of `columns`; whether the values are good.
    bool (*answer)(void* context, const Text* inputs, Output& out);
    void* context;
    bool line_for_line = false;   // the operands are files, and each line gets one, whatever the options say
    const char* column = nullptr; // the column to look at; without it the options name it
    bool (*wants)(void* context, const Text* inputs) = nullptr; // false leaves the row out
};

Exit run_task(const Options& options, const Task& task, std::span<char*> operands);

} // namespace velmora::tool
