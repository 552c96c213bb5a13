// MT940 statement files: the records they give, what cannot be read, and files built at random.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <vector>

#include "cpu_time.h"
#include "statement/scan.h"
#include "statement_records.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using namespace velmora::test;
namespace fs = std::filesystem;

std::string error(const Parser& parser) {
    return sepa_stmt_parser_getError(parser.get());
}

// ------------------------------------------------------------------------------------------------------
// Small files and their records

void expect_records(const std::string& file, const std::string& records) {
    const Parser parser = new_parser();
    EXPECT_EQ(load(parser, file), 1);
    EXPECT_EQ(describe(parser), records);
    EXPECT_EQ(error(parser), "");
}

TEST(Statement, FilesGiveTheirRecords) {
    for (const char* path :
         {"statements.txt", "balances.txt", "bookings.txt", "information.txt", "purpose.txt", "fields.txt"})
        for (const Case& test : read_cases(path, "\r\n")) {
            SCOPED_TRACE(test.name);
            expect_records(test.file, test.records);
        }
}

// Statements behind one another do not disturb each other, however many there are.
TEST(Statement, LongFilesGiveTheirRecords) {
    Case all;
    for (int i = 0; i < 300; ++i)
        for (const char* path : {"balances.txt", "purpose.txt"})
            for (const Case& test : read_cases(path, "\r\n"))
                if (test.file.ends_with("-\r\n")) all.file += test.file, all.records += test.records;
    expect_records(all.file, all.records);
}

// Files that would take ages if anything in them were read again and again take no longer than others.
TEST(Statement, TakesTimeByTheSizeOfTheFile) {
#ifdef __has_feature
#if __has_feature(address_sanitizer)
    GTEST_SKIP() << "its strstr() measures the whole text each time";
#endif
#endif
    const auto seconds = [](const std::string& repeated, const std::string& head = "",
                            const std::string& tail = "") {
        std::string content = "X\r\n:20:A\r\n" + head;
        while (content.size() < 4'000'000)
            content += repeated;
        content += tail;
        return cpu_seconds([&] { EXPECT_EQ(load(new_parser(), content), 1); });
    };
    const std::string booking = ":61:230102C1,NMSCX\r\n", field = booking + ":86:166?20";
    const double usual = seconds(booking + ":86:166?20SVWZ+A?21B\r\n") + 0.02;
    EXPECT_LT(seconds(":61:230102C1,\r\n", "", "N"), 30 * usual) << "the letter is far behind";
    EXPECT_LT(seconds("x\r\n", field, "\r\n-\r\n"), 30 * usual) << "one field of many lines";
    EXPECT_LT(seconds("?21?20", field, "\r\n-\r\n"), 30 * usual) << "one field of many markers";
    EXPECT_LT(seconds("?20?22", field, "\r\n-\r\n"), 30 * usual) << "markers out of order";
    EXPECT_LT(seconds("\r\n:20:A"), 30 * usual) << "many statements";
    EXPECT_LT(seconds("\r\n:20:A\r\n:28C:x"), 30 * usual) << "many that are cut short";
}

// The fuzzer's seeds and all inputs that ever failed, cut anywhere.
TEST(Statement, FuzzCorpus) {
    std::size_t count = 0;
    for (const auto& entry : fs::directory_iterator(source_dir / "fuzz/corpus/statement")) {
        SCOPED_TRACE(entry.path());
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<std::uint8_t> input{std::istreambuf_iterator<char>(file), {}};
        for (std::size_t size = 1; size <= input.size(); ++size, ++count)
            EXPECT_EQ(LLVMFuzzerTestOneInput(input.data(), size), 0);
    }
    EXPECT_GT(count, 5000U);
}

// ------------------------------------------------------------------------------------------------------
// Handles and failures

void expect_failure(const Parser& parser, int result, const std::string& text) {
    EXPECT_EQ(result, 0);
    EXPECT_EQ(error(parser), text);
}

TEST(Statement, HandleRules) {
    EXPECT_EQ(sepa_stmt_parser_load(nullptr, 1, "x"), 0);
    EXPECT_EQ(sepa_stmt_parser_getStatement(nullptr), nullptr);
    EXPECT_STREQ(sepa_stmt_parser_getError(nullptr), "invalid sepa_stmt_parser_t handle");
    sepa_stmt_parser_free(nullptr);

    const Parser parser = new_parser(), refused = new_parser();
    EXPECT_EQ(error(parser) + describe(parser), "");
    // Format 0 leaves a parser as new as it was, any other uses it up.
    expect_failure(parser, sepa_stmt_parser_load(parser.get(), 0, "x"), "Format not (yet) supported");
    EXPECT_EQ(load(parser, "X\r\n:20:A\r\n-"), 1);
    expect_failure(parser, load(parser, "X\r\n:20:B\r\n-"), "Parser already used");
    EXPECT_EQ(describe(parser), "statement ref=\"A\"\n");
    expect_failure(refused, sepa_stmt_parser_load(refused.get(), 2, "x"), "Format not (yet) supported");
    expect_failure(refused, load(refused, "X\r\n:20:B\r\n-"), "Parser already used");
}

// What the next calls of read() and fstat() do: give back at most so many bytes, or fail with the error
// whose negative number is given; then as the system does.
struct Disturbance {
    std::vector<int> reads = {};
    int fstat_error = 0;
} disturbance;

// Under the address sanitizer, too, an allocation that is too large fails.
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}

extern "C" ssize_t __real_read(int descriptor, void* buffer, size_t size);
extern "C" ssize_t __wrap_read(int descriptor, void* buffer, size_t size) {
    if (disturbance.reads.empty()) return __real_read(descriptor, buffer, size);
    const int next = disturbance.reads.front();
    disturbance.reads.erase(disturbance.reads.begin());
    if (next >= 0) return __real_read(descriptor, buffer, std::min(size, static_cast<size_t>(next)));
    errno = -next;
    return -1;
}

extern "C" int __real_fstat(int descriptor, struct stat* status);
extern "C" int __wrap_fstat(int descriptor, struct stat* status) {
    errno = disturbance.fstat_error;
    return errno == 0 ? __real_fstat(descriptor, status) : -1;
}
// Before glibc 2.33 it was an inline function.
constexpr bool fstat_can_be_disturbed = __GLIBC_PREREQ(2, 33);

TEST(Statement, WhatCannotBeReadIsTold) {
    const auto expect = [](const char* path, const std::string& text, const Disturbance& how = {}) {
        if (how.fstat_error && !fstat_can_be_disturbed) return;
        const Parser parser = new_parser();
        disturbance = how;
        expect_failure(parser, sepa_stmt_parser_load(parser.get(), SEPA_STMT_FORMAT_MT940, path), text);
        disturbance = {};
        EXPECT_EQ(sepa_stmt_parser_getStatement(parser.get()), nullptr);
    };
    const MemoryFile file("X\r\n:20:A\r\n-\r\n"), empty(""), huge(""), zero({"\0\r\n:20:A\r\n-\r\n", 13});
    const int next_descriptor = MemoryFile("").descriptor();
    // Under a 64-bit kernel a process of 32 bits may well have 2 GB.
    constexpr off_t too_much = sizeof(long) == 8 ? std::numeric_limits<off_t>::max() - 32 : 0;
    ASSERT_EQ(ftruncate(huge.descriptor(), too_much), 0);
    const std::string pipe = fs::temp_directory_path() / ("velmora-" + std::to_string(getpid()));
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    expect(nullptr, "Can't open input file: Bad address");
    expect("", "Can't open input file: No such file or directory");
    expect(std::string(PATH_MAX, 'x').c_str(), "Can't open input file: File name too long");
    expect(pipe.c_str(), "Input file is empty"); // and nobody waits for its writer
    expect("/dev/zero", "Input file is empty");
    expect("/usr", "Error while reading from file: Is a directory");
    expect(empty.path(), "Input file is empty");
    if (too_much) expect(huge.path(), "Failed to allocate " + std::to_string(too_much) + " bytes");
    expect(zero.path(), "");
    expect(file.path(), "Can't stat input file: Input/output error", {.fstat_error = EIO});
    expect(file.path(), "Error while reading from file: Input/output error", {.reads = {4, -EIO}});
    expect(file.path(), "Error while reading from file: Unexpected end of file", {.reads = {4, 0}});
    fs::remove(pipe);

    const Parser parser = new_parser();
    disturbance.reads = {-EINTR, 1, 1, -EINTR, -EINTR, 3};
    EXPECT_EQ(sepa_stmt_parser_load(parser.get(), SEPA_STMT_FORMAT_MT940, file.path()), 1);
    EXPECT_EQ(describe(parser), "statement ref=\"A\"\n");
    EXPECT_EQ(MemoryFile("").descriptor(), next_descriptor) << "a file was left open";
}

// Another process holds the file under a lease and gives it up when it is told that somebody wants to read.
TEST(Statement, FilesUnderALeaseAreWaitedFor) {
    const std::string path = fs::temp_directory_path() / ("velmora-lease-" + std::to_string(getpid()));
    std::ofstream(path) << "X\r\n:20:A\r\n-\r\n";
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t holder = fork();
    if (holder == 0) {
        const int file = open(path.c_str(), O_RDWR);
        sigset_t wanted;
        sigemptyset(&wanted), sigaddset(&wanted, SIGIO), sigprocmask(SIG_BLOCK, &wanted, nullptr);
        const bool leased = fcntl(file, F_SETLEASE, F_WRLCK) == 0;
        if (write(ready[1], leased ? "y" : "n", 1) == 1 && leased) sigwaitinfo(&wanted, nullptr);
        usleep(20000);
        _exit(0);
    }
    char leased = 0;
    ASSERT_EQ(read(ready[0], &leased, 1), 1);
    const Parser parser = new_parser();
    EXPECT_EQ(sepa_stmt_parser_load(parser.get(), SEPA_STMT_FORMAT_MT940, path.c_str()), 1) << error(parser);
    kill(holder, SIGKILL);
    waitpid(holder, nullptr, 0);
    close(ready[0]), close(ready[1]), fs::remove(path);
    if (leased != 'y') GTEST_SKIP() << "no leases here";
}

// ------------------------------------------------------------------------------------------------------
// Debits, exact amounts and sums

TEST(Statement, BookingsTellTheirSignAndProveTheStatement) {
    struct {
        const char *opening, *bookings, *closing, *described;
        int result;
        double difference;
    } const cases[] = {
        {"C230101EUR0,10", "C0,20 D0,10", "C230101EUR0,20", "0EUR20000 1EUR-10000", 1, 0},
        {"C230101EUR0,10", "C0,20 RD0,10 RC0,05", "C230101EUR0,36", "0EUR20000 0EUR10000 1EUR-5000", 0, 0.01},
        {"C230101EUR12345678901,23", "DR1E2", "C230101EUR12345678801,23", "1EUR-10000000", 1, 0},
        {"C230101EUR12345678901,2", "C0,00001", "C230101EUR12345678901,2", "0EUR1", 0, -0.00001},
        {"D230101EUR1", "C00000000000000000001,5 C-0,5", "D230101EUR0", "0EUR150000 0EUR-50000", 1, 0},
        {"C230101EUR0", "D99999999999999,5 C0,000001", "D230101EUR99999999999999,5",
         "1EUR9223372036854775807 0EUR9223372036854775807", 1, 0},
        {"D230101EUR0", "RD99999999999999,5 RC99999999999999,5 RC0,5", "D230101EUR0,5",
         "0EUR9223372036854775807 1EUR9223372036854775807 1EUR-50000", 1, 0},
        {"C230101EUR1", "C1", "", "0EUR100000", -1, 0},
        {"", "C1", "C230101EUR1", "0100000", -1, 0},
    };
    const Parser stranger = new_parser();
    for (const auto& test : cases) {
        std::string file = "X\r\n:20:A\r\n";
        if (*test.opening != '\0') file += std::string(":60F:") + test.opening + "\r\n";
        std::istringstream bookings(test.bookings);
        for (std::string booking; bookings >> booking;)
            file += ":61:2301010101" + booking + "NMSCX\r\n";
        if (*test.closing != '\0') file += std::string(":62F:") + test.closing + "\r\n";
        SCOPED_TRACE(file);
        const Parser parser = new_parser();
        ASSERT_EQ(sepa_stmt_parser_loadMemory(parser.get(), 1, (file += "-\r\n").data(), file.size()), 1);
        const sepa_stmt_t* statement = sepa_stmt_parser_getStatement(parser.get());
        std::string described;
        for (const sepa_stmt_tx_t* tx = statement->first_tx; tx != nullptr; tx = tx->next) {
            const sepa_stmt_tx_info_t& info = *sepa_stmt_parser_getTxInfo(parser.get(), tx);
            described += (described.empty() ? "" : " ") + std::to_string(info.debit) + info.currency +
                         std::to_string(info.signedAmount);
            EXPECT_EQ(sepa_stmt_parser_getTxInfo(stranger.get(), tx), nullptr);
        }
        EXPECT_EQ(described, test.described);
        double difference = 7;
        EXPECT_EQ(sepa_stmt_parser_check(parser.get(), statement, &difference), test.result);
        EXPECT_EQ(difference, test.difference);
        EXPECT_EQ(sepa_stmt_parser_check(parser.get(), statement, nullptr), test.result);
        EXPECT_EQ(sepa_stmt_parser_check(stranger.get(), statement, nullptr), -1);
        EXPECT_EQ(sepa_stmt_parser_getInfo(parser.get(), statement), nullptr);
        EXPECT_EQ(sepa_stmt_parser_getInfo(stranger.get(), statement), nullptr);
    }
    EXPECT_EQ(sepa_stmt_parser_getTxInfo(stranger.get(), nullptr), nullptr);
    EXPECT_EQ(sepa_stmt_parser_check(nullptr, nullptr, nullptr), -1);
    expect_failure(stranger, sepa_stmt_parser_loadMemory(stranger.get(), 1, "", 0), "Input file is empty");
}

// ------------------------------------------------------------------------------------------------------
// Properties

TEST(Statement, NumbersAreReadLikeSscanf) {
    std::mt19937 random(940);
    const auto some = [&](unsigned below, std::string_view characters) {
        std::string text;
        for (auto count = random() % below; count > 0; --count)
            text += characters[random() % characters.size()];
        return text;
    };
    for (int i = 0; i < 50000 && !HasFailure(); ++i) {
        std::string text = some(3, " \t\r\n\v\f") + some(3, "+-") + some(i % 5 == 0 ? 23 : 12, "0123456789") +
                           some(3, " x-5");
        for (const auto& [format, width] : {std::pair<const char*, std::size_t>{"%02lld", 2},
                                            {"%03llu", 3},
                                            {"%llu", velmora::any_width}}) {
            unsigned long long expected = 77; // the lower half of 64 bits on every machine
            std::uint32_t number = 77;
            const int found = std::sscanf(text.c_str(), format, &expected);
            char* at = text.data();
            EXPECT_EQ(velmora::scan_number(at, width, number), found == 1) << text;
            EXPECT_EQ(number, static_cast<std::uint32_t>(expected)) << text;
        }
    }
}

} // namespace
