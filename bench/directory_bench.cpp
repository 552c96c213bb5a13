// Lookups in the bank directory: by bank code, with and without a result block, and by BIC.
#include <cstdlib>
#include <iterator>

#include "velmora.h"
#include "workload.h"

namespace {

// Banks of several countries; the texts of their records have different lengths.
constexpr struct {
    const char* country;
    const char* bank_id;
} bank_codes[] = {
    {"DE", "37040044"}, {"DE", "10010010"}, {"DE", "50010517"}, {"DE", "25050180"},
    {"DE", "70150000"}, {"DE", "12030000"}, {"DE", "74161608"}, {"DE", "60050101"},
    {"AT", "34732"},    {"AT", "20111"},    {"CH", "30196"},    {"LI", "8800"},
};
constexpr const char* bics[] = {"COBADEFFXXX", "PBNKDEFFXXX", "GIBAATWWXXX", "AABAFI22XXX",
                                "COBADEFF",    "MARKDEFF",    "SPBAATWW",    "VRLLCHZZ"};

void bank_code(benchmark::State& state) {
    for (const auto& row : bank_codes)
        if (sepa_bankid_check(row.country, row.bank_id, nullptr) != 1)
            return state.SkipWithError(row.bank_id);
    std::size_t position = 0;
    for (auto _ : state) {
        const auto& row = bank_codes[position++ % std::size(bank_codes)];
        benchmark::DoNotOptimize(sepa_bankid_check(row.country, row.bank_id, nullptr));
    }
}

void bank_code_with_block(benchmark::State& state) {
    std::size_t position = 0;
    for (auto _ : state) {
        const auto& row = bank_codes[position++ % std::size(bank_codes)];
        sepa_bank_t* bank = nullptr;
        benchmark::DoNotOptimize(sepa_bankid_check(row.country, row.bank_id, &bank));
        std::free(bank);
    }
}

void unknown_bank_code(benchmark::State& state) {
    if (sepa_bankid_check("DE", "37040045", nullptr) != -2) return state.SkipWithError("known bank code");
    for (auto _ : state)
        benchmark::DoNotOptimize(sepa_bankid_check("DE", "37040045", nullptr));
}

void bic(benchmark::State& state) {
    for (const char* text : bics)
        if (sepa_bic_getBank(text, nullptr) != 1) return state.SkipWithError(text);
    std::size_t position = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(sepa_bic_getBank(bics[position++ % std::size(bics)], nullptr));
}

void bic_with_block(benchmark::State& state) {
    std::size_t position = 0;
    for (auto _ : state) {
        sepa_bank_t* bank = nullptr;
        benchmark::DoNotOptimize(sepa_bic_getBank(bics[position++ % std::size(bics)], &bank));
        std::free(bank);
    }
}

WORKLOAD("bank_code/known", bank_code);
WORKLOAD("bank_code/block", bank_code_with_block);
WORKLOAD("bank_code/unknown", unknown_bank_code);
WORKLOAD("bic/known", bic);
WORKLOAD("bic/block", bic_with_block);

} // namespace
