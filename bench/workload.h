// How a workload enters the benchmark program.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdlib>

// With VELMORA_BENCH_ITERATIONS set a workload runs exactly so often, so that script/bench can count
// instructions.
inline void apply_iterations(benchmark::internal::Benchmark* workload) {
    if (const char* count = std::getenv("VELMORA_BENCH_ITERATIONS")) workload->Iterations(std::atol(count));
}

// Registers a function under a name. Names are "what/case" for the library and "what/case/PEER" for the same
// work done by others, so that a filter on "what/case" shows them side by side.
#define WORKLOAD(name, ...) BENCHMARK(__VA_ARGS__)->Name(name)->Apply(apply_iterations)
