#include "checkdigit/arithmetic.h"

namespace velmora {
namespace {

constexpr Weights ledger_weights = weights_from(P9, 2, 3, 4, 5, 6, 7, 8);
constexpr Weights extended_ledger_weights = weights_from(P9, 2, 3, 4, 5, 6, 7, 8, 9, 10);
constexpr Weights five_digit_weights = weights_from(P9, 2, 3, 4, 5, 6);

constexpr CheckResult expect_ledger_digit(const char* account, int sum) {
    const int remainder = sum % 11;
    return expect_digit(account, P10, remainder == 0 || remainder == 1 ? 0 : 11 - remainder);
}

CheckResult check_ledger(const char* account) {
    return expect_ledger_digit(account, weighted_sum(account, ledger_weights));
}

CheckResult check_extended_ledger(const char* account) {
    return expect_ledger_digit(account, weighted_sum(account, extended_ledger_weights));
}

} // namespace

CheckResult check_ledger_account(const char* account) {
    return first_not_invalid(account, check_ledger, check_extended_ledger);
}

CheckResult check_mod11_five_digits(const char* account) {
    return check_mod11_ten_is_invalid(account, P10, five_digit_weights);
}

} // namespace velmora
