#include <gtest/gtest.h>

#include <algorithm>

#include "message/rulebook.h"
#include "message_builder.h"
#include "set_clock.h"

using namespace velmora::test;

namespace {

constexpr std::uint32_t ddi = SEPA_MSGTYPE_DDI, cti = SEPA_MSGTYPE_CTI;

// What the clock fills in is written in local time but for the time of creation, and the time zone may
// change.
TEST(Document, GeneratedIdentificationAndDate) {
    // Rules instead of names, so that no time zone database has to be there.
    constexpr const char *berlin = "CET-1CEST,M3.5.0,M10.5.0/3", *new_york = "EST5EDT,M3.2.0,M11.1.0";
    const struct {
        const char* zone;
        std::time_t time;
        const char *date, *created, *id;
    } cases[] = {
        {berlin, 1'782'860'523, "2026-07-01", "2026-06-30T23:02:03Z", "SEPA-20260701010203-"},
        {new_york, 1'798'765'200, "2026-12-31", "2027-01-01T01:00:00Z", "SEPA-20261231200000-"},
        {berlin, 1'704'065'400, "2024-01-01", "2023-12-31T23:30:00Z", "SEPA-20240101003000-"},
    };
    int counter = 0;
    for (const auto& c : cases)
        for (const std::uint32_t type : {ddi, cti}) {
            const Message m = new_message(type, "DE-3.5");
            sepa_setIBAN(m.get(), own_iban);
            sepa_setBIC(m.get(), "COBADEFF");
            sepa_setName(m.get(), "Verein");
            sepa_setCreditorIdentifier(m.get(), "DE98ZZZ09999999999");
            add(m, type == ddi ? direct_debit() : credit_transfer());
            setenv("TZ", c.zone, 1);
            clock_is_set_to = c.time;
            const std::string text = document(m);
            // The number of the process and a counter that counts on.
            char number[16];
            std::snprintf(number, sizeof number, "%07ld", (getpid() * 100L + counter++) % 10'000'000);
            using Texts = std::vector<std::string>;
            EXPECT_EQ(contents(text, "MsgId"), Texts{std::string(c.id) + number});
            EXPECT_EQ(contents(text, "PmtInfId"), Texts{std::string(c.id) + number + "-P1"});
            EXPECT_EQ(contents(text, "CreDtTm"), Texts{c.created});
            EXPECT_EQ(contents(text, type == ddi ? "ReqdColltnDt" : "ReqdExctnDt"), Texts{c.date});
            EXPECT_EQ(document(m), text) << "they are kept";
        }
}

TEST(Rulebooks, LocalDateSelectsOne) {
    using velmora::Day, velmora::rulebook_on;
    for (const Day day : {Day{2023, 12, 31}, {2023, 5, 18}, {2024, 1, 31}, {2024, 4, 16}})
        EXPECT_STREQ(rulebook_on(day).name, "DE-3.5") << day.year << '-' << day.month << '-' << day.day;
    for (const Day day : {Day{2024, 4, 17}, {2024, 5, 1}, {2024, 12, 1}, {2025, 1, 1}})
        EXPECT_STREQ(rulebook_on(day).name, "DE-3.7") << day.year << '-' << day.month << '-' << day.day;
    setenv("TZ", "EST5EDT,M3.2.0,M11.1.0", 1);
    clock_is_set_to = 1'713'319'200; // 17 April in UTC, but not yet in New York
    EXPECT_EQ(sepa_new(0), nullptr);
    EXPECT_STREQ(velmora::selected_rulebook()->name, "DE-3.5") << "a refused call settles the rulebook, too";
}

// Every payment of a large message is in the document once, in its place, and the totals agree.
TEST(Document, LargeMessagesLoseNothing) {
    const Message m = complete_message(ddi, "DE-3.7");
    constexpr int count = 5000;
    long long cents = 0;
    for (int i = 0; i < count; ++i) {
        char id[16], amount[16];
        std::snprintf(id, sizeof id, "E%d", i);
        std::snprintf(amount, sizeof amount, "%d.%02d", i, i % 100);
        cents += i * 100LL + i % 100;
        char date[11];
        std::snprintf(date, sizeof date, "2026-%02d-%02d", i % 300 / 25 + 1, i % 25 + 1);
        ASSERT_EQ(
            add(m, with(direct_debit(), {{"id", id}, {"amount", i == 0 ? "0.01" : amount}, {"date", date}})),
            1);
    }
    const std::string text = document(m);
    auto ids = contents(text, "EndToEndId");
    EXPECT_EQ(ids.size(), static_cast<std::size_t>(count));
    EXPECT_EQ(ids[1], "E300") << "the second payment of the first day";
    std::sort(ids.begin(), ids.end());
    EXPECT_EQ(std::unique(ids.begin(), ids.end()), ids.end());
    char sum[32];
    __sepa_d2str(sum, sizeof sum, static_cast<double>(cents + 1) / 100);
    EXPECT_EQ(contents(text, "CtrlSum")[0], sum);
    EXPECT_EQ(contents(text, "PmtInfId").size(), 300u);
}

} // namespace
