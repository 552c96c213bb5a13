// IBANs from German account data, and the BICs of German IBANs, over all bank codes of the directory.
#include <algorithm>
#include <cstdio>
#include <random>
#include <vector>

#include "velmora.h"
#include "workload.h"

namespace {

struct Account {
    char bank_code[12];
    char number[11];
    char iban[23]; // not that of the number: only the bank code in it counts
};

// Every bank code with an account number, in no order.
std::vector<Account> make_accounts() {
    std::vector<Account> accounts;
    std::mt19937_64 random(1);
    Account account;
    for (std::uint32_t index = 0; sepa_bank_next("DE", &index, account.bank_code, nullptr) == 1;) {
        std::snprintf(account.number, sizeof account.number, "%llu",
                      static_cast<unsigned long long>(random() % 10'000'000'000));
        std::snprintf(account.iban, sizeof account.iban, "DE00%.8s0000000000", account.bank_code);
        accounts.push_back(account);
    }
    std::shuffle(accounts.begin(), accounts.end(), random);
    return accounts;
}

const Account& next(std::size_t& position) {
    static const std::vector<Account> accounts = make_accounts();
    return accounts[position++ % accounts.size()];
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
