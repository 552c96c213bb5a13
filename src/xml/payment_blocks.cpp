#include "xml/payment_blocks.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace velmora {
namespace {

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};
template <typename T>
using Array = std::unique_ptr<T[], Free>;

template <typename T>
Array<T> allocate(std::size_t count) {
    return Array<T>(static_cast<T*>(std::calloc(count, sizeof(T))));
}

constexpr std::size_t date_length = 10;
constexpr char out_of_memory[] = "Out of memory";

// A date text as two numbers that compare like the text.
struct Date {
    std::uint64_t head = 0;
    std::uint16_t tail = 0;

    explicit Date(std::string_view text) {
        const auto byte = [&](std::size_t i) {
            return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
        };
        for (std::size_t i = 0; i < 8; ++i)
            head = head << 8 | byte(i);
        tail = static_cast<std::uint16_t>(byte(8) << 8 | byte(9));
    }
    friend auto operator<=>(const Date&, const Date&) = default;
};

// One payment on its way into a block. Payments sort by date, sequence type and order of adding.
struct Entry {
    Date date;
    std::uint32_t sequence_type;
    std::uint32_t position;
    const Transaction* transaction;

    bool same_block(const Entry& other) const {
        return date == other.date && sequence_type == other.sequence_type;
    }
};

bool operator<(const Entry& a, const Entry& b) {
    if (a.date != b.date) return a.date < b.date;
    if (a.sequence_type != b.sequence_type) return a.sequence_type < b.sequence_type;
    return a.position < b.position;
}

std::string_view date_of(const sepa_t& message, const Transaction& transaction) {
    const OwnedText& own = transaction[Field::date];
    return own ? own.view() : message.date.view();
}

// A date of the document, in ascending order of the dates.
struct DateEntry {
    std::uint32_t first_position; // of the payment that brought the date
    std::uint32_t before, after;  // its neighbours when it was brought: indexes, or none
    bool has_back_link;
};

constexpr std::uint32_t none = UINT32_MAX;

// Deliberate: not every order of dates makes a document (callers rely on it). A date that arrives before an
// earlier one is linked in front of it through that one's back link, and gets no back link itself. So no date
// can go in front of one without a back link, unless that one is the first of all.
bool dates_can_be_linked(std::span<DateEntry> dates, std::span<std::uint32_t> arrival) {
    for (std::uint32_t i = 0; i < dates.size(); ++i)
        arrival[i] = i;
    std::sort(arrival.begin(), arrival.end(), [&](std::uint32_t a, std::uint32_t b) {
        return dates[a].first_position < dates[b].first_position;
    });

    // Taking the dates away again, last one first, leaves each with the neighbours it had when it came.
    const auto last = static_cast<std::uint32_t>(dates.size() - 1);
    for (std::uint32_t i = 0; i <= last; ++i) {
        dates[i].before = i == 0 ? none : i - 1;
        dates[i].after = i == last ? none : i + 1;
    }
    for (std::size_t i = arrival.size(); i-- > 0;) {
        const DateEntry& date = dates[arrival[i]];
        if (date.before != none) dates[date.before].after = date.after;
        if (date.after != none) dates[date.after].before = date.before;
    }

    for (const std::uint32_t arrived : arrival) {
        DateEntry& date = dates[arrived];
        if (date.after == none) {
            date.has_back_link = date.before != none;
            continue;
        }
        DateEntry& follower = dates[date.after];
        if (date.before != none && !follower.has_back_link) return false;
        follower.has_back_link = true;
        date.has_back_link = false;
    }
    return true;
}

// Whether the dates of the sorted entries can be linked; null when they can.
const char* check_order_of_dates(std::span<const Entry> entries) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < entries.size(); ++i)
        count += i == 0 || entries[i].date != entries[i - 1].date;
    if (count == 1) return nullptr;

    const Array<DateEntry> dates = allocate<DateEntry>(count);
    const Array<std::uint32_t> arrival = allocate<std::uint32_t>(count);
    if (dates == nullptr || arrival == nullptr) return out_of_memory;
    DateEntry* date = dates.get() - 1;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i == 0 || entries[i].date != entries[i - 1].date) (++date)->first_position = entries[i].position;
        date->first_position = std::min(date->first_position, entries[i].position);
    }
    return dates_can_be_linked({dates.get(), count}, {arrival.get(), count})
               ? nullptr
               : "Internal error (pmt not found)";
}

} // namespace

PaymentBlocks::~PaymentBlocks() {
    std::free(blocks_);
    std::free(transactions_);
}

const char* PaymentBlocks::group(const sepa_t& message) {
    const std::size_t total = message.transaction_count;
    if (total == 0) return nullptr;

    const bool by_sequence = message.type == SEPA_MSGTYPE_DDI;
    const Array<Entry> memory = allocate<Entry>(total);
    if (memory == nullptr) return out_of_memory;
    const std::span<Entry> entries(memory.get(), total);
    std::uint32_t position = 0;
    for (const Transaction* t = message.first; t != nullptr; t = t->next, ++position)
        entries[position] = {Date(date_of(message, *t)), by_sequence ? t->sequence_type : no_sequence_type,
                             position, t};
    std::sort(entries.begin(), entries.end());
    if (const char* error = check_order_of_dates(entries)) return error;

    for (std::size_t i = 0; i < total; ++i)
        count_ += i == 0 || !entries[i].same_block(entries[i - 1]);
    blocks_ = allocate<PaymentBlock>(count_).release();
    transactions_ = allocate<const Transaction*>(total).release();
    if (blocks_ == nullptr || transactions_ == nullptr) return out_of_memory;

    PaymentBlock* block = blocks_;
    for (std::size_t begin = 0, end; begin < total; begin = end, ++block) {
        const Entry& first = entries[begin];
        block->sequence_type = first.sequence_type;
        date_of(message, *first.transaction).copy(block->date, date_length);
        for (end = begin; end < total && entries[end].same_block(first); ++end) {
            transactions_[end] = entries[end].transaction;
            block->sum += entries[end].transaction->amount;
        }
        block->transactions = {transactions_ + begin, end - begin};
    }
    return nullptr;
}

} // namespace velmora
