// The one IBAN check behind every IBAN that enters the library.
#pragma once

#include <cstddef>
#include <cstdint>

#include "bank/iban_countries.h"

namespace velmora {

// The first test that an IBAN fails, in the order of the tests.
enum class IbanFault : std::uint8_t {
    none,
    missing,
    country,
    length,
    format,
    check_digits,
    bank_code,
    account,
};

// What the check has found out. Members that no test has reached are 0.
struct IbanExamination {
    IbanFault fault;
    std::uint8_t method;       // of the bank, Germany only
    std::int8_t account_check; // its result, Germany only
    std::uint8_t remainder;    // iban_mod97()
    const IbanCountry* country;
    std::uint64_t misfits; // places of wrong characters, bit 0 for the first
};

IbanExamination examine_iban(const char* iban, Countries countries);

// The constant text of a fault.
const char* text_of(IbanFault fault);

// 1 when the IBAN passes every test, otherwise 0 with a constant text in *error (which may be null).
int iban_validate(const char* iban, const char** error, Countries countries = Countries::established);

// ISO 7064 MOD 97-10 over an IBAN whose first four characters count last; -1 for a character that is neither
// a letter nor a digit. A valid IBAN leaves 1.
int iban_mod97(const char* iban, std::size_t length);

} // namespace velmora
