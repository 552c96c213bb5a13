#include "xml/payment_blocks.h"

#include <algorithm>
#include <bit>
#include <compare>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "base/amount.h"
#include "base/calendar.h"

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

constexpr char out_of_memory[] = "Out of memory";

// What the payments of a block have in common. The date stands in numbers that compare like its text.
struct BlockKey {
    std::uint64_t date_head;
    std::uint16_t date_tail;
    SequenceType sequence_type;
    std::uint64_t service;

    BlockKey(std::string_view date, SequenceType type, const Service& kind)
        : date_head(0), date_tail(0), sequence_type(type), service(rank(kind)) {
        std::memcpy(&date_head, date.data(), sizeof date_head);
        std::memcpy(&date_tail, date.data() + sizeof date_head, sizeof date_tail);
        if constexpr (std::endian::native == std::endian::little) {
            date_head = __builtin_bswap64(date_head);
            date_tail = __builtin_bswap16(date_tail);
        }
    }
    friend auto operator<=>(const BlockKey&, const BlockKey&) = default;

    bool same_date(const BlockKey& other) const {
        return date_head == other.date_head && date_tail == other.date_tail;
    }
    std::uint64_t hash() const {
        constexpr std::uint64_t factor = 0x9E3779B97F4A7C15;
        return (date_head ^ std::uint64_t{date_tail} << 16 ^ sequence_type ^ service * factor) * factor;
    }

private:
    // A number that compares like the places of services among the blocks.
    static std::uint64_t rank(const Service& service) {
        const std::uint64_t type = service.instant ? 2 : service.urgent ? 1 : 0;
        std::uint64_t time = 0, category = 0;
        if (!service.time.empty()) {
            const auto two = [&](std::size_t at) {
                return static_cast<unsigned>(digits_at(service.time, at, 2));
            };
            time = 1 + (two(0) * 60 + two(3)) * 60 + two(6);
        }
        for (const char c : service.category)
            category = category << 8 | static_cast<unsigned char>(c);
        return type << 56 | time << 32 | category;
    }
};

// A block while its payments are counted.
struct Group {
    BlockKey key;
    std::uint32_t first_position; // in the message, of the payment that brought it
    std::uint32_t count;
    std::uint32_t next;  // where its next payment goes
    std::uint32_t block; // its place among the finished blocks
    std::string_view date;
    Service service;
};

// How a payment is to be carried out by itself and by the message's defaults.
Service service_of(const StoredPayment& payment, const Defaults& defaults) {
    const auto own_or = [&](Field field, const OwnedText& other) {
        return payment.has(fields(field)) ? payment[field] : other.view();
    };
    Service service;
    service.instant = payment.numbers().instant;
    service.urgent = payment.numbers().urgent;
    if (!service.instant && !service.urgent) {
        service.instant = defaults.instant;
        service.urgent = defaults.urgent;
    }
    if (service.instant) service.time = own_or(Field::execution_time, defaults.time);
    service.category = own_or(Field::category_purpose, defaults.category);
    return service;
}

// The groups in the order of their first payments, found by their key.
class Groups {
public:
    // False without memory.
    bool allocate_for(std::size_t payments) {
        mask_ = std::bit_ceil(payments * 2) - 1;
        groups_ = allocate<Group>(payments); // nearly always far too many: what is not touched costs nothing
        slots_ = allocate<std::uint32_t>(mask_ + 1);
        return groups_ != nullptr && slots_ != nullptr;
    }

    std::uint32_t find_or_add(const BlockKey& key, std::string_view date, const Service& service,
                              std::uint32_t position) {
        std::size_t slot = key.hash() >> 32 & mask_;
        for (; slots_[slot] != 0; slot = (slot + 1) & mask_)
            if (groups_[slots_[slot] - 1].key == key) return slots_[slot] - 1;
        groups_[count_] = {key, position, 0, 0, 0, date, service};
        return (slots_[slot] = ++count_) - 1;
    }

    Group& operator[](std::uint32_t index) const { return groups_[index]; }
    std::uint32_t count() const { return count_; }

private:
    Array<Group> groups_;
    Array<std::uint32_t> slots_;
    std::size_t mask_ = 0;
    std::uint32_t count_ = 0;
};

// A date of the document, in ascending order of the dates.
struct DateEntry {
    std::uint32_t first_position; // of the payment that brought the date
    std::uint32_t before, after;  // its neighbours when it was brought: indexes, or none
    bool has_back_link;
};

constexpr std::uint32_t none = UINT32_MAX;

// Deliberate: not every order of dates makes a document; programs expect the failure. A date that arrives
// before an earlier one is linked in front of it through that one's back link, and gets no back link itself.
// So no date can go in front of one without a back link, unless that one is the first of all.
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

// Whether the dates of the sorted groups can be linked; null when they can.
const char* check_order_of_dates(const Groups& groups, std::span<const std::uint32_t> sorted) {
    const Array<DateEntry> dates = allocate<DateEntry>(sorted.size());
    const Array<std::uint32_t> arrival = allocate<std::uint32_t>(sorted.size());
    if (dates == nullptr || arrival == nullptr) return out_of_memory;
    std::size_t count = 0;
    const BlockKey* last = nullptr;
    for (const std::uint32_t index : sorted) {
        const Group& group = groups[index];
        if (last == nullptr || !group.key.same_date(*last))
            dates[count++].first_position = group.first_position;
        std::uint32_t& first = dates[count - 1].first_position;
        first = std::min(first, group.first_position);
        last = &group.key;
    }
    return dates_can_be_linked({dates.get(), count}, {arrival.get(), count})
               ? nullptr
               : "Internal error (pmt not found)";
}

} // namespace

PaymentBlocks::~PaymentBlocks() {
    std::free(blocks_);
    std::free(payments_);
}

const char* PaymentBlocks::group(const sepa_t& message, const Rulebook& rulebook,
                                 std::string_view default_date) {
    const std::size_t total = message.payments.count();
    if (total == 0) return nullptr;

    Groups groups;
    const Array<std::uint32_t> group_of = allocate<std::uint32_t>(total);
    if (group_of == nullptr || !groups.allocate_for(total)) return out_of_memory;
    const bool by_sequence = message.type == SEPA_MSGTYPE_DDI;
    std::uint32_t position = 0, current = 0;
    for (const StoredPayment* payment = message.payments.first(); payment != nullptr;
         payment = payment->next(), ++position) {
        const std::string_view own = (*payment)[Field::date];
        const std::string_view date = own.data() != nullptr ? own : default_date;
        const Service service =
            knows_extended_keys(rulebook) ? service_of(*payment, message.defaults) : Service();
        const BlockKey key(date, by_sequence ? payment->numbers().sequence_type : no_sequence_type, service);
        if (position == 0 || groups[current].key != key)
            current = groups.find_or_add(key, date, service, position);
        ++groups[current].count;
        group_of[position] = current;
    }

    const Array<std::uint32_t> order = allocate<std::uint32_t>(groups.count());
    if (order == nullptr) return out_of_memory;
    const std::span<std::uint32_t> sorted(order.get(), groups.count());
    for (std::uint32_t i = 0; i < groups.count(); ++i)
        sorted[i] = i;
    std::sort(sorted.begin(), sorted.end(),
              [&](std::uint32_t a, std::uint32_t b) { return groups[a].key < groups[b].key; });
    if (!is_strict(rulebook))
        if (const char* error = check_order_of_dates(groups, sorted)) return error;

    blocks_ = allocate<PaymentBlock>(groups.count()).release();
    payments_ = allocate<const StoredPayment*>(total).release();
    if (blocks_ == nullptr || payments_ == nullptr) return out_of_memory;
    std::uint32_t next = 0;
    for (const std::uint32_t index : sorted) {
        Group& group = groups[index];
        group.next = next;
        group.block = static_cast<std::uint32_t>(count_);
        blocks_[count_++] = {group.date, group.key.sequence_type,        group.service, 0,
                             0,          {payments_ + next, group.count}};
        next += group.count;
    }
    position = 0;
    for (const StoredPayment* payment = message.payments.first(); payment != nullptr;
         payment = payment->next(), ++position) {
        Group& group = groups[group_of[position]];
        payments_[group.next++] = payment;
        PaymentBlock& block = blocks_[group.block];
        block.sum += payment->numbers().amount;
        block.cents = add_cents(block.cents, to_cents(payment->numbers().amount));
    }
    return nullptr;
}

} // namespace velmora
