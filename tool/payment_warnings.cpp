#include "payment_warnings.h"

#include <ctime>

namespace velmora::tool {
namespace {

constexpr std::size_t most_told = 20; // of a kind
constexpr int days_ahead = 15;

std::uint64_t hash_of(Text a, Text b) {
    std::uint64_t hash = 0xCBF29CE484222325;
    const auto mix = [&hash](unsigned char c) { hash = (hash ^ c) * 0x100000001B3; };
    for (const char c : a)
        mix(static_cast<unsigned char>(c));
    mix(0);
    for (const char c : b)
        mix(static_cast<unsigned char>(c));
    hash ^= hash >> 32;
    return hash * 0x9E3779B97F4A7C15 | 1; // never 0, which is an empty place
}

// The local day that is so many days ahead, as yyyy-mm-dd.
void day_ahead(int days, char (&text)[11]) {
    const std::time_t now = std::time(nullptr);
    std::tm day{};
    localtime_r(&now, &day);
    day.tm_mday += days;
    day.tm_hour = 12;
    day.tm_isdst = -1;
    std::mktime(&day);
    std::strftime(text, sizeof text, "%Y-%m-%d", &day);
}

} // namespace

std::uint64_t SeenTexts::line_of(Text a, Text b, std::uint64_t line) {
    if (2 * (used_ + 1) > entries_.size()) grow();
    const std::uint64_t hash = hash_of(a, b);
    const std::size_t mask = entries_.size() - 1;
    std::size_t place = static_cast<std::size_t>(hash >> 8) & mask;
    for (; entries_[place].hash != 0; place = (place + 1) & mask)
        if (entries_[place].hash == hash) return entries_[place].line;
    entries_[place] = {hash, line};
    ++used_;
    return 0;
}

void SeenTexts::grow() {
    List<Entry> before;
    for (const Entry& entry : entries_)
        if (entry.hash != 0) before.add(entry);
    const std::size_t size = entries_.empty() ? 1024 : 2 * entries_.size();
    entries_.reserve(size);
    entries_.set_size(size);
    for (Entry& entry : entries_)
        entry = {};
    for (const Entry& entry : before) {
        std::size_t place = static_cast<std::size_t>(entry.hash >> 8) & (size - 1);
        while (entries_[place].hash != 0)
            place = (place + 1) & (size - 1);
        entries_[place] = entry;
    }
}

void PaymentWarnings::add(const Payment& payment) {
    const Text id = payment.value("id"), date = payment.value("date");
    std::uint64_t before = id.empty() ? 0 : ids_.line_of(id, {}, payment.line);
    if (before > 0) warnings_.add({payment.line, before, What::same_id});
    before = payments_.line_of(payment.value("iban"), payment.value("amount"), payment.line);
    if (before > 0) warnings_.add({payment.line, before, What::same_payment});

    undated_ += date.empty();
    if (date.size() != 10) return;
    for (Date& known : dates_) {
        if (date != known.text) continue;
        ++known.payments;
        return;
    }
    Date& added = dates_.add({{}, 1});
    std::memcpy(added.text, date.data(), date.size());
}

void PaymentWarnings::tell(Text file, const Options& options, std::uint64_t payments) {
    if (options.subcommand() != sub::pay) return;
    const auto tell_one = [file](Text key, Text text, std::uint64_t line = 0) {
        report({.file = file, .line = line, .key = key, .text = text, .level = Level::warning});
    };
    char latest[11];
    day_ahead(days_ahead, latest);
    if (options.given(Opt::date) && undated_ > 0) {
        Date& date = dates_.add({{}, undated_});
        const Text given = piece(options.value(Opt::date), 0, sizeof date.text - 1);
        std::memcpy(date.text, given.data(), given.size());
    }
    for (const Date& date : dates_) {
        if (Text(date.text) <= latest) continue;
        Buffer text;
        text << date.text << " is more than 15 days ahead: banks need not take that (" << date.payments
             << (date.payments == 1 ? " payment)" : " payments)");
        tell_one("date", text.view());
    }
    if (payments == 1)
        tell_one({}, "one payment only: banks may refuse it in a file that opts out of the payee check");
    std::size_t told[2] = {};
    for (const Warning& warning : warnings_) {
        const bool same_id = warning.what == What::same_id;
        if (told[static_cast<std::size_t>(warning.what)]++ >= most_told) continue;
        Buffer text;
        text << (same_id ? "the same end-to-end identification as in line "
                         : "the same account and amount as in line ")
             << warning.before;
        tell_one(same_id ? "id" : "iban", text.view(), warning.line);
    }
    for (const std::size_t count : told) {
        if (count <= most_told) continue;
        Buffer text;
        text << count - most_told << " more of this kind";
        tell_one({}, text.view());
    }
}

} // namespace velmora::tool
