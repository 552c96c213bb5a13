#include "bank/iban_rules_lists.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <string_view>
#include <tuple>

#include "checkdigit/arithmetic.h"

namespace velmora {
namespace {

// A length that is known makes the comparison one of a few words.
constexpr std::string_view account_text(const char* account) {
    return {account, 10};
}
constexpr std::string_view bank_code_text(const char* bank_code) {
    return {bank_code, 8};
}

struct AccountReplacement {
    std::uint8_t rule;
    char account[10 + 1];
    char new_account[10 + 1];
};

struct ListedIban {
    std::uint8_t rule;
    char account[10 + 1];
    char iban[22 + 1];
};

struct ValidAccount {
    std::uint8_t rule;
    char account[10 + 1];
};

struct BankCode {
    char bank_code[8 + 1];
};

struct BankCodeRange {
    std::int64_t first, last;
    char bank_code[8 + 1];
};

constexpr AccountReplacement replaced_accounts[] = {
#include "data/iban_rules_accounts.inc"
};

constexpr BankAccountReplacement replaced_bank_accounts[] = {
#include "data/iban_rules_bank_accounts.inc"
};

constexpr ListedIban listed_ibans[] = {
#include "data/iban_rules_ibans.inc"
};

constexpr ValidAccount valid_accounts[] = {
#include "data/iban_rules_valid_accounts.inc"
};

constexpr BankCode refusing_bank_codes[] = {
#include "data/iban_rules_refused_bank_codes.inc"
};

constexpr BankCodeRange bank_code_ranges[] = {
#include "data/iban_rules_ranges.inc"
};

constexpr NumberRange refused_ranges[] = {
#include "data/iban_rules_refused_ranges.inc"
};

// What an entry is found by.
template <typename Entry>
constexpr auto key_of(const Entry& entry) {
    return std::tuple(unsigned{entry.rule}, account_text(entry.account));
}
constexpr auto key_of(const BankAccountReplacement& entry) {
    return std::tuple(unsigned{entry.rule}, bank_code_text(entry.bank_code), account_text(entry.account));
}
constexpr auto key_of(const BankCode& entry) {
    return bank_code_text(entry.bank_code);
}
constexpr auto by_key = [](const auto& entry) { return key_of(entry); };

template <typename Entry, std::size_t size>
constexpr bool is_sorted_and_unique(const Entry (&list)[size]) {
    return std::ranges::adjacent_find(list, std::greater_equal(), by_key) == std::end(list);
}

static_assert(is_sorted_and_unique(replaced_accounts) && is_sorted_and_unique(replaced_bank_accounts) &&
              is_sorted_and_unique(listed_ibans) && is_sorted_and_unique(valid_accounts) &&
              is_sorted_and_unique(refusing_bank_codes));
static_assert(std::ranges::adjacent_find(bank_code_ranges, [](const auto& range, const auto& next) {
                  return range.last >= next.first;
              }) == std::end(bank_code_ranges));

template <typename Entry, std::size_t size, typename Key>
const Entry* find(const Entry (&list)[size], const Key& key) {
    const Entry* entry = std::ranges::lower_bound(list, key, {}, by_key);
    return entry != std::end(list) && key_of(*entry) == key ? entry : nullptr;
}

} // namespace

const char* find_replaced_account(unsigned rule, const char* account) {
    const auto* entry = find(replaced_accounts, std::tuple(rule, account_text(account)));
    return entry != nullptr ? entry->new_account : nullptr;
}

const BankAccountReplacement* find_replaced_bank_account(unsigned rule, const char* bank_code,
                                                         const char* account) {
    return find(replaced_bank_accounts, std::tuple(rule, bank_code_text(bank_code), account_text(account)));
}

const char* find_listed_iban(unsigned rule, const char* account) {
    const auto* entry = find(listed_ibans, std::tuple(rule, account_text(account)));
    return entry != nullptr ? entry->iban : nullptr;
}

bool is_listed_as_valid(unsigned rule, const char* account) {
    return find(valid_accounts, std::tuple(rule, account_text(account))) != nullptr;
}

const char* find_bank_code_of_range(std::int64_t account) {
    const auto* range = std::ranges::lower_bound(bank_code_ranges, account, {}, &BankCodeRange::last);
    return range != std::end(bank_code_ranges) && account >= range->first ? range->bank_code : nullptr;
}

bool is_refusing_bank_code(const char* bank_code) {
    return find(refusing_bank_codes, bank_code_text(bank_code)) != nullptr;
}

bool is_in_refused_range(std::int64_t account) {
    return std::ranges::any_of(refused_ranges,
                               [&](const NumberRange& range) { return range.contains(account); });
}

} // namespace velmora
