// The balance of accounts over time with their bookings, as an SVG picture.
#pragma once

#include "options.h"
#include "statements.h"

namespace velmora::tool {

class Plot {
public:
    Plot() = default;
    Plot(const Plot&) = delete;
    Plot& operator=(const Plot&) = delete;
    ~Plot();

    // Takes what it needs of a statement; one without balances has no place in the picture.
    void add(const Statement& statement, const Options& options);
    void write(Text path, const Options& options);

private:
    struct Event {
        std::int32_t day;
        std::uint32_t order;
        std::int64_t balance; // after it, in 1/100,000
        std::int64_t amount;  // of the booking, 0 for a balance
        bool is_booking;
    };
    struct Account {
        char name[36], currency[4];
        List<Event> events;
    };
    struct Frame;

    Account& account_of(const Statement& statement, const Options& options);
    static void draw(Buffer& out, const Account& account, const Frame& frame);
    static void draw_balance(Buffer& out, const Account& account, const Frame& frame);
    static void draw_bookings(Buffer& out, const Account& account, const Frame& frame);

    List<Account*> accounts_;
};

} // namespace velmora::tool
