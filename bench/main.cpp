// The benchmarks, one program. script/bench runs it; see workload.h for the names.
//
//   velmora_bench --benchmark_filter=iban_check    only these workloads
//
// Peers, in the same run: libktoblzcheck for accounts and IBANs, libxml2's text writer for documents, and
// plain limits (copying the document, a bare modulo-97 loop).
#include <benchmark/benchmark.h>

#include <fstream>
#include <string>

#include "velmora.h"

namespace {

std::string processor() {
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);)
        if (line.rfind("model name", 0) == 0) return line.substr(line.find(':') + 2);
    return "unknown";
}

} // namespace

int main(int argc, char** argv) {
    benchmark::AddCustomContext("processor", processor());
    benchmark::AddCustomContext("compiler", __VERSION__);
    benchmark::AddCustomContext("libvelmora", VELMORA_VERSION);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
