// Why an IBAN, a BIC or an account is refused.
#include <bit>
#include <cstdint>
#include <cstring>

#include "bank/bic.h"
#include "bank/directory.h"
#include "bank/iban_check.h"
#include "bank/normalise.h"
#include "base/ascii.h"
#include "base/utf8.h"
#include "checkdigit/arithmetic.h"
#include "velmora.h"

using namespace velmora;

namespace {

constexpr std::size_t longest_iban = 34;
constexpr std::int32_t nowhere = -1;

// Findings keep pointers to these.
constexpr char valid[] = "Valid";
constexpr char account_unchecked[] = "Valid; the account cannot be checked";
constexpr char wrong_bic[] = "Invalid BIC";
constexpr char wrong_bic_form[] = "Invalid BIC format";
constexpr char wrong_account[] = "Invalid account number";

// A part of a text.
struct Place {
    std::size_t position;
    std::size_t length;
};

std::int32_t as_int32(std::size_t value) {
    return value < INT32_MAX ? static_cast<std::int32_t>(value) : INT32_MAX;
}

int store(sepa_finding_t* finding, int result, std::int32_t code, const char* text) {
    if (finding != nullptr) *finding = {code, nowhere, 0, 0, {}, text};
    return result;
}

int store_at(sepa_finding_t* finding, std::int32_t code, Place place, std::size_t expected,
             const char* text) {
    if (finding != nullptr)
        *finding = {code, as_int32(place.position), as_int32(place.length), as_int32(expected), {}, text};
    return -1;
}

void add_method(sepa_finding_t* finding, std::uint8_t method) {
    constexpr char digits[] = "0123456789ABCDEF";
    if (finding == nullptr) return;
    finding->method[0] = digits[method >> 4];
    finding->method[1] = digits[method & 0xF];
}

// A character, which takes several bytes where the text is UTF-8.
Place character_at(const char* text, std::size_t position) {
    const char* begin = text + position;
    const char* behind = begin;
    const bool is_character = next_character(behind, begin + strnlen(begin, 4)) != no_character;
    return {position, is_character ? static_cast<std::size_t>(behind - begin) : 1};
}

int store_wrong_character(sepa_finding_t* finding, const char* text, std::size_t position,
                          const char* reason) {
    const bool is_wrong_class = is_letter_or_digit(text[position]);
    return store_at(finding, is_wrong_class ? SEPA_FINDING_CLASS : SEPA_FINDING_CHARACTER,
                    character_at(text, position), 0, reason);
}

// Whether a text would be a valid IBAN if only blanks and "IBAN" in front were left out and its letters were
// capitals; `removed` is then the first part that would be left out, or is empty, and `lower_case` the first
// small letters.
bool is_valid_when_normalised(const char* text, Place& removed, Place& lower_case) {
    char iban[longest_iban + 1];
    std::size_t length = 0;
    TypedIban typed(text);
    const char* expected = text; // where the next character stands unless something is left out
    removed = lower_case = {};
    while ((iban[length] = typed.next()) != '\0') {
        const char* at = typed.position();
        if (at != expected && removed.length == 0)
            removed = {static_cast<std::size_t>(expected - text), static_cast<std::size_t>(at - expected)};
        if (*at != iban[length]) {
            const auto position = static_cast<std::size_t>(at - text);
            if (lower_case.length == 0) lower_case.position = position;
            if (position == lower_case.position + lower_case.length) ++lower_case.length;
        }
        expected = at + 1;
        if (++length > longest_iban) return false;
    }
    if (typed.position() != expected && removed.length == 0)
        removed = {static_cast<std::size_t>(expected - text),
                   static_cast<std::size_t>(typed.position() - expected)};
    return examine_iban(iban, Countries::all_sepa).fault == IbanFault::none;
}

// The check digits that would make an IBAN with this remainder valid.
unsigned expected_check_digits(const char* iban, unsigned remainder) {
    const auto given = static_cast<unsigned>((iban[2] - '0') * 10 + iban[3] - '0');
    return 98 - (remainder + 2 * 97 - given) % 97;
}

// The explanation of an IBAN that normalising does not help.
int explain_fault(const char* iban, const IbanExamination& examination, sepa_finding_t* finding) {
    const char* text = text_of(examination.fault);
    switch (examination.fault) {
    case IbanFault::none:
        break;
    case IbanFault::missing:
        return store(finding, -1, SEPA_FINDING_EMPTY, text);
    case IbanFault::country:
        if (*iban == '\0') return store(finding, -1, SEPA_FINDING_EMPTY, text);
        return store_at(finding, SEPA_FINDING_COUNTRY, {0, strnlen(iban, 2)}, 0, text);
    case IbanFault::length: {
        const std::size_t length = std::strlen(iban), wanted = examination.country->length;
        return length < wanted
                   ? store_at(finding, SEPA_FINDING_TOO_SHORT, {length, 0}, wanted, text)
                   : store_at(finding, SEPA_FINDING_TOO_LONG, {wanted, length - wanted}, wanted, text);
    }
    case IbanFault::format:
        return store_wrong_character(finding, iban,
                                     static_cast<std::size_t>(std::countr_zero(examination.misfits)), text);
    case IbanFault::check_digits:
        store(finding, -1, SEPA_FINDING_CHECK_DIGITS, text);
        if (finding != nullptr)
            finding->expected = static_cast<std::int32_t>(expected_check_digits(iban, examination.remainder));
        return -1;
    case IbanFault::bank_code:
        return store_at(finding, SEPA_FINDING_BANK_CODE, {4, bank_code_length}, 0, text);
    case IbanFault::account:
        store_at(finding, SEPA_FINDING_ACCOUNT, {4 + bank_code_length, account_length}, 0, text);
        add_method(finding, examination.method);
        return -1;
    }
    return -1;
}

} // namespace

int sepa_iban_explain(const char* iban, sepa_finding_t* finding) {
    const IbanExamination examination = examine_iban(iban, Countries::all_sepa);
    if (examination.fault == IbanFault::none) {
        const bool is_german = iban[0] == 'D' && iban[1] == 'E';
        if (is_german && examination.account_check != account_not_checkable)
            return store(finding, 1, SEPA_FINDING_OK, valid);
        store(finding, 1, SEPA_FINDING_UNCHECKED, account_unchecked);
        if (is_german) add_method(finding, examination.method);
        return 1;
    }
    const bool may_be_written_otherwise = examination.fault == IbanFault::country ||
                                          examination.fault == IbanFault::length ||
                                          examination.fault == IbanFault::format;
    Place removed, lower_case;
    if (may_be_written_otherwise && is_valid_when_normalised(iban, removed, lower_case)) {
        const char* text = text_of(examination.fault);
        return removed.length != 0 ? store_at(finding, SEPA_FINDING_SPACES, removed, 0, text)
                                   : store_at(finding, SEPA_FINDING_LOWER_CASE, lower_case, 0, text);
    }
    return explain_fault(iban, examination, finding);
}

int sepa_bic_explain(const char* bic, sepa_finding_t* finding) {
    if (bic == nullptr) return store(finding, -1, SEPA_FINDING_EMPTY, wrong_bic);
    const std::size_t length = std::strlen(bic);
    if (length == 0) return store(finding, -1, SEPA_FINDING_EMPTY, wrong_bic_form);
    if (length > bic_length)
        return store_at(finding, SEPA_FINDING_TOO_LONG, {bic_length, length - bic_length}, bic_length,
                        wrong_bic);
    char upper[bic_length + 1];
    upper_case_bic(bic, upper);
    const std::size_t wrong = find_wrong_bic_character(upper);
    const bool has_length = length == head_office_bic_length || length == bic_length;
    // What no BIC has anywhere is the fault, not the length that it gives the text.
    if (wrong != length && (has_length || !is_letter_or_digit(upper[wrong]))) {
        const std::int32_t code = wrong < 4   ? SEPA_FINDING_BIC_BANK
                                  : wrong < 6 ? SEPA_FINDING_BIC_COUNTRY
                                  : wrong < 8 ? SEPA_FINDING_BIC_LOCATION
                                              : SEPA_FINDING_CHARACTER;
        return store_at(finding, code, character_at(bic, wrong), 0, wrong_bic_form);
    }
    if (!has_length)
        return store_at(finding, SEPA_FINDING_TOO_SHORT, {length, 0},
                        length < head_office_bic_length ? head_office_bic_length : bic_length,
                        wrong_bic_form);
    return sepa_bic_getBank(bic, nullptr) == 1
               ? store(finding, 1, SEPA_FINDING_OK, valid)
               : store(finding, 1, SEPA_FINDING_UNCHECKED, "Valid in its form; not in the directory");
}

int sepa_account_explain(const char* account, const char* bank_code, sepa_finding_t* finding) {
    if (account == nullptr || *account == '\0') return store(finding, -1, SEPA_FINDING_EMPTY, wrong_account);
    const std::size_t length = std::strlen(account);
    if (length > account_length)
        return store_at(finding, SEPA_FINDING_TOO_LONG, {account_length, length - account_length},
                        account_length, wrong_account);
    for (std::size_t i = 0; i < length; ++i)
        if (!is_digit(account[i])) return store_wrong_character(finding, account, i, wrong_account);

    const bool is_bank_code =
        bank_code != nullptr && strnlen(bank_code, bank_code_length + 1) == bank_code_length;
    const BankRecord bank = is_bank_code ? find_german_bank({bank_code, bank_code_length}) : BankRecord();
    if (!bank) return store(finding, -1, SEPA_FINDING_BANK_CODE, "Invalid bank ID (BLZ)");
    switch (sepa_account_check2(account, bank_code, bank.method())) {
    case account_invalid:
        store_at(finding, SEPA_FINDING_ACCOUNT, {0, length}, 0, wrong_account);
        add_method(finding, bank.method());
        return -1;
    case account_not_checkable:
        store(finding, 1, SEPA_FINDING_UNCHECKED, account_unchecked);
        add_method(finding, bank.method());
        return 1;
    default:
        return store(finding, 1, SEPA_FINDING_OK, valid);
    }
}
