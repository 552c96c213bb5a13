// What depends on the time of day, in processes whose clock libfaketime has stopped.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "command.h"

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
    constexpr char de35[] = "pain.008.001.02.xsd";
    constexpr char de37[] = "pain.008.001.08.xsd";
    const struct {
        const char* zone;
        const char* time;
        const char* schema;
    } cases[] = {
        {berlin, "2023-12-31 23:59:59", de35},
        {berlin, "2023-05-18 12:00:00", de35},
        {berlin, "2024-01-31 12:00:00", de35},
        {berlin, "2024-03-31 12:00:00", de35},
        {berlin, "2024-04-01 00:00:00", de35},
        {berlin, "2024-04-16 23:59:59", de35},
        {berlin, "2024-04-17 00:00:00", de37},
        {berlin, "2024-04-30 12:00:00", de37},
        {berlin, "2024-05-01 00:00:00", de37},
        {berlin, "2024-12-01 12:00:00", de37},
        {berlin, "2025-01-01 00:00:00", de37},
        {berlin, "2031-03-03 12:00:00", de37},
        // already the next day in UTC, and not yet
        {new_york, "2024-04-16 22:00:00", de35},
        {berlin, "2024-04-17 00:30:00", de37},
    };
    for (const auto& c : cases) {
        const std::string document = at(c.zone, c.time, "document");
        EXPECT_NE(document.find(c.schema), document.npos) << c.zone << " " << c.time;
    }
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
