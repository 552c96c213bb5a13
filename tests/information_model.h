// The rules for the field ":86:" written down as plainly as possible: each step searches and copies whole
// texts, whatever that costs. What the parser does in one pass must come out the same.
#pragma once

#include <cctype>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

#include "statement/information.h"
#include "statement/scan.h"
#include "statement_records.h"

namespace velmora::test {

// Reads the field that `text` starts with into tx, whose texts then point into `text`.
inline void model_information(std::string& text, sepa_stmt_tx_t& tx) {
    const std::size_t tag = text.find("\r\n:");
    const bool ended = tag != text.npos;
    if (ended) text.resize(tag);
    for (std::size_t at = 0; (at = text.find("\r\n", at)) != text.npos;)
        text.erase(at, 2);
    std::sscanf(text.c_str(), "%03u", &tx.gvc);

    const auto is_marker = [](const char* p) {
        return *p == '?' && std::isdigit(p[1]) != 0 && std::isdigit(p[2]) != 0;
    };
    const auto number_of = [](const char* p) { return (p[1] - '0') * 10 + p[2] - '0'; };
    char* marker = text.data();
    while (*marker != '\0' && !is_marker(marker))
        ++marker;
    if (!ended || *marker == '\0') return;

    char* const field_end = text.data() + text.size();
    char** target = nullptr;
    std::size_t last_length = 0;
    while (marker != nullptr) {
        const int number = number_of(marker);
        char* const content = marker + 3;
        marker = std::strchr(content, '?');
        while (marker != nullptr && !(is_marker(marker) && number_of(marker) > number))
            marker = std::strchr(marker + 1, '?');
        if (marker != nullptr) {
            char following[16];
            std::snprintf(following, sizeof following, "?%02d", number + 1);
            while (char* later = std::strstr(marker + 1, following))
                marker = later;
        }
        char* const end = marker != nullptr ? marker : field_end;
        const std::string value(content, end);
        *end = '\0';

        if (number == 0) tx.txtext = content;
        if (number == 10) tx.primanota = content;
        if (number == 30) std::snprintf(tx.bank, sizeof tx.bank, "%s", value.c_str());
        if (number == 31) std::snprintf(tx.account, sizeof tx.account, "%s", value.c_str());
        if (number == 32) std::snprintf(tx.name, sizeof tx.name, "%s", value.c_str());
        if (number == 33) {
            const std::string before = tx.name, space = before.size() < 27 ? " " : "";
            std::snprintf(tx.name, sizeof tx.name, "%s", (before + space + value).c_str());
        }
        if (number == 34) std::sscanf(value.c_str(), "%03u", &tx.extcode);
        if (!((number >= 20 && number <= 29) || (number >= 60 && number <= 63))) continue;

        const std::string key = value.substr(0, 5);
        char** keyword = nullptr;
        for (const auto& [name, member] :
             {std::pair("EREF+", &tx.eref), std::pair("KREF+", &tx.kref), std::pair("MREF+", &tx.mref),
              std::pair("CRED+", &tx.cred), std::pair("DEBT+", &tx.debt), std::pair("PURP+", &tx.purp),
              std::pair("COAM+", &tx.coam), std::pair("OAMT+", &tx.oamt), std::pair("SVWZ+", &tx.svwz),
              std::pair("ABWA+", &tx.abwa), std::pair("ABWE+", &tx.abwe)})
            if (key == name) keyword = member;
        if (keyword != nullptr) {
            target = keyword;
            *target = content + 5;
            if (key == "COAM+" || key == "OAMT+") {
                std::size_t at = 0;
                while (at < value.size() && (*target)[at] != ',' && *target + at < field_end)
                    ++at;
                if (at < value.size() && (*target)[at] == ',') (*target)[at] = '.';
            }
        } else if (target == nullptr) {
            target = &tx.purpose;
            *target = content;
        } else {
            const std::string before = *target;
            const bool spaced = last_length < 27 && before.size() != 22;
            const std::string separator = target == &tx.purpose ? "\n" : spaced ? " " : "";
            std::strcpy(*target, (before + separator + value).c_str());
            last_length = value.size();
        }
    }
}

// The fields that the library and the model read from a field ":86:" with what follows it.
inline std::string read_field(std::string text) {
    sepa_stmt_tx_t tx{};
    read_information(tx, text.data(), find_line_end(text.data()));
    Description out;
    describe(out, tx);
    return out.text();
}

inline std::string read_field_plainly(std::string text) {
    sepa_stmt_tx_t tx{};
    model_information(text, tx);
    Description out;
    describe(out, tx);
    return out.text();
}

} // namespace velmora::test
