// Banks of the directory; those asked for lately are remembered, because the lines of a file repeat them.
#pragma once

#include <velmora.h>

#include "text.h"

namespace velmora::tool {

class Banks {
public:
    Banks() = default;
    Banks(const Banks&) = delete;
    Banks& operator=(const Banks&) = delete;
    ~Banks();

    // Null when there is none. The record stays until the next call.
    const sepa_bank_t* by_iban(Text iban);
    const sepa_bank_t* by_code(Text country, Text code);
    const sepa_bank_t* by_bic(Text bic);

private:
    static constexpr std::size_t key_size = 16;
    struct Slot {
        char key[key_size];
        sepa_bank_t* bank;
    };
    using Find = sepa_bank_t* (*)(const char* country, const char* code);
    const sepa_bank_t* remembered(Text country, Text code, Find find);

    Slot slots_[256] = {};
};

// The part of a valid Austrian, German, Liechtenstein or Swiss IBAN that names the bank; empty for others.
Text bank_code_of(Text iban);

} // namespace velmora::tool
