// Account checks: every method, and the mix of methods that the bank directory has, a bank code for each
// account.
#include <ktoblzcheck.h>

#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "velmora.h"
#include "workload.h"

namespace {

struct Check {
    char account[11];
    char bank_code[9];
    std::uint8_t method;
};

// The same, as libktoblzcheck takes it.
struct PeerCheck {
    std::string account, bank_code, method;
};

constexpr std::size_t checks_per_method = 256;
constexpr std::size_t checks_in_mix = 4096;

// Random accounts are asked for until one is right every other time; some methods refuse most of them.
constexpr int attempts = 1000;

std::string method_name(std::uint8_t method) {
    return {"0123456789ABCDEF"[method >> 4], "0123456789ABCDEF"[method & 15]};
}

// Ten digits, some of them zeros on the left. Every other account is right.
Check make_check(std::mt19937& random, const std::string& bank_code, std::uint8_t method, bool right) {
    Check check{};
    bank_code.copy(check.bank_code, 8);
    check.method = method;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const std::size_t zeros = random() % 2 == 0 ? 0 : random() % 5;
        for (std::size_t i = 0; i < 10; ++i)
            check.account[i] = static_cast<char>('0' + (i < zeros ? 0 : random() % 10));
        if (!right || sepa_account_check2(check.account, check.bank_code, method) > 0) break;
    }
    return check;
}

std::vector<Check> checks_of_method(std::uint8_t method) {
    std::mt19937 random(method);
    std::vector<Check> checks;
    while (checks.size() < checks_per_method)
        checks.push_back(make_check(random, "13051172", method, checks.size() % 2 == 0));
    return checks;
}

// Drawn from all German records, so that each method has its share.
const std::vector<Check>& checks_of_mix() {
    static const std::vector<Check> checks = [] {
        std::vector<std::string> bank_codes;
        char code[12];
        for (std::uint32_t index = 0; sepa_bank_next("DE", &index, code, nullptr) == 1;)
            bank_codes.emplace_back(code);
        std::mt19937 random(1);
        std::vector<Check> result;
        while (result.size() < checks_in_mix) {
            const std::string& bank_code = bank_codes[random() % bank_codes.size()];
            char code[3];
            sepa_bankid_method(bank_code.c_str(), code, nullptr);
            const auto method = static_cast<std::uint8_t>(std::stoi(code, nullptr, 16));
            if (method == 0xE4) continue; // unknown to libktoblzcheck, and used by one bank only
            result.push_back(make_check(random, bank_code, method, result.size() % 2 == 0));
        }
        return result;
    }();
    return checks;
}

void run(benchmark::State& state, const std::vector<Check>& checks) {
    const Check* const end = checks.data() + checks.size();
    const Check* check = checks.data();
    for (auto _ : state) {
        benchmark::DoNotOptimize(sepa_account_check2(check->account, check->bank_code, check->method));
        if (++check == end) check = checks.data();
    }
}

void run_ktoblzcheck(benchmark::State& state, const std::vector<Check>& checks) {
    const AccountNumberCheck checker("/dev/null"); // the methods are given, no bank is looked up
    std::vector<PeerCheck> peer_checks;
    for (const Check& check : checks)
        peer_checks.push_back({check.account, check.bank_code, method_name(check.method)});
    const PeerCheck* const end = peer_checks.data() + peer_checks.size();
    const PeerCheck* check = peer_checks.data();
    for (auto _ : state) {
        benchmark::DoNotOptimize(checker.check(check->bank_code, check->account, check->method));
        if (++check == end) check = peer_checks.data();
    }
}

void mix(benchmark::State& state) {
    run(state, checks_of_mix());
}
void mix_ktoblzcheck(benchmark::State& state) {
    run_ktoblzcheck(state, checks_of_mix());
}

WORKLOAD("account_check/mix", mix);
WORKLOAD("account_check/mix/ktoblzcheck", mix_ktoblzcheck);

// Those that have something to compute, by their answers to random accounts.
bool is_method(std::uint8_t method) {
    std::mt19937 random(method);
    for (int i = 0; i < 100; ++i) {
        const Check check = make_check(random, "13051172", method, false);
        if (sepa_account_check2(check.account, check.bank_code, method) != 0) return true;
    }
    return method == 0x09;
}

[[maybe_unused]] const bool methods_registered = [] {
    for (int code = 0; code <= 0xFF; ++code) {
        const auto method = static_cast<std::uint8_t>(code);
        if (!is_method(method)) continue;
        const std::string name = "account_check/method/" + method_name(method);
        benchmark::RegisterBenchmark(name.c_str(), [method](benchmark::State& state) {
            run(state, checks_of_method(method));
        })->Apply(apply_iterations);
        if (method == 0x87 || method == 0xE4) continue; // libktoblzcheck crashes on accounts of 87, lacks E4
        benchmark::RegisterBenchmark((name + "/ktoblzcheck").c_str(), [method](benchmark::State& state) {
            run_ktoblzcheck(state, checks_of_method(method));
        })->Apply(apply_iterations);
    }
    return true;
}();

} // namespace
