// Loading statement files that a test holds in memory, and statements as text: a line a record, with every
// field that is set.
#pragma once

#include <gtest/gtest.h>

#include <charconv>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "memory_file.h"
#include "velmora.h"

namespace velmora::test {

struct FreeParser {
    void operator()(sepa_stmt_parser_t* parser) const { sepa_stmt_parser_free(parser); }
};
using Parser = std::unique_ptr<sepa_stmt_parser_t, FreeParser>;

inline Parser new_parser() {
    return Parser(sepa_stmt_parser_new());
}

// ------------------------------------------------------------------------------------------------------
// Small files and their records

struct Case {
    std::string name, file, records;
};

inline void replace_all(std::string& text, std::string_view from, std::string_view to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size())
        text.replace(at, from.size(), to);
}

inline const std::filesystem::path source_dir = VELMORA_SOURCE_DIR;

// The form of the cases is told in statements.txt.
inline std::vector<Case> read_cases(const char* path, const std::string& line_end) {
    std::ifstream in(source_dir / "tests/data/statements" / path);
    std::vector<Case> cases;
    bool in_file = false;
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with("== "))
            cases.push_back({line.substr(3), "", ""});
        else if (in_file && line != "=>")
            cases.back().file += line + line_end;
        else if (!cases.empty() && !line.empty() && line != "=>")
            cases.back().records += line + "\n";
        in_file = line.starts_with("== ") || (in_file && line != "=>");
    }
    for (Case& test : cases) {
        replace_all(test.file, "\\" + line_end, "");
        replace_all(test.file, "\\r", "\r");
        replace_all(test.file, "\\n", "\n");
        replace_all(test.file, "\\0", {"\0", 1});
        for (std::string* text : {&test.file, &test.records})
            for (std::size_t at = 0; (at = text->find("\\x", at)) != text->npos; ++at)
                text->replace(at, 4, 1, static_cast<char>(std::stoi(text->substr(at + 2, 2), nullptr, 16)));
    }
    EXPECT_FALSE(cases.empty()) << path;
    return cases;
}

// ------------------------------------------------------------------------------------------------------
// Records as text

inline int load(const Parser& parser, std::string_view content) {
    return sepa_stmt_parser_load(parser.get(), SEPA_STMT_FORMAT_MT940, MemoryFile(content).path());
}

// A line that grows by the fields of a record; one that is null or zero is not set.
struct Description {
    std::string text;

    using Texts = std::initializer_list<std::pair<const char*, const char*>>;
    void add(Texts texts) {
        for (const auto& [name, value] : texts) {
            if (value == nullptr) continue;
            text.append(" ").append(name).append("=\"");
            for (const char c : std::string_view(value))
                text += c == '\n' ? "\\n" : c == '\r' ? "\\r" : std::string(1, c);
            text += '"';
        }
    }
    template <typename Number>
    void add(const char* name, Number value) {
        char digits[32]; // the fewest that give this number back
        const auto result = std::to_chars(digits, digits + sizeof digits, value);
        if (value != 0) text.append(" ").append(name).append("=").append(digits, result.ptr);
    }
    void add(const char* name, double value) { // so, too, which not every std::to_chars can
        char best[512] = "";
        for (const char* format : {"%.*f", "%.*e"}) {
            char digits[512];
            int precision = 0;
            do
                std::snprintf(digits, sizeof digits, format, precision++, value);
            while (std::strtod(digits, nullptr) != value);
            if (!*best || std::strlen(digits) < std::strlen(best)) std::strcpy(best, digits);
        }
        if (value != 0) text.append(" ").append(name).append("=").append(best);
    }
    void add(const char* name, const struct tm& date) {
        struct tm only_date {};
        if (std::memcmp(&date, &only_date, sizeof date) == 0) return;
        only_date.tm_mday = date.tm_mday, only_date.tm_mon = date.tm_mon, only_date.tm_year = date.tm_year;
        char value[64];
        std::snprintf(value, sizeof value, " %s=%d-%02d-%02d%s", name, date.tm_year + 1900, date.tm_mon + 1,
                      date.tm_mday, std::memcmp(&date, &only_date, sizeof date) ? " MORE THAN A DATE" : "");
        text += value;
    }
    void add_balance(const char* name, const struct tm& date, std::string currency, double saldo) {
        add(name, date);
        if (!currency.empty()) text += " " + currency;
        add("saldo", saldo);
    }
};

// A text in a field of the record is empty when there is none.
inline const char* unless_empty(const char* field) {
    return *field == '\0' ? nullptr : field;
}

inline std::string describe(const sepa_stmt_tx_t& tx) {
    Description out{"  tx"};
    out.add("valuta", tx.valuta);
    out.add("booked", tx.booked);
    out.add("reversal", tx.reversal);
    out.add("amount", tx.amount);
    out.add({{"code", unless_empty(tx.code)}, {"ref", tx.ref}, {"bankref", tx.bankref}});
    out.add("gvc", tx.gvc);
    out.add({{"txtext", tx.txtext}, {"primanota", tx.primanota}, {"bank", unless_empty(tx.bank)}});
    out.add({{"account", unless_empty(tx.account)}, {"name", unless_empty(tx.name)}});
    out.add("extcode", tx.extcode);
    out.add({{"purpose", tx.purpose}, {"eref", tx.eref}, {"kref", tx.kref}, {"mref", tx.mref}});
    out.add({{"cred", tx.cred}, {"debt", tx.debt}, {"purp", tx.purp}, {"coam", tx.coam}, {"oamt", tx.oamt}});
    out.add({{"svwz", tx.svwz}, {"abwa", tx.abwa}, {"abwe", tx.abwe}});
    return out.text + "\n";
}

inline std::string describe(const sepa_stmt_t& statement) {
    Description out{"statement"};
    out.add({{"ref", statement.ref}, {"account", statement.account}});
    out.add("number", statement.number);
    out.add("page", statement.page);
    out.add_balance("open", statement.openDate, statement.openCurrency, statement.openSaldo);
    out.add_balance("close", statement.closeDate, statement.closeCurrency, statement.closeSaldo);
    out.text += "\n";
    const sepa_stmt_tx_t* last = nullptr;
    for (const sepa_stmt_tx_t* tx = statement.first_tx; tx != nullptr; last = tx, tx = tx->next)
        out.text += describe(*tx);
    return last == statement.last_tx ? out.text : "a list with a wrong end";
}

inline std::string describe(const Parser& parser) {
    std::string text;
    const sepa_stmt_t* statement = sepa_stmt_parser_getStatement(parser.get());
    for (; statement != nullptr; statement = statement->next)
        text += describe(*statement);
    return text;
}

inline std::string describe(const sepa_stmt_tx_info_t& info) {
    Description out{"    info"};
    out.add("debit", info.debit);
    out.add({{"status", unless_empty(info.status)}, {"currency", unless_empty(info.currency)}});
    out.add("signedAmount", info.signedAmount);
    out.add("entry", info.entry), out.add("part", info.part), out.add("parts", info.parts);
    out.add("entryAmount", info.entryAmount);
    out.add("batchCount", info.batchCount);
    out.add({{"batchMessageId", info.batchMessageId}, {"batchPaymentId", info.batchPaymentId}});
    out.add({{"fullName", info.fullName}, {"ultimateDebtor", info.ultimateDebtor}});
    out.add({{"ultimateCreditor", info.ultimateCreditor}, {"returnReason", info.returnReason}});
    out.add({{"returnText", info.returnText}, {"creditorReference", info.creditorReference}});
    out.add({{"domain", unless_empty(info.domain)}, {"family", unless_empty(info.family)}});
    out.add({{"subFamily", unless_empty(info.subFamily)}, {"proprietaryCode", info.proprietaryCode}});
    out.add({{"proprietaryIssuer", info.proprietaryIssuer}});
    out.add("charges", info.charges);
    out.add({{"chargesCurrency", unless_empty(info.chargesCurrency)}});
    out.add("instructedAmount", info.instructedAmount);
    out.add(
        {{"instructedCurrency", unless_empty(info.instructedCurrency)}, {"exchangeRate", info.exchangeRate}});
    out.add({{"messageId", info.messageId}, {"paymentId", info.paymentId}});
    out.add(
        {{"instructionId", info.instructionId}, {"transactionId", info.transactionId}, {"uetr", info.uetr}});
    out.add({{"entryReference", info.entryReference}, {"proprietaryReference", info.proprietaryReference}});
    out.add({{"text", info.text}});
    return out.text + "\n";
}

inline std::string describe(const sepa_stmt_info_t& info) {
    Description out{"  info"};
    out.add("kind", info.kind), out.add("version", info.version);
    out.add({{"messageId", info.messageId}, {"created", info.created}, {"from", info.from}, {"to", info.to}});
    out.add("lastPage", info.lastPage);
    out.add({{"copy", unless_empty(info.copy)}, {"owner", info.owner}, {"bic", unless_empty(info.bic)}});
    out.add({{"currency", unless_empty(info.currency)}, {"text", info.text}});
    out.add("utf8", info.utf8);
    out.add("entries", info.entries), out.add("entrySum", info.entrySum);
    out.add("creditEntries", info.creditEntries), out.add("creditSum", info.creditSum);
    out.add("debitEntries", info.debitEntries), out.add("debitSum", info.debitSum);
    for (std::uint32_t i = 0; i < info.balanceCount; ++i) {
        const sepa_stmt_balance_t& balance = info.balances[i];
        out.text += std::string("\n  balance ") + balance.code;
        out.add_balance("date", balance.date, balance.currency, balance.amount);
        out.add("interim", balance.interim);
    }
    return out.text + "\n";
}

// With what is known beyond the records of the first format.
inline std::string describe_all(const Parser& parser) {
    std::string text;
    const sepa_stmt_t* statement = sepa_stmt_parser_getStatement(parser.get());
    for (; statement != nullptr; statement = statement->next) {
        const std::string record = describe(*statement);
        text.append(record, 0, record.find('\n') + 1);
        if (const sepa_stmt_info_t* info = sepa_stmt_parser_getInfo(parser.get(), statement))
            text += describe(*info);
        for (const sepa_stmt_tx_t* tx = statement->first_tx; tx != nullptr; tx = tx->next)
            text += describe(*tx) + describe(*sepa_stmt_parser_getTxInfo(parser.get(), tx));
    }
    return text;
}

} // namespace velmora::test
