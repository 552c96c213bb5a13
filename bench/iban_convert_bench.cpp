// IBANs from German account data, and the BICs of German IBANs, over all bank codes of the directory.
#include <algorithm>
#include <cstdio>
#include <iterator>
#include <random>

#include "velmora.h"
#include "workload.h"

namespace {

constexpr char bank_codes[][9] = {
#define AUSTRIAN(...)
#define SWISS(...)
#define BIC(...)
#define CHANGED(...)
#define GERMAN(bank_code, ...) bank_code,
#include "../data/directory_records.inc"
#undef AUSTRIAN
#undef SWISS
#undef BIC
#undef CHANGED
#undef GERMAN
};
constexpr std::size_t bank_count = std::size(bank_codes);

struct Account {
    char bank_code[9];
    char number[11];
    char iban[23]; // not that of the number: only the bank code in it counts
};

// Every bank code with an account number, in no order.
struct Accounts {
    Account rows[bank_count];

    Accounts() {
        std::mt19937_64 random(1);
        for (std::size_t i = 0; i < bank_count; ++i) {
            std::copy_n(bank_codes[i], 9, rows[i].bank_code);
            std::snprintf(rows[i].number, sizeof rows[i].number, "%llu",
                          static_cast<unsigned long long>(random() % 10'000'000'000));
            std::snprintf(rows[i].iban, sizeof rows[i].iban, "DE00%.8s0000000000", bank_codes[i]);
        }
        std::shuffle(std::begin(rows), std::end(rows), random);
    }
};

const Account& next(std::size_t& position) {
    static const Accounts accounts;
    return accounts.rows[position++ % bank_count];
}

void iban_convert(benchmark::State& state) {
    std::size_t position = 0;
    for (auto _ : state) {
        const Account& account = next(position);
        char iban[35];
        std::uint8_t status;
        benchmark::DoNotOptimize(sepa_iban_convert("DE", account.number, account.bank_code, iban, &status));
    }
}

void iban_get_bic(benchmark::State& state) {
    std::size_t position = 0;
    for (auto _ : state) {
        char bic[12];
        benchmark::DoNotOptimize(sepa_iban_getBIC(next(position).iban, bic));
    }
}

WORKLOAD("iban_convert/all_banks", iban_convert);
WORKLOAD("iban_get_bic/all_banks", iban_get_bic);

} // namespace
