#include "payment_rows.h"

#include <velmora.h>

namespace velmora::tool {

Text Payment::value(Text key) const {
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2)
        if (key == pairs[i]) return pairs[i + 1];
    return {};
}

PaymentRows::PaymentRows(const Options& options, const RulebookRow& rulebook, Reader& reader, Text file)
    : options_(options), rulebook_(rulebook), reader_(reader), file_(file),
      messages_(options.subcommand() == sub::pay ? credit_transfer : direct_debit) {
    if (options.given(Opt::decimal)) decimals_.said = options.choice(Opt::decimal) == 0 ? '.' : ',';
}

bool PaymentRows::read_header() {
    const Reader::Result result = reader_.next(row_);
    if (result != Reader::Result::row) {
        report({.file = file_,
                .line = result == Reader::Result::end ? 0 : reader_.lines(),
                .text = result == Reader::Result::end ? Text("empty: a header line is needed")
                                                      : reader_.error()});
        return false;
    }
    if (reader_.delimiter() == ';') decimals_.marks = Mark::point_or_comma;
    bool good = true;
    const auto complain = [&](Text name, Text why) {
        report({.file = file_, .line = row_.line, .key = name, .text = why});
        good = false;
    };
    for (const Text field : row_.fields) {
        const Text name = trim(field);
        bool ignored = false;
        for (Text rest = options_.value(Opt::ignore); !rest.empty();)
            ignored |= equals_ignoring_case(trim(take_until(rest, ',')), name);
        const KeyRow* key = ignored ? nullptr : find_key(name, rulebook_, messages_);
        if (key == nullptr && !ignored) {
            Buffer why;
            why << "no column of a payment under " << rulebook_.name << " (velmora rulebooks "
                << rulebook_.name << " lists them; --ignore leaves one out)";
            complain(name, why.view());
        }
        for (const KeyRow* other : columns_)
            if (key != nullptr && other == key) complain(name, "this column is there twice");
        columns_.add(key);
    }
    return good;
}

const char* PaymentRows::keep(Text text) {
    // Room for all of them was made before.
    const std::size_t start = texts_.size();
    texts_ << text << '\0';
    return texts_.data() + start;
}

bool PaymentRows::take_cell(const KeyRow& key, Text cell, Payment& payment) {
    const Text name = key.name;
    const auto refuse_cell = [&](Text why) {
        report({.file = file_, .line = row_.line, .key = name, .text = why});
        return false;
    };
    if (cell.find('\0') != Text::npos) return refuse_cell("zero byte");
    if (!is_utf8(cell))
        return refuse_cell("not UTF-8: say which --encoding it is, for instance windows-1252");
    const char* value = nullptr;
    if (name == "amount") {
        Text why;
        payment.cents = parse_amount(cell, decimals_, why);
        if (payment.cents < 0) return refuse_cell(why);
        Buffer amount;
        append_cents(amount, payment.cents);
        value = keep(amount.view());
    } else {
        value = keep(cell);
        char compact[64];
        if ((name == "iban" || name == "old_iban") &&
            sepa_iban_normalise(value, compact, sizeof compact) == 1)
            value = keep(compact);
    }
    payment.pairs.add(key.name);
    payment.pairs.add(value);
    return true;
}

PaymentRows::Result PaymentRows::next(Payment& payment) {
    for (;;) {
        const Reader::Result result = reader_.next(row_);
        if (result == Reader::Result::end) return Result::end;
        if (result == Reader::Result::damaged) {
            report({.file = file_, .line = reader_.lines(), .text = reader_.error()});
            return Result::damaged;
        }
        bool empty = true;
        for (const Text field : row_.fields)
            empty &= trim(field).empty();
        if (!empty) break; // spreadsheets like to end with rows of nothing
    }
    payment.line = row_.line;
    payment.pairs.clear();
    payment.cents = 0;
    texts_.clear();
    texts_.reserve(2 * row_.raw.size() + 64 * row_.fields.size() + 64);
    if (row_.fields.size() != columns_.size()) {
        Buffer why;
        why << row_.fields.size() << (row_.fields.size() == 1 ? " field" : " fields")
            << ", but the header has " << columns_.size();
        report({.file = file_, .line = row_.line, .text = why.view()});
        return Result::refused;
    }
    bool good = true;
    for (std::size_t i = 0; i < columns_.size(); ++i)
        if (columns_[i] != nullptr && !row_.fields[i].empty())
            good &= take_cell(*columns_[i], row_.fields[i], payment);
    if (options_.given(Opt::seq) && payment.value("seq").empty()) {
        payment.pairs.add("seq");
        payment.pairs.add(options_.c_str(Opt::seq));
    }
    payment.pairs.add(nullptr);
    return good ? Result::payment : Result::refused;
}

void PaymentRows::refuse(const Payment& payment, Text key, Text why) {
    Finding finding{.file = file_, .line = payment.line, .key = key, .text = why};
    const Text value = payment.value(key);
    sepa_finding_t found{};
    if ((key == "iban" && sepa_iban_explain(value.data(), &found) != 1) ||
        (key == "bic" && sepa_bic_explain(value.data(), &found) != 1)) {
        finding.code = found.code;
        finding.position = found.position;
    }
    // The library's texts repeat the account.
    Buffer masked;
    const std::size_t at = value.empty() ? Text::npos : why.find(value);
    if (options_.given(Opt::mask) && at != Text::npos) {
        masked << piece(why, 0, at);
        append_masked(masked, value);
        masked << piece(why, at + value.size());
        finding.text = masked.view();
    }
    report(finding);
}

} // namespace velmora::tool
