#include "plot.h"

#include <algorithm>
#include <cstdio>
#include <new>

#include "written_file.h"

namespace velmora::tool {
namespace {

// Pixels.
constexpr double width = 960, height = 420, left = 96, right = 24, top = 56, balance_height = 220, gap = 34,
                 bookings_height = 62;
constexpr double plot_width = width - left - right;
constexpr double bookings_top = top + balance_height + gap;

// Days since 1970-01-01 of a date of the Gregorian calendar, and back.
std::int32_t day_number(int year, int month, int day) {
    year -= month <= 2;
    const int era = (year >= 0 ? year : year - 399) / 400;
    const int year_of_era = year - era * 400;
    const int day_of_year = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    return era * 146097 + year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year - 719468;
}

struct Day {
    int year, month, day;
};

Day day_of(std::int32_t number) {
    number += 719468;
    const int era = (number >= 0 ? number : number - 146096) / 146097;
    const int day_of_era = number - era * 146097;
    const int year_of_era = (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / 146096) / 365;
    const int day_of_year = day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
    const int shifted = (5 * day_of_year + 2) / 153;
    const int month = shifted < 10 ? shifted + 3 : shifted - 9;
    return {year_of_era + era * 400 + (month <= 2), month, day_of_year - (153 * shifted + 2) / 5 + 1};
}

std::int32_t day_number(const std::tm& day) {
    return day_number(day.tm_year + 1900, day.tm_mon + 1, day.tm_mday);
}

void append_pixels(Buffer& out, double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", value);
    out << Text(text);
}

void append_day(Buffer& out, std::int32_t number) {
    const Day day = day_of(number);
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d", day.year, day.month, day.day);
    out << Text(text);
}

// Whole units with separators.
void append_units(Buffer& out, double value) {
    if (value < 0) out << "\xE2\x88\x92"; // a minus as wide as the digits
    append_grouped(out, static_cast<std::uint64_t>(hundred_thousandths(value < 0 ? -value : value) + 50'000) /
                            100'000);
}

void append_xml(Buffer& out, Text text) {
    while (!text.empty()) {
        const std::size_t length = utf8_length(text);
        const char c = text.front();
        if (c == '<' || c == '&')
            out << (c == '<' ? Text("&lt;") : Text("&amp;"));
        else if (length > 0 && static_cast<unsigned char>(c) >= ' ')
            out << piece(text, 0, length);
        text.remove_prefix(length > 0 ? length : 1);
    }
}

void append_line(Buffer& out, Text style, double x1, double y1, double x2, double y2) {
    out << "<line class=\"" << style << "\" x1=\"";
    append_pixels(out, x1);
    out << "\" y1=\"";
    append_pixels(out, y1);
    out << "\" x2=\"";
    append_pixels(out, x2);
    out << "\" y2=\"";
    append_pixels(out, y2);
    out << "\"/>\n";
}

void begin_text(Buffer& out, Text style, double x, double y) {
    out << "<text class=\"" << style << "\" x=\"";
    append_pixels(out, x);
    out << "\" y=\"";
    append_pixels(out, y);
    out << "\">";
}

// 1, 2 or 5 times a power of ten, of which at most `most` fit into the range.
double tick_step(double range, int most) {
    double step = 1;
    for (int i = 0; range / step > most; ++i)
        step *= i % 3 == 1 ? 2.5 : 2;
    return step;
}

// The first tick at or below a value.
double floor_to(double value, double step) {
    auto count = static_cast<std::int64_t>(value / step);
    if (static_cast<double>(count) * step > value) --count;
    return static_cast<double>(count) * step;
}

double units(std::int64_t amount) {
    return static_cast<double>(amount) / 100'000;
}

} // namespace

// What of the data is drawn where.
struct Plot::Frame {
    std::int32_t first_day, last_day; // the last one ends at the right edge
    double lowest, highest, step;     // of the balance, in units of the currency
    double shift;                     // down, for further accounts

    [[nodiscard]] double x(double day) const {
        return left + plot_width * (day - first_day) / (last_day + 1 - first_day);
    }
    [[nodiscard]] double y(double balance) const {
        return shift + top + balance_height * (highest - balance) / (highest - lowest);
    }
};

Plot::~Plot() {
    for (Account* account : accounts_) {
        account->~Account();
        wipe_and_free(account, sizeof *account);
    }
}

Plot::Account& Plot::account_of(const Statement& statement, const Options& options) {
    Buffer name;
    const char* number = statement.record->account == nullptr ? "" : statement.record->account;
    options.given(Opt::mask) ? append_masked(name, number) : void(name << Text(number));
    const Text shown = piece(name.view(), 0, sizeof(Account::name) - 1);
    for (Account* account : accounts_)
        if (shown == account->name && Text(statement.record->openCurrency) == account->currency)
            return *account;
    auto* account = new (allocate(sizeof(Account))) Account{};
    if (!shown.empty()) std::memcpy(account->name, shown.data(), shown.size());
    std::memcpy(account->currency, statement.record->openCurrency, sizeof account->currency);
    accounts_.add(account);
    return *account;
}

void Plot::add(const Statement& statement, const Options& options) {
    const sepa_stmt_t& record = *statement.record;
    if (record.openDate.tm_mday == 0 || record.openCurrency[0] == '\0') return;
    Account& account = account_of(statement, options);
    const auto add_event = [&account](std::int32_t day, std::int64_t balance, std::int64_t amount,
                                      bool is_booking) {
        account.events.add(
            {day, static_cast<std::uint32_t>(account.events.size()), balance, amount, is_booking});
    };
    std::int64_t balance = hundred_thousandths(record.openSaldo);
    add_event(day_number(record.openDate), balance, 0, false);
    for (const sepa_stmt_tx_t* booking = record.first_tx; booking != nullptr; booking = booking->next) {
        const sepa_stmt_tx_info_t* info = sepa_stmt_parser_getTxInfo(statement.file->parser, booking);
        const std::tm& day = booking->booked.tm_mday > 0 ? booking->booked : booking->valuta;
        if (!is_booked(info) || info == nullptr || info->signedAmount == INT64_MAX || day.tm_mday == 0)
            continue;
        if (__builtin_add_overflow(balance, info->signedAmount, &balance)) return;
        add_event(day_number(day), balance, info->signedAmount, true);
    }
    if (record.closeDate.tm_mday > 0)
        add_event(day_number(record.closeDate), hundred_thousandths(record.closeSaldo), 0, false);
}

// Steps: the balance stays until something happens.
void Plot::draw_balance(Buffer& out, const Account& account, const Frame& frame) {
    Buffer steps;
    bool began = false;
    double last_y = 0;
    for (std::size_t i = 0; i < account.events.size(); ++i) {
        const Event& event = account.events[i];
        // What happened before the first day only tells where the line begins.
        const bool before = event.day < frame.first_day;
        const bool superseded =
            i + 1 < account.events.size() && (account.events[i + 1].day == event.day ||
                                              (before && account.events[i + 1].day <= frame.first_day));
        if (event.day > frame.last_day) break;
        if (superseded) continue;
        const double x = frame.x(before ? frame.first_day : event.day), y = frame.y(units(event.balance));
        if (!began) {
            steps << 'M';
            append_pixels(steps, x);
            steps << ' ';
            append_pixels(steps, y);
        } else {
            steps << 'H';
            append_pixels(steps, x);
            if (y != last_y) {
                steps << 'V';
                append_pixels(steps, y);
            }
        }
        began = true;
        last_y = y;
    }
    steps << 'H';
    append_pixels(steps, frame.x(frame.last_day + 1));
    const double zero = frame.y(0);
    const Text start = piece(steps.view(), 1, steps.view().find(' ') - 1);
    out << "<path class=\"area\" d=\"" << steps.view() << 'V';
    append_pixels(out, zero);
    out << 'H' << start << "Z\"/>\n<path class=\"line\" d=\"" << steps.view() << "\"/>\n";
}

// The credits and debits of each day, up and down.
void Plot::draw_bookings(Buffer& out, const Account& account, const Frame& frame) {
    struct DaySum {
        std::int32_t day;
        std::int64_t credits, debits;
        std::uint32_t bookings;
    };
    List<DaySum> days;
    double largest = 0;
    for (const Event& event : account.events) {
        if (!event.is_booking || event.day < frame.first_day || event.day > frame.last_day) continue;
        if (days.empty() || days[days.size() - 1].day != event.day) days.add({event.day, 0, 0, 0});
        DaySum& day = days[days.size() - 1];
        (event.amount < 0 ? day.debits : day.credits) += event.amount;
        ++day.bookings;
        largest = std::max({largest, units(day.credits), -units(day.debits)});
    }
    const double middle = frame.shift + bookings_top + bookings_height / 2;
    append_line(out, "axis", left, middle, width - right, middle);
    begin_text(out, "label end", left - 10, middle - 3);
    out << "bookings</text>\n";
    begin_text(out, "label end", left - 10, middle + 13);
    out << "\xC2\xB1";
    append_units(out, largest);
    out << "</text>\n";
    const double day_width = plot_width / (frame.last_day + 1 - frame.first_day);
    const double bar = std::max(1.0, std::min(14.0, day_width * 0.6));
    for (const DaySum& day : days) {
        out << "<g><title>";
        append_day(out, day.day);
        out << ": " << day.bookings << (day.bookings == 1 ? " booking" : " bookings");
        for (const std::int64_t sum : {day.credits, day.debits}) {
            if (sum == 0) continue;
            out << (sum > 0 ? ", +" : ", ");
            append_amount(out, sum);
        }
        out << "</title>";
        for (const std::int64_t sum : {day.credits, day.debits}) {
            if (sum == 0) continue;
            const double size =
                std::max(1.0, bookings_height / 2 * (sum < 0 ? -units(sum) : units(sum)) / largest);
            out << "<rect class=\"" << (sum > 0 ? "credit" : "debit") << "\" x=\"";
            append_pixels(out, frame.x(day.day + 0.5) - bar / 2);
            out << "\" y=\"";
            append_pixels(out, sum > 0 ? middle - size : middle);
            out << "\" width=\"";
            append_pixels(out, bar);
            out << "\" height=\"";
            append_pixels(out, size);
            out << "\"/>";
        }
        out << "</g>\n";
    }
}

namespace {

// Days or months, at most a dozen.
template <typename Frame>
void draw_days(Buffer& out, const Frame& frame) {
    const std::int32_t days = frame.last_day + 1 - frame.first_day;
    constexpr std::int32_t day_steps[] = {1, 2, 7, 14};
    constexpr int month_steps[] = {1, 3, 12, 60, 1200};
    const double label_y = frame.shift + top + balance_height + 18, bottom = label_y - 14;
    const auto tick = [&](std::int32_t day, std::size_t shown) {
        append_line(out, "axis", frame.x(day), bottom - 4, frame.x(day), bottom);
        begin_text(out, "label", frame.x(day) + 3, label_y);
        Buffer text;
        append_day(text, day);
        out << (shown == 5 ? piece(text.view(), 5) : piece(text.view(), 0, shown)) << "</text>\n";
    };
    for (const std::int32_t step : day_steps) {
        if (days / step > 12) continue;
        const bool one_year = day_of(frame.first_day).year == day_of(frame.last_day).year;
        for (std::int32_t day = frame.first_day; day <= frame.last_day; day += step)
            tick(day, one_year && days / step > 7 ? 5 : 10);
        return;
    }
    for (const int step : month_steps) {
        if (days / 30 / step > 12) continue;
        const Day first = day_of(frame.first_day);
        for (int month = (first.year * 12 + first.month - 1) / step * step;; month += step) {
            const std::int32_t day = day_number(month / 12, month % 12 + 1, 1);
            if (day > frame.last_day) return;
            if (day >= frame.first_day) tick(day, step >= 12 ? 4 : 7);
        }
    }
}

} // namespace

void Plot::draw(Buffer& out, const Account& account, const Frame& frame) {
    begin_text(out, "title", left, frame.shift + 26);
    append_xml(out, account.name);
    out << "</text>\n";
    begin_text(out, "label", left, frame.shift + 44);
    out << "balance in ";
    append_xml(out, account.currency);
    out << ", ";
    append_day(out, frame.first_day);
    out << " to ";
    append_day(out, frame.last_day);
    out << "</text>\n";
    const int ticks = static_cast<int>((frame.highest - frame.lowest + frame.step / 2) / frame.step);
    for (int tick = 0; tick <= ticks; ++tick) {
        const double value = frame.lowest + tick * frame.step;
        const bool zero = value > -frame.step / 2 && value < frame.step / 2;
        append_line(out, zero ? "axis" : "grid", left, frame.y(value), width - right, frame.y(value));
        begin_text(out, "label end", left - 10, frame.y(value) + 4);
        append_units(out, zero ? 0 : value);
        out << "</text>\n";
    }
    draw_days(out, frame);
    draw_balance(out, account, frame);
    draw_bookings(out, account, frame);
}

void Plot::write(Text path, const Options& options) {
    Buffer body;
    double shift = 0;
    for (Account* account : accounts_) {
        std::sort(account->events.begin(), account->events.end(), [](const Event& a, const Event& b) {
            return a.day != b.day ? a.day < b.day : a.order < b.order;
        });
        Frame frame{account->events[0].day, account->events[account->events.size() - 1].day, 0, 0, 0, shift};
        const auto limit = [&options](Opt option, std::int32_t day, bool from) {
            if (!options.given(option)) return day;
            const Text text = options.value(option);
            const auto number = [text](std::size_t at, std::size_t length) {
                return static_cast<int>(small_number(piece(text, at, length)));
            };
            const std::int32_t wanted = day_number(number(0, 4), number(5, 2), number(8, 2));
            return from ? std::max(day, wanted) : std::min(day, wanted);
        };
        frame.first_day = limit(Opt::from, frame.first_day, true);
        frame.last_day = limit(Opt::to, frame.last_day, false);
        if (frame.last_day < frame.first_day) continue;
        // Zero belongs to the picture: without it a small change looks large.
        for (const Event& event : account->events) {
            if (event.day > frame.last_day) break;
            frame.lowest = std::min(frame.lowest, units(event.balance));
            frame.highest = std::max(frame.highest, units(event.balance));
        }
        frame.step = tick_step(std::max(1.0, frame.highest - frame.lowest), 6);
        frame.lowest = floor_to(frame.lowest, frame.step);
        frame.highest = -floor_to(-frame.highest, frame.step);
        if (frame.highest <= frame.lowest) frame.highest = frame.lowest + frame.step;
        draw(body, *account, frame);
        shift += height;
    }
    if (shift == 0) fail(Exit::refused, path, "there is no balance to draw");

    Buffer out;
    out << "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 ";
    append_pixels(out, width);
    out << ' ';
    append_pixels(out, shift);
    out << "\" width=\"";
    append_pixels(out, width);
    out << "\" height=\"";
    append_pixels(out, shift);
    out << "\" role=\"img\" aria-label=\"Balance over time\">\n<style>"
           "text{font-family:system-ui,'DejaVu Sans',sans-serif;fill:#1f2933}"
           ".title{font-size:17px;font-weight:600}.label{font-size:12px;fill:#616e7c}.end{text-anchor:end}"
           ".grid{stroke:#e4e7eb}.axis{stroke:#9aa5b1}.line{fill:none;stroke:#1f5fa8;stroke-width:2}"
           ".area{fill:#1f5fa8;fill-opacity:.12}.credit{fill:#2f855a}.debit{fill:#c53030}</style>\n"
           "<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n"
        << body.view() << "</svg>\n";
    WrittenFile file;
    file.prepare(path, out.view());
    file.publish();
}

} // namespace velmora::tool
