// What depends on the time of day, in processes whose clock libfaketime has stopped.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "command.h"
#include "message/rulebook.h"

namespace {

// Rules instead of names, so that no time zone database has to be there.
constexpr char berlin[] = "CET-1CEST,M3.5.0,M10.5.0/3";
constexpr char new_york[] = "EST5EDT,M3.2.0,M11.1.0";

std::string at(const std::string& zone, const std::string& time, const std::string& probe) {
    const CommandResult result = run("TZ='" + zone + "' FAKETIME='" + time +
                                     "' LD_PRELOAD=" VELMORA_FAKETIME " " VELMORA_CLOCK_PROBE " " + probe);
    EXPECT_EQ(result.status, 0) << result.output;
    return result.output;
}

// The content of the nth element of a name, counted from 0.
std::string element(const std::string& xml, const std::string& name, int n = 0) {
    const std::string open = "<" + name + ">";
    std::size_t begin = xml.find(open);
    for (; n > 0 && begin != xml.npos; n--)
        begin = xml.find(open, begin + 1);
    if (begin == xml.npos) return "";
    begin += open.size();
    return xml.substr(begin, xml.find("</" + name + ">", begin) - begin);
}

TEST(Clock, LocalDateSelectsTheRulebook) {
    using velmora::rulebook_on;
    for (const velmora::Day day : {velmora::Day{2023, 12, 31}, {2023, 5, 18}, {2024, 1, 31}, {2024, 4, 16}})
        EXPECT_STREQ(rulebook_on(day).name, "DE-3.5") << day.year << '-' << day.month << '-' << day.day;
    for (const velmora::Day day : {velmora::Day{2024, 4, 17}, {2024, 5, 1}, {2024, 12, 1}, {2025, 1, 1}})
        EXPECT_STREQ(rulebook_on(day).name, "DE-3.7") << day.year << '-' << day.month << '-' << day.day;
    // In UTC it is already the next day, and not yet.
    EXPECT_NE(at(new_york, "2024-04-16 22:00:00", "document").find("pain.008.001.02.xsd"), std::string::npos);
    EXPECT_NE(at(berlin, "2024-04-17 00:30:00", "document").find("pain.008.001.08.xsd"), std::string::npos);
}

TEST(Clock, FillsInDateTimeAndMessageId) {
    const struct {
        const char* zone;
        const char* time;
        const char* date;
        const char* created;
        const char* id;
    } cases[] = {
        {berlin, "2026-07-01 01:02:03", "2026-07-01", "2026-06-30T23:02:03Z", "SEPA-20260701010203-"},
        {berlin, "2024-01-01 00:30:00", "2024-01-01", "2023-12-31T23:30:00Z", "SEPA-20240101003000-"},
        {new_york, "2026-12-31 20:00:00", "2026-12-31", "2027-01-01T01:00:00Z", "SEPA-20261231200000-"},
    };
    for (const auto& c : cases) {
        const std::string documents = at(c.zone, c.time, "document");
        long process = 0;
        ASSERT_EQ(std::sscanf(documents.c_str(), "process %ld", &process), 1);
        for (int n = 0; n < 2; n++) {
            // The counter of generated message ids counts on in the second message.
            char number[16];
            std::snprintf(number, sizeof number, "%07ld", (process * 100 + n) % 10'000'000);
            EXPECT_EQ(element(documents, "ReqdColltnDt", n), c.date);
            EXPECT_EQ(element(documents, "CreDtTm", n), c.created);
            EXPECT_EQ(element(documents, "MsgId", n), std::string(c.id) + number);
            EXPECT_EQ(element(documents, "PmtInfId", n), std::string(c.id) + number + "-P1");
        }
    }
}

} // namespace
