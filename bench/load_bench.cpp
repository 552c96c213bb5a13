// Loading the library into a fresh process.
#include <cstdio>
#include <string>

#include "workload.h"

namespace {

// The program measures its dlopen itself, so that starting a process does not count.
void load(benchmark::State& state) {
    for (auto _ : state) {
        FILE* process = popen(VELMORA_LOAD_LIBRARY " " VELMORA_LIBRARY, "r");
        long nanoseconds = 0;
        const bool measured = process != nullptr && std::fscanf(process, "%ld", &nanoseconds) == 1;
        if (process != nullptr) pclose(process);
        if (!measured) return state.SkipWithError("not loaded");
        state.SetIterationTime(static_cast<double>(nanoseconds) / 1e9);
    }
}

BENCHMARK(load)->Name("load")->UseManualTime()->Iterations(200);

} // namespace
