// Messages for tests: built in a line, released by themselves.
#pragma once

#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "velmora.h"

namespace velmora::test {

struct FreeMessage {
    void operator()(sepa_t* message) const { sepa_free(message); }
};
using Message = std::unique_ptr<sepa_t, FreeMessage>;

using Pairs = std::vector<std::pair<const char*, const char*>>;

inline int call_with_pairs(int (*call)(sepa_t*, const char* const*), const Message& message,
                           const Pairs& pairs) {
    std::vector<const char*> list;
    for (const auto& [key, value] : pairs)
        list.insert(list.end(), {key, value});
    list.push_back(nullptr);
    return call(message.get(), list.data());
}

inline int add(const Message& message, const Pairs& pairs) {
    return call_with_pairs(sepa_add, message, pairs);
}

// `pairs` with some replaced or, when their key is new, added.
inline Pairs with(Pairs pairs, const Pairs& changes) {
    for (const auto& change : changes) {
        bool found = false;
        for (auto& pair : pairs)
            if (std::string(pair.first) == change.first) {
                pair.second = change.second;
                found = true;
            }
        if (!found) pairs.push_back(change);
    }
    return pairs;
}

inline std::string error(const Message& message) {
    const char* text = sepa_getError(message.get());
    return text == nullptr ? "" : text;
}

inline Message new_message(std::uint32_t type, const char* rulebook = nullptr) {
    if (rulebook != nullptr) sepa_init(SEPA_INIT_RULEBOOK, rulebook);
    return Message(sepa_new(type));
}

constexpr char own_iban[] = "DE89370400440532013000";

// A message with a complete header and fixed identification.
inline Message complete_message(std::uint32_t type, const char* rulebook) {
    Message message = new_message(type, rulebook);
    sepa_setIBAN(message.get(), own_iban);
    sepa_setBIC(message.get(), "COBADEFFXXX");
    sepa_setName(message.get(), "Verein Musterstadt");
    sepa_setDate(message.get(), "2026-12-01");
    sepa_setMessageId(message.get(), "MSG-1");
    if (type == SEPA_MSGTYPE_DDI) sepa_setCreditorIdentifier(message.get(), "DE98ZZZ09999999999");
    return message;
}

inline Pairs direct_debit() {
    return {{"iban", "AT611904300234573201"},
            {"name", "Eva Muster"},
            {"bic", "RZOOAT2L732"},
            {"amount", "12.50"},
            {"seq", "RCUR"},
            {"mref", "M-1"},
            {"mdate", "2024-01-31"}};
}

inline Pairs credit_transfer() {
    return {{"iban", "AT611904300234573201"},
            {"name", "Eva Muster"},
            {"bic", "RZOOAT2L732"},
            {"amount", "12.50"}};
}

inline std::string document(const Message& message) {
    const std::unique_ptr<char, decltype(&std::free)> text(sepa_toXML(message.get()), &std::free);
    return text == nullptr ? std::string() : std::string(text.get());
}

// What stands between the tags of every element of this name.
inline std::vector<std::string> contents(const std::string& document, const std::string& element) {
    std::vector<std::string> found;
    const std::string open = "<" + element, close = "</" + element + ">";
    for (std::size_t at = 0; (at = document.find(open, at)) != document.npos;) {
        at += open.size();
        if (document[at] != '>' && document[at] != ' ') continue; // a longer name
        const std::size_t begin = document.find('>', at) + 1;
        found.push_back(document.substr(begin, document.find(close, begin) - begin));
    }
    return found;
}

constexpr const char* all_rulebooks[] = {"DE-2.6", "DE-2.7", "AT-6",   "NL-6",   "DE-2.8",
                                         "DE-2.9", "DE-3.0", "DE-3.1", "DE-3.5", "DE-3.7"};
constexpr char strict_rulebook[] = "DE-26.11";

} // namespace velmora::test
