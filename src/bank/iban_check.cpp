#include "bank/iban_check.h"

#include <cstring>

#include "bank/directory.h"
#include "bank/regex.h"
#include "base/mod97.h"
#include "base/words.h"
#include "checkdigit/arithmetic.h"
#include "velmora.h"

namespace velmora {
namespace {

constexpr std::size_t country_and_check_digits = 4;

// Where a text has digits and where capital letters, bit 0 for its first character.
struct Places {
    std::uint64_t digits = 0;
    std::uint64_t letters = 0;
};

// Of a text of 8 to 64 characters.
Places places_of(const char* text, std::size_t length) {
    Places places;
    for (std::size_t at = 0; at < length; at += 8) {
        if (at > length - 8) at = length - 8; // the last word overlaps the one before it
        const std::uint64_t word = load_word(text + at);
        places.digits |= places_between(word, '0', '9') << at;
        places.letters |= places_between(word, 'A', 'Z') << at;
    }
    return places;
}

std::uint64_t mod97_of(std::uint64_t remainder, std::string_view text) {
    return static_cast<unsigned>(mod97(static_cast<int>(remainder), text, Letters::upper_case));
}

// iban_mod97() of an IBAN of the right format.
unsigned remainder_of(const char* iban, std::size_t length, std::uint64_t digits) {
    static constexpr std::uint64_t powers_of_ten[] = {1,       10,        100,        1'000,      10'000,
                                                      100'000, 1'000'000, 10'000'000, 100'000'000};
    std::uint64_t remainder = 0;
    std::size_t at = country_and_check_digits;
    for (digits >>= at; length - at >= 8; at += 8, digits >>= 8)
        if ((digits & 0xFF) == 0xFF)
            remainder = (remainder * powers_of_ten[8] + value_of_digits(load_word(iban + at))) % 97;
        else
            remainder = mod97_of(remainder, {iban + at, 8});
    const std::size_t left = length - at;
    if (digits + 1 == std::uint64_t{1} << left) {
        // The digits that end the last word, and zeros in place of what stands before them.
        const std::uint64_t before =
            left == 0 ? ~std::uint64_t{0} : (std::uint64_t{1} << (64 - 8 * left)) - 1;
        const std::uint64_t word = (load_word(iban + length - 8) & ~before) | (repeated('0') & before);
        remainder = remainder * powers_of_ten[left] + value_of_digits(word);
    } else {
        remainder = mod97_of(remainder, {iban + at, left});
    }
    const int country = (iban[0] - 'A' + 10) * 100 + iban[1] - 'A' + 10;
    const int check_digits = (iban[2] - '0') * 10 + iban[3] - '0';
    remainder = remainder * 1'000'000 + static_cast<unsigned>(country * 100 + check_digits);
    return static_cast<unsigned>(remainder % 97);
}

// The bank code and the account number inside a German IBAN.
IbanFault examine_german_account(const char* iban, IbanExamination& result) {
    char bank_code[bank_code_length + 1] = {};
    char account[account_length + 1] = {};
    std::memcpy(bank_code, iban + country_and_check_digits, bank_code_length);
    std::memcpy(account, iban + country_and_check_digits + bank_code_length, account_length);
    const BankRecord bank = find_german_bank({bank_code, bank_code_length});
    if (!bank) return IbanFault::bank_code;
    result.method = bank.method();
    result.account_check = static_cast<std::int8_t>(sepa_account_check2(account, bank_code, result.method));
    return result.account_check == account_invalid ? IbanFault::account : IbanFault::none;
}

IbanFault examine(const char* iban, Countries countries, IbanExamination& result) {
    if (iban == nullptr) return IbanFault::missing;
    bind_libc_regex();
    const IbanCountry* country = result.country = find_iban_country(iban, countries);
    if (country == nullptr) return IbanFault::country;
    const std::size_t length = country->length;
    if (strnlen(iban, length + 1) != length) return IbanFault::length;

    const Places places = places_of(iban, length);
    const std::uint64_t fitting = (places.digits & country->digits) | (places.letters & country->letters);
    result.misfits = fitting ^ (country->digits | country->letters);
    if (result.misfits != 0) return IbanFault::format;
    const unsigned remainder = remainder_of(iban, length, places.digits);
    result.remainder = static_cast<std::uint8_t>(remainder);
    if (remainder != 1) return IbanFault::check_digits;
    return iban[0] == 'D' && iban[1] == 'E' ? examine_german_account(iban, result) : IbanFault::none;
}

} // namespace

int iban_mod97(const char* iban, std::size_t length) {
    const std::size_t body = length < country_and_check_digits ? length : country_and_check_digits;
    return mod97_rotated({iban, length}, body, Letters::any_case);
}

IbanExamination examine_iban(const char* iban, Countries countries) {
    IbanExamination result = {};
    result.fault = examine(iban, countries, result);
    return result;
}

const char* text_of(IbanFault fault) {
    switch (fault) {
    case IbanFault::none:
        break;
    case IbanFault::missing:
        return "Invalid IBAN (NULL)";
    case IbanFault::country:
        return "Invalid or unknown IBAN country code";
    case IbanFault::length:
        return "Wrong IBAN length";
    case IbanFault::format:
        return "Invalid IBAN format";
    case IbanFault::check_digits:
        return "Invalid IBAN checksum";
    case IbanFault::bank_code:
        return "Invalid bank ID (BLZ) in IBAN";
    case IbanFault::account:
        return "Invalid account number in IBAN";
    }
    return "";
}

int iban_validate(const char* iban, const char** error, Countries countries) {
    IbanExamination examination = {};
    const IbanFault fault = examine(iban, countries, examination);
    if (fault == IbanFault::none) return 1;
    if (error != nullptr) *error = text_of(fault);
    return 0;
}

} // namespace velmora

using namespace velmora;

int sepa_iban_check(const char* iban) {
    return iban_validate(iban, nullptr) == 1 ? 1 : -1;
}
