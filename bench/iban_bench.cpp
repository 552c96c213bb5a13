// IBAN checks: German ones with the account check, foreign ones, and the bank behind an IBAN.
#include <iban.h>
#include <ktoblzcheck.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <string>

#include "velmora.h"
#include "workload.h"

namespace {

// Accounts at banks with different check-digit methods.
constexpr const char* german_ibans[] = {
    "DE44701500001739563912", "DE10100400000069249100", "DE66120300000260235783", "DE41680900004410182764",
    "DE21200505500506356823", "DE15100700240311934400", "DE18130500002959412411", "DE61701664860462425718",
    "DE19130610780251088866", "DE96120309000318347105", "DE09501900001293049641", "DE19100110011153652094",
    "DE37701900002246044670", "DE11200411110493650600", "DE22100700000094078300", "DE04370501983129819318",
};
constexpr const char* foreign_ibans[] = {
    "AT611904300234573201",
    "BE68539007547034",
    "NL91ABNA0417164300",
    "CH9300762011623852957",
    "GB29NWBK60161331926819",
    "ES9121000418450200051332",
    "FR1420041010050500013M02606",
    "IT60X0542811101000000123456",
    "PL61109010140000071219812874",
    "SE4550000000058398257466",
    "NO9386011117947",
    "DK5000400440116243",
    "FI2112345600000785",
    "LU280019400644750000",
    "CZ6508000000192000145399",
    "PT50000201231234567890154",
};

template <std::size_t count>
const char* next(const char* const (&ibans)[count], std::size_t& position) {
    return ibans[position++ % count];
}

template <std::size_t count>
void iban_check(benchmark::State& state, const char* const (&ibans)[count]) {
    for (const char* iban : ibans)
        if (sepa_iban_check(iban) != 1) return state.SkipWithError(iban);
    std::size_t position = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(sepa_iban_check(next(ibans, position)));
}

void iban_check_german(benchmark::State& state) {
    iban_check(state, german_ibans);
}
void iban_check_foreign(benchmark::State& state) {
    iban_check(state, foreign_ibans);
}

// The country's length and check digits; for German IBANs the account at its bank, too.
template <std::size_t count>
void iban_check_ktoblzcheck(benchmark::State& state, const char* const (&ibans)[count]) {
    const IbanCheck checker;
    const AccountNumberCheck accounts;
    std::size_t position = 0, passed = 0;
    for (auto _ : state) {
        const std::string iban = next(ibans, position);
        bool good = checker.check(iban) == IbanCheck::OK;
        if (good && iban.compare(0, 2, "DE") == 0)
            good = accounts.check(iban.substr(4, 8), iban.substr(12)) == AccountNumberCheck::OK;
        passed += good;
        benchmark::DoNotOptimize(passed);
    }
    // Its bank data are of 2020, so it does not know every bank.
    state.counters["passed"] =
        benchmark::Counter(static_cast<double>(passed), benchmark::Counter::kAvgIterations);
}

void iban_check_german_ktoblzcheck(benchmark::State& state) {
    iban_check_ktoblzcheck(state, german_ibans);
}
void iban_check_foreign_ktoblzcheck(benchmark::State& state) {
    iban_check_ktoblzcheck(state, foreign_ibans);
}

// The least that any IBAN check has to do: the remainder of the digits.
void iban_check_german_mod97(benchmark::State& state) {
    std::size_t position = 0;
    for (auto _ : state) {
        const char* iban = next(german_ibans, position);
        unsigned remainder = 0;
        for (const char* p = iban + 4; *p != '\0'; p++)
            remainder = (remainder * 10 + static_cast<unsigned>(*p - '0')) % 97;
        remainder =
            (remainder * 1'000'000 + 131400 + static_cast<unsigned>((iban[2] - '0') * 10 + iban[3] - '0')) %
            97;
        benchmark::DoNotOptimize(remainder);
    }
}

void iban_get_bank(benchmark::State& state) {
    std::size_t position = 0;
    for (auto _ : state) {
        sepa_bank_t* bank = nullptr;
        benchmark::DoNotOptimize(sepa_iban_getBank(next(german_ibans, position), &bank));
        std::free(bank);
    }
}

template <std::size_t count>
void iban_explain(benchmark::State& state, const char* const (&ibans)[count]) {
    std::size_t position = 0;
    sepa_finding_t finding;
    for (auto _ : state) {
        benchmark::DoNotOptimize(sepa_iban_explain(next(ibans, position), &finding));
        benchmark::DoNotOptimize(finding);
    }
}

void iban_explain_german(benchmark::State& state) {
    iban_explain(state, german_ibans);
}
void iban_explain_foreign(benchmark::State& state) {
    iban_explain(state, foreign_ibans);
}

// German IBANs with one wrong digit.
void iban_suggest(benchmark::State& state) {
    std::size_t position = 0;
    for (auto _ : state) {
        char iban[22 + 1];
        char candidates[69];
        std::strcpy(iban, next(german_ibans, position));
        iban[9] = iban[9] == '9' ? '0' : static_cast<char>(iban[9] + 1);
        benchmark::DoNotOptimize(sepa_iban_suggest(iban, candidates, sizeof candidates));
    }
}

// What the first check of a process takes beyond a later one: nothing is set up, but pages are touched.
void iban_check_first(benchmark::State& state) {
    const auto seconds_of_a_check = [] {
        const auto begin = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(sepa_iban_check(german_ibans[0]));
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
    for (auto _ : state) {
        int ends[2];
        if (pipe(ends) != 0) return state.SkipWithError("no pipe");
        const pid_t child = fork();
        if (child == 0) {
            const double first = seconds_of_a_check();
            const double beyond = first - seconds_of_a_check();
            _exit(write(ends[1], &beyond, sizeof beyond) == sizeof beyond ? 0 : 1);
        }
        double beyond = 0;
        const bool measured = child > 0 && read(ends[0], &beyond, sizeof beyond) == sizeof beyond;
        waitpid(child, nullptr, 0);
        close(ends[0]);
        close(ends[1]);
        if (!measured) return state.SkipWithError("not measured");
        state.SetIterationTime(beyond);
    }
}

WORKLOAD("iban_check/german", iban_check_german);
WORKLOAD("iban_check/german/ktoblzcheck", iban_check_german_ktoblzcheck);
WORKLOAD("iban_check/german/mod97", iban_check_german_mod97);
WORKLOAD("iban_check/foreign", iban_check_foreign);
WORKLOAD("iban_check/foreign/ktoblzcheck", iban_check_foreign_ktoblzcheck);
WORKLOAD("iban_get_bank/german", iban_get_bank);
WORKLOAD("iban_explain/german", iban_explain_german);
WORKLOAD("iban_explain/foreign", iban_explain_foreign);
WORKLOAD("iban_suggest/one_digit", iban_suggest);
BENCHMARK(iban_check_first)->Name("iban_check/first")->UseManualTime()->Iterations(200);

} // namespace
