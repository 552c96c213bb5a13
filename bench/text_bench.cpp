// Texts converted to what banks take: 140 characters and a megabyte of plain ASCII beside one copy, and names
// with letters of many languages.
#include <cstring>
#include <string>

#include "velmora.h"
#include "workload.h"

namespace {

std::string repeated(const char* text, std::size_t size) {
    std::string all;
    while (all.size() < size)
        all += text;
    return all;
}

void convert(benchmark::State& state, const char* words, std::uint32_t mode) {
    const std::string text = repeated(words, static_cast<std::size_t>(state.range(0)));
    std::string out(text.size() * 4, '\0');
    for (auto _ : state)
        benchmark::DoNotOptimize(sepa_text_convert(text.c_str(), mode, 0, out.data(), out.size(), nullptr));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void copy(benchmark::State& state) {
    const std::string text = repeated("Rechnung 4711 ", static_cast<std::size_t>(state.range(0)));
    std::string out(text.size(), '\0');
    for (auto _ : state) {
        std::memcpy(out.data(), text.data(), text.size());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void ascii(benchmark::State& state) {
    convert(state, "Rechnung 4711 ", SEPA_TEXT_KEEP);
}

void names(benchmark::State& state) {
    convert(state, "Müller & Söhne, Łódź, Παπαδόπουλος, Щерев. ", SEPA_TEXT_BASIC);
}

WORKLOAD("text_convert/ascii", ascii)->Arg(140)->Arg(1 << 20);
WORKLOAD("text_convert/ascii/memcpy", copy)->Arg(140)->Arg(1 << 20);
WORKLOAD("text_convert/names", names)->Arg(1 << 20);

} // namespace
