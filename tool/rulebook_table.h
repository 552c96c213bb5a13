// What the rulebooks ask for, as far as a user needs to know before a payment is refused.
#pragma once

#include <span>

#include "text.h"

namespace velmora::tool {

struct RulebookRow {
    const char* name;
    const char* direct_debit; // schemas
    const char* credit_transfer;
    std::uint32_t keys; // bits of KeyRow::group
};

enum KeyGroup : std::uint32_t { always = 1, address_lines = 2, structured_address = 4, extended = 8 };
enum KeyMessages : std::uint8_t { credit_transfer = 1, direct_debit = 2, both = 3 };

struct KeyRow {
    const char* name;
    const char* limit; // as people read it
    const char* meaning;
    std::uint8_t messages;
    std::uint32_t group;
};

constexpr const char* default_rulebook = "DE-26.11";

std::span<const RulebookRow> rulebook_table();
std::span<const KeyRow> key_table();
const RulebookRow* find_rulebook(Text name);
// Null when the rulebook does not know it for this kind of message.
const KeyRow* find_key(Text name, const RulebookRow& rulebook, std::uint8_t messages);

} // namespace velmora::tool
