// Loading statement files that a test holds in memory, and statements as text: a line a record, with every
// field that is set.
#pragma once

#include <charconv>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

#include "velmora.h"

namespace velmora::test {

struct FreeParser {
    void operator()(sepa_stmt_parser_t* parser) const { sepa_stmt_parser_free(parser); }
};
using Parser = std::unique_ptr<sepa_stmt_parser_t, FreeParser>;

inline Parser new_parser() {
    return Parser(sepa_stmt_parser_new());
}

// A file without a name in any folder.
class MemoryFile {
public:
    explicit MemoryFile(std::string_view content) : descriptor_(memfd_create("statement", MFD_CLOEXEC)) {
        std::snprintf(path_, sizeof path_, "/proc/self/fd/%d", descriptor_);
        for (std::size_t done = 0; done < content.size();) {
            const ssize_t count = write(descriptor_, content.data() + done, content.size() - done);
            if (count <= 0) std::abort();
            done += static_cast<std::size_t>(count);
        }
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { close(descriptor_); }

    const char* path() const { return path_; }
    int descriptor() const { return descriptor_; }

private:
    int descriptor_;
    char path_[32];
};

inline int load(const Parser& parser, std::string_view content) {
    return sepa_stmt_parser_load(parser.get(), SEPA_STMT_FORMAT_MT940, MemoryFile(content).path());
}

class Description {
public:
    void begin(const char* record) { text_ += record; }
    void end() { text_ += '\n'; }

    void add(const char* name, const char* value) {
        if (value == nullptr) return;
        text_ += std::string(" ") + name + "=\"";
        for (; *value != '\0'; ++value) {
            if (*value == '\n')
                text_ += "\\n";
            else if (*value == '\r')
                text_ += "\\r";
            else
                text_ += *value;
        }
        text_ += '"';
    }
    // Texts in a field of the record are empty when there is none.
    void add_unless_empty(const char* name, const char* value) {
        if (*value != '\0') add(name, value);
    }
    void add(const char* name, double value) {
        char digits[32]; // the fewest that give this number back
        const auto result = std::to_chars(digits, digits + sizeof digits, value);
        text_ += std::string(" ") + name + "=" + std::string(digits, result.ptr);
    }
    void add(const char* name, const struct tm& date) {
        struct tm rest = date;
        rest.tm_mday = rest.tm_mon = rest.tm_year = 0;
        const struct tm nothing {};
        if (std::memcmp(&rest, &nothing, sizeof rest) != 0) text_ += " MORE THAN A DATE";
        char value[64];
        std::snprintf(value, sizeof value, " %s=%d-%02d-%02d", name, date.tm_year + 1900, date.tm_mon + 1,
                      date.tm_mday);
        if (std::memcmp(&date, &nothing, sizeof date) != 0) text_ += value;
    }
    void add_number(const char* name, unsigned value) {
        if (value != 0) text_ += std::string(" ") + name + "=" + std::to_string(value);
    }
    void add_balance(const char* name, const struct tm& date, const char* currency, double saldo) {
        add(name, date);
        if (*currency != '\0') text_ += std::string(" ") + currency;
        if (saldo != 0) add("saldo", saldo);
    }

    const std::string& text() const { return text_; }

private:
    std::string text_;
};

inline void describe(Description& out, const sepa_stmt_tx_t& tx) {
    out.begin("  tx");
    out.add("valuta", tx.valuta);
    out.add("booked", tx.booked);
    out.add_number("reversal", tx.reversal);
    if (tx.amount != 0) out.add("amount", tx.amount);
    out.add_unless_empty("code", tx.code);
    out.add("ref", tx.ref);
    out.add("bankref", tx.bankref);
    out.add_number("gvc", tx.gvc);
    out.add("txtext", tx.txtext);
    out.add("primanota", tx.primanota);
    out.add_unless_empty("bank", tx.bank);
    out.add_unless_empty("account", tx.account);
    out.add_unless_empty("name", tx.name);
    out.add_number("extcode", tx.extcode);
    out.add("purpose", tx.purpose);
    out.add("eref", tx.eref);
    out.add("kref", tx.kref);
    out.add("mref", tx.mref);
    out.add("cred", tx.cred);
    out.add("debt", tx.debt);
    out.add("purp", tx.purp);
    out.add("coam", tx.coam);
    out.add("oamt", tx.oamt);
    out.add("svwz", tx.svwz);
    out.add("abwa", tx.abwa);
    out.add("abwe", tx.abwe);
    out.end();
}

inline std::string describe(const Parser& parser) {
    Description out;
    const sepa_stmt_t* statement = sepa_stmt_parser_getStatement(parser.get());
    for (; statement != nullptr; statement = statement->next) {
        out.begin("statement");
        out.add("ref", statement->ref);
        out.add("account", statement->account);
        out.add_number("number", statement->number);
        out.add_number("page", statement->page);
        out.add_balance("open", statement->openDate, statement->openCurrency, statement->openSaldo);
        out.add_balance("close", statement->closeDate, statement->closeCurrency, statement->closeSaldo);
        out.end();
        const sepa_stmt_tx_t* last = nullptr;
        for (const sepa_stmt_tx_t* tx = statement->first_tx; tx != nullptr; last = tx, tx = tx->next)
            describe(out, *tx);
        if (last != statement->last_tx) return "a list with a wrong end";
    }
    return out.text();
}

} // namespace velmora::test
