// The rules for the field ":86:" written down as plainly as possible: each step searches and copies whole
// texts, whatever that costs. What the parser does in one pass must come out the same.
#pragma once

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>

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

    const auto number_of = [](const char* p) {
        return std::isdigit(p[1]) && std::isdigit(p[2]) ? (p[1] - '0') * 10 + p[2] - '0' : -1;
    };
    const auto find_greater = [&](char* from, int number) {
        while ((from = std::strchr(from, '?')) != nullptr && number_of(from) <= number)
            ++from;
        return from;
    };
    char* marker = ended ? find_greater(text.data(), -1) : nullptr;
    char* const field_end = text.data() + text.size();
    char** target = nullptr;
    std::size_t last_length = 0;
    while (marker != nullptr) {
        const int number = number_of(marker);
        char* const content = marker + 3;
        marker = find_greater(content, number);
        const std::string following = "?" + std::to_string(101 + number).substr(1);
        while (char* later = marker == nullptr ? nullptr : std::strstr(marker + 1, following.c_str()))
            marker = later;
        char* const end = marker != nullptr ? marker : field_end;
        const std::string value(content, end);
        *end = '\0';

        if (number == 0) tx.txtext = content;
        if (number == 10) tx.primanota = content;
        if (number == 30) std::snprintf(tx.bank, sizeof tx.bank, "%s", value.c_str());
        if (number == 31) std::snprintf(tx.account, sizeof tx.account, "%s", value.c_str());
        std::string name = tx.name;
        if (number == 32) name = value;
        if (number == 33) name += (name.size() < 27 ? " " : "") + value;
        std::snprintf(tx.name, sizeof tx.name, "%s", name.c_str());
        if (number == 34) std::sscanf(value.c_str(), "%03u", &tx.extcode);
        if (!((number >= 20 && number <= 29) || (number >= 60 && number <= 63))) continue;

        using Tx = sepa_stmt_tx_t;
        static const std::map<std::string, char* Tx::*> keywords = {
            {"EREF+", &Tx::eref}, {"KREF+", &Tx::kref}, {"MREF+", &Tx::mref}, {"CRED+", &Tx::cred},
            {"DEBT+", &Tx::debt}, {"PURP+", &Tx::purp}, {"COAM+", &Tx::coam}, {"OAMT+", &Tx::oamt},
            {"SVWZ+", &Tx::svwz}, {"ABWA+", &Tx::abwa}, {"ABWE+", &Tx::abwe}};
        if (const auto keyword = keywords.find(value.substr(0, 5)); keyword != keywords.end()) {
            target = &(tx.*keyword->second);
            *target = content + 5;
            if (keyword->first == "COAM+" || keyword->first == "OAMT+") {
                char* const end_of_search = std::min(*target + value.size(), field_end);
                char* const comma = std::find(*target, end_of_search, ',');
                if (comma != end_of_search) *comma = '.';
            }
        } else if (target == nullptr) {
            target = &tx.purpose;
            *target = content;
        } else {
            const bool spaced = last_length < 27 && std::strlen(*target) != 22;
            const char* const separator = target == &tx.purpose ? "\n" : spaced ? " " : "";
            std::strcat(std::strcat(*target, separator), value.c_str());
            last_length = value.size();
        }
    }
}

// The fields that the library and the model read from a field ":86:" with what follows it.
inline std::string read_field(std::string text) {
    sepa_stmt_tx_t tx{};
    read_information(tx, text.data(), find_line_end(text.data()));
    return describe(tx);
}

inline std::string read_field_plainly(std::string text) {
    sepa_stmt_tx_t tx{};
    model_information(text, tx);
    return describe(tx);
}

} // namespace velmora::test
