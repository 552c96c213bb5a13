// Loading MT940 statement files: realistic ones, and hostile ones at two sizes, whose rates must be the same.
// The peer reads the same file into memory and passes over it once with memchr.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tests/memory_file.h"
#include "velmora.h"
#include "workload.h"

namespace {

using velmora::test::MemoryFile;

constexpr std::size_t megabyte = 1000000;

// Lines of 65 characters, as banks send the field.
void append_information(std::string& file, const std::string& field) {
    for (std::size_t at = 0; at < field.size(); at += 65)
        file.append(at == 0 ? ":86:" : "").append(field, at, 65).append("\r\n");
}

void append_booking(std::string& file, unsigned number) {
    char line[128], field[512];
    std::snprintf(line, sizeof line, ":61:26%02u%02u%02u%02u%s%u,%02uN%sNONREF//2026%012u\r\n",
                  number % 12 + 1, number % 28 + 1, number % 12 + 1, number % 28 + 1,
                  number % 4 == 0 ? "C" : "D", number % 5000 + 1, number % 100,
                  number % 3 == 0 ? "DDT" : "TRF", number);
    file += line;
    if (number % 3 == 0)
        std::snprintf(field, sizeof field,
                      "105?00SEPA-BASIS-LASTSCHRIFT?109248?20EREF+VK %07u ABSCHLAG?21MREF+STW-2019-%06u"
                      "?22CRED+DE98ZZZ09999999999?23SVWZ+Abschlag Strom und Ga?24s Oktober 2026 Backstube Ha"
                      "?25fenstrasse 12?30GENODEF1M01?31DE16701900000376033458?32Stadtwerke Nordheide?34992",
                      number, number);
    else if (number % 3 == 1)
        std::snprintf(field, sizeof field,
                      "166?00GUTSCHR. UEBERWEISUNG?109310?20EREF+RE-2026-%06u?21SVWZ+Rechnung RE-2026-%06u"
                      "?22 vom 18.09.2026 Catering He?23rbstfest?24ABWA+Stadt Ahrensburg Kultu?25ramt"
                      "?30COBADEFFXXX?31DE89370400440532013000?32Veranstaltungsgesellschaft ?33Nordlicht mbH",
                      number, number);
    else
        std::snprintf(field, sizeof field,
                      "117?00DAUERAUFTRAG?109244?20Miete Ladenlokal Oktober?21Hafenstr. 12, Vertrag %06u"
                      "?22inkl. Nebenkosten?30DEUTDEDBHAM?31DE84200700240120041900?32Hausverwaltung Petersen",
                      number);
    append_information(file, field);
}

std::string realistic(std::size_t size) {
    std::string file = "\r\n";
    for (unsigned statement = 1; file.size() < size; ++statement) {
        file += ":20:STARTUMS\r\n:25:20050550/1964277436\r\n:28C:" + std::to_string(statement % 365 + 1);
        file += "/001\r\n:60F:C261001EUR18412,37\r\n";
        for (unsigned booking = 0; booking < 20; ++booking)
            append_booking(file, statement * 20 + booking);
        file += ":62F:C261005EUR20538,72\r\n-\r\n";
    }
    return file;
}

std::string line_feeds(std::size_t size) {
    std::string file = realistic(size);
    file.erase(std::remove(file.begin(), file.end(), '\r'), file.end());
    return file;
}

// One field ":86:" that is filled with repetitions of a piece.
std::string one_field(std::size_t size, const char* piece) {
    std::string file = "\r\n:20:A\r\n:61:230102C1,00NMSC\r\n:86:166?20";
    while (file.size() < size)
        file += piece;
    return file + "\r\n:62F:C261005EUR20538,72\r\n-\r\n";
}
std::string two_byte_lines(std::size_t size) {
    return one_field(size, "ab\r\n");
}
std::string empty_lines(std::size_t size) {
    return one_field(size, "\r\n");
}
std::string question_marks(std::size_t size) {
    return one_field(size, "?");
}
std::string repeated_subfields(std::size_t size) {
    return one_field(size, "?21");
}
std::string keyword_lines(std::size_t size) {
    return one_field(size, "?20SVWZ+a?21b?22c\r\n:86:1");
}

std::string repeated(std::size_t size, const char* first, const char* piece) {
    std::string file = first;
    while (file.size() < size)
        file += piece;
    return file;
}
std::string empty_statements(std::size_t size) {
    return repeated(size, "\r\n", ":20:\r\n-\r\n");
}
std::string bookings_without_n(std::size_t size) {
    return repeated(size, "\r\n", ":20:\r\n:61:230101C1\r\n");
}
std::string carriage_returns(std::size_t size) {
    return repeated(size, "\r\n:20:A\r\n", "\r");
}
std::string short_lines(std::size_t size) {
    return repeated(size, "\r\n:20:A\r\n", ":\r\n");
}

using Maker = std::string (*)(std::size_t size);

void report_rate(benchmark::State& state, std::size_t size) {
    state.SetBytesProcessed(static_cast<std::int64_t>(size) * state.iterations());
}

bool load_once(const MemoryFile& file, std::uint32_t format = SEPA_STMT_FORMAT_MT940) {
    sepa_stmt_parser_t* parser = sepa_stmt_parser_new();
    const bool done = sepa_stmt_parser_load(parser, format, file.path()) == 1;
    sepa_stmt_parser_free(parser);
    return done;
}

template <Maker make, std::uint32_t format = SEPA_STMT_FORMAT_MT940>
void load(benchmark::State& state) {
    const std::string content = make(static_cast<std::size_t>(state.range(0)) * megabyte);
    const MemoryFile file(content);
    load_once(file, format); // a virtual machine gets its memory on first use
    for (auto _ : state)
        if (!load_once(file, format)) state.SkipWithError("not loaded");
    report_rate(state, content.size());
}

template <Maker make>
void load_read_memchr(benchmark::State& state) {
    const std::string content = make(static_cast<std::size_t>(state.range(0)) * megabyte);
    const MemoryFile file(content);
    for (auto _ : state) {
        const int descriptor = open(file.path(), O_RDONLY);
        auto* text = static_cast<char*>(std::malloc(content.size()));
        const ssize_t length = read(descriptor, text, content.size());
        if (length != static_cast<ssize_t>(content.size())) state.SkipWithError("not read");
        benchmark::DoNotOptimize(std::memchr(text, '\1', content.size()));
        std::free(text);
        close(descriptor);
    }
    report_rate(state, content.size());
}

#define STATEMENT_FILE(name) WORKLOAD("statement_load/" #name, load<name>)->Unit(benchmark::kMillisecond)
#define STATEMENT_PEER(name)                                                                                 \
    WORKLOAD("statement_load/" #name "/read_memchr", load_read_memchr<name>)->Unit(benchmark::kMillisecond)

STATEMENT_FILE(realistic)->Arg(50);
STATEMENT_PEER(realistic)->Arg(50);
// The same file in format 940, and one whose lines end with LF alone.
WORKLOAD("statement_load/tolerant", load<realistic, SEPA_STMT_FORMAT_MT940_TOLERANT>)
    ->Unit(benchmark::kMillisecond)
    ->Arg(50);
WORKLOAD("statement_load/tolerant_lf", load<line_feeds, SEPA_STMT_FORMAT_MT940_TOLERANT>)
    ->Unit(benchmark::kMillisecond)
    ->Arg(30);
STATEMENT_FILE(two_byte_lines)->Arg(10)->Arg(20);
STATEMENT_PEER(two_byte_lines)->Arg(20);
STATEMENT_FILE(question_marks)->Arg(10)->Arg(20);
STATEMENT_PEER(question_marks)->Arg(20);
STATEMENT_FILE(empty_lines)->Arg(10)->Arg(20);
STATEMENT_FILE(repeated_subfields)->Arg(10)->Arg(20);
STATEMENT_FILE(keyword_lines)->Arg(10)->Arg(20);
STATEMENT_FILE(empty_statements)->Arg(10)->Arg(20);
STATEMENT_FILE(bookings_without_n)->Arg(10)->Arg(20);
STATEMENT_FILE(carriage_returns)->Arg(10)->Arg(20);
STATEMENT_FILE(short_lines)->Arg(10)->Arg(20);

} // namespace
