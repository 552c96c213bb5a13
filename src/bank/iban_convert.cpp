#include "bank/iban_convert.h"

#include <cstring>

#include "bank/iban_check.h"
#include "bank/iban_rules.h"
#include "velmora.h"

namespace velmora {
namespace {

// A successor may have a successor. A chain of this length can only be one that comes back to itself: the
// bank then counts as unknown, because none of its members would be the right one.
constexpr int longest_successor_chain = 16;

// Runs the rule of the bank code, then those of its successors with the account that the rules before left.
// The result is that of the last rule; -3 when a bank code is unknown.
int build_iban(ConversionContext& context, char* iban, BankLookup* find_bank) {
    for (int successors = 0; successors < longest_successor_chain; ++successors) {
        const BankRecord bank = find_bank({context.bank_code, bank_code_length});
        if (!bank) break;
        context.method = bank.method();
        context.account_result =
            static_cast<std::int8_t>(sepa_account_check2(context.account, context.bank_code, context.method));
        const int result = apply_iban_rule(bank.iban_rule() / 100, iban, context);

        if (bank.successor().size() != bank_code_length) return result;
        std::memcpy(context.bank_code, bank.successor().data(), bank_code_length);
        context.status = successor_used;
    }
    context.status = bank_code_unknown;
    return -3;
}

// Puts the check digits into an IBAN; false when it has characters that no IBAN can have.
bool write_check_digits(char* iban) {
    iban[2] = iban[3] = '0';
    const int remainder = iban_mod97(iban, german_iban_length);
    if (remainder < 0) return false;
    iban[2] = static_cast<char>('0' + (98 - remainder) / 10);
    iban[3] = static_cast<char>('0' + (98 - remainder) % 10);
    return true;
}

} // namespace

Conversion convert_account(const char* country, const char* account, const char* bank_code, char* iban,
                           BankLookup* find_bank) {
    const auto refused = [](int result) {
        return Conversion{result, converted_as_given, account_not_checkable};
    };
    if (iban != nullptr) std::memset(iban, 0, iban_buffer_size);
    if (country == nullptr) return refused(-1);
    if (std::strcmp(country, "DE") != 0) return refused(0);
    if (account == nullptr || bank_code == nullptr) return refused(-1);
    const std::size_t length = strnlen(account, account_length + 1);
    if (strnlen(bank_code, bank_code_length + 1) != bank_code_length) return refused(-1);
    if (length == 0 || length > account_length) return refused(-1);

    ConversionContext given = {};
    std::memset(given.account, '0', account_length - length);
    std::memcpy(given.account + account_length - length, account, length);
    std::memcpy(given.bank_code, bank_code, bank_code_length);

    ConversionContext context = given;
    char built[iban_buffer_size] = {};
    int result = build_iban(context, built, find_bank);
    ConversionStatus status = context.status;
    if (status == converted_as_given) {
        if (std::memcmp(context.account, given.account, account_length) != 0)
            status = account_replaced;
        else if (std::memcmp(context.bank_code, given.bank_code, bank_code_length) != 0)
            status = bank_code_replaced;
    }
    if (result == 1 && !write_check_digits(built)) result = -1;
    if (result == 1 && iban != nullptr) std::memcpy(iban, built, iban_buffer_size);
    return {result, status, context.account_result};
}

} // namespace velmora

using namespace velmora;

int sepa_iban_convert(const char* country, const char* account, const char* bank_code, char* iban,
                      uint8_t* status) {
    const Conversion conversion = convert_account(country, account, bank_code, iban, find_german_bank);
    if (status != nullptr) *status = conversion.status;
    return conversion.result;
}

int sepa_iban_convert2(const char* country, const char* account, const char* bank_code, char* iban,
                       int* status, int* account_result) {
    const Conversion conversion = convert_account(country, account, bank_code, iban, find_german_bank);
    if (status != nullptr) *status = conversion.status;
    if (account_result != nullptr) *account_result = conversion.account_result;
    return conversion.result;
}
