// Entry points of the account check: the account is normalised, its method looked up and run.

#include <cstddef>
#include <cstring>

#include "checkdigit/methods.h"
#include "velmora.h"

namespace velmora {
namespace {

constexpr std::size_t account_length = 10;
constexpr std::size_t bank_code_length = 8;

// Ten characters, filled up with zeros on the left, and a terminating zero.
struct NormalisedAccount {
    char text[account_length + 1] = "0000000000";
};

// False for an account that is missing, empty or longer than ten characters.
bool normalise(const char* account, NormalisedAccount& normalised) {
    if (!account) return false;
    const std::size_t length = strnlen(account, account_length + 1);
    if (length == 0 || length > account_length) return false;
    std::memcpy(normalised.text + account_length - length, account, length);
    return true;
}

bool is_bank_code(const char* bank_code) {
    return bank_code && strnlen(bank_code, bank_code_length + 1) == bank_code_length;
}

CheckResult check_without_bank_code(const NormalisedAccount& account, std::uint8_t method) {
    const MethodRoutine routine = method_routine(method);
    return routine ? routine(account.text) : account_not_checkable;
}

CheckResult check_with_bank_code(const NormalisedAccount& account, const char* bank_code,
                                 std::uint8_t method) {
    switch (method) {
    case 0x52:
        return method_52(account.text, bank_code);
    case 0x53:
        return method_53(account.text, bank_code);
    case 0xB6:
        return method_B6(account.text, bank_code);
    case 0xC0:
        return method_C0(account.text, bank_code);
    default:
        return check_without_bank_code(account, method);
    }
}

} // namespace
} // namespace velmora

int sepa_account_check(const char* account, uint8_t method) {
    velmora::NormalisedAccount normalised;
    if (!velmora::normalise(account, normalised)) return velmora::account_invalid;
    return velmora::check_without_bank_code(normalised, method);
}

int sepa_account_check2(const char* account, const char* bank_code, uint8_t method) {
    velmora::NormalisedAccount normalised;
    if (!velmora::normalise(account, normalised) || !velmora::is_bank_code(bank_code))
        return velmora::account_invalid;
    return velmora::check_with_bank_code(normalised, bank_code, method);
}
