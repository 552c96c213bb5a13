// IBANs from German account data, and the BICs of IBANs.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "bank/directory.h"
#include "velmora.h"

namespace {

struct Account {
    std::string bank_code;
    std::string number;
};

// Every German bank code with an account number of its own, in an order that no cache foresees.
std::vector<Account> accounts() {
    std::mt19937_64 random(1);
    std::vector<Account> all;
    for (int slot = 0; slot < velmora::directory_size(); ++slot)
        if (const auto record = velmora::directory_record(slot); record.substr(0, 3) == "_DE")
            all.push_back({std::string(record.substr(3, 8)), std::to_string(random() % 10'000'000'000)});
    std::shuffle(all.begin(), all.end(), random);
    return all;
}

void BM_IbanConvert(benchmark::State& state) {
    const std::vector<Account> all = accounts();
    char iban[35];
    std::uint8_t status;
    for (auto _ : state)
        for (const Account& account : all)
            benchmark::DoNotOptimize(
                sepa_iban_convert("DE", account.number.c_str(), account.bank_code.c_str(), iban, &status));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(all.size()));
}
BENCHMARK(BM_IbanConvert);

void BM_IbanGetBic(benchmark::State& state) {
    std::vector<std::string> ibans;
    for (const Account& account : accounts())
        ibans.push_back("DE00" + account.bank_code + "0000000000");
    char bic[12];
    for (auto _ : state)
        for (const std::string& iban : ibans)
            benchmark::DoNotOptimize(sepa_iban_getBIC(iban.c_str(), bic));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(ibans.size()));
}
BENCHMARK(BM_IbanGetBic);

} // namespace
