// The one IBAN check behind every IBAN that enters the library.
#pragma once

#include <cstddef>

#include "bank/iban_countries.h"

namespace velmora {

// 1 when the IBAN passes every test, otherwise 0 with a constant text in *error (which may be null).
int iban_validate(const char* iban, const char** error, Countries countries = Countries::established);

// ISO 7064 MOD 97-10 over an IBAN whose first four characters count last; -1 for a character that is neither
// a letter nor a digit. A valid IBAN leaves 1.
int iban_mod97(const char* iban, std::size_t length);

} // namespace velmora
