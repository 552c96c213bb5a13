// The SEPA keywords in the purpose lines of German statements.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "velmora.h"

namespace velmora {

struct Keyword {
    char word[5];
    char* sepa_stmt_tx_t::*value;
    bool is_amount = false;
};

inline constexpr std::size_t keyword_word_length = 4;
inline constexpr std::size_t keyword_length = keyword_word_length + 1; // with its "+"

inline constexpr Keyword keywords[] = {
    {"EREF", &sepa_stmt_tx_t::eref},       {"KREF", &sepa_stmt_tx_t::kref},
    {"MREF", &sepa_stmt_tx_t::mref},       {"CRED", &sepa_stmt_tx_t::cred},
    {"DEBT", &sepa_stmt_tx_t::debt},       {"PURP", &sepa_stmt_tx_t::purp},
    {"COAM", &sepa_stmt_tx_t::coam, true}, {"OAMT", &sepa_stmt_tx_t::oamt, true},
    {"SVWZ", &sepa_stmt_tx_t::svwz},       {"ABWA", &sepa_stmt_tx_t::abwa},
    {"ABWE", &sepa_stmt_tx_t::abwe},
};

// The keyword of these four characters, or null.
inline const Keyword* find_keyword(const char* word) {
    std::uint32_t wanted, one;
    std::memcpy(&wanted, word, sizeof wanted);
    for (const Keyword& keyword : keywords) {
        std::memcpy(&one, keyword.word, sizeof one);
        if (one == wanted) return &keyword;
    }
    return nullptr;
}

} // namespace velmora
