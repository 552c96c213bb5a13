// MT940 statement files: the records they give, what cannot be read, and files built at random.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/syscall.h>

#include <cerrno>
#include <climits>
#include <filesystem>
#include <fstream>
#include <list>
#include <random>
#include <vector>

#include "information_model.h"
#include "statement/mt940.h"
#include "statement/scan.h"
#include "statement_records.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using namespace velmora::test;
namespace fs = std::filesystem;

const fs::path source_dir = VELMORA_SOURCE_DIR;

std::string read_file(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string error(const Parser& parser) {
    return sepa_stmt_parser_getError(parser.get());
}

// ------------------------------------------------------------------------------------------------------
// Small files and their records

struct Case {
    std::string name, file, records;
};

// The form of the cases is told in statements.txt.
std::vector<Case> read_cases(const fs::path& path) {
    std::ifstream in(path);
    std::vector<Case> cases;
    bool in_file = false;
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with("== ")) {
            cases.push_back({line.substr(3), "", ""});
            in_file = true;
        } else if (line == "=>") {
            in_file = false;
        } else if (in_file) {
            std::string& file = cases.back().file;
            const bool unended = line.ends_with('\\');
            if (unended) line.pop_back();
            for (std::size_t i = 0; i < line.size(); ++i)
                if (line[i] != '\\')
                    file += line[i];
                else
                    file += line[++i] == 'r' ? '\r' : line[i] == 'n' ? '\n' : '\0';
            if (!unended) file += "\r\n";
        } else if (!cases.empty() && !line.empty()) {
            cases.back().records += line + "\n";
        }
    }
    return cases;
}

TEST(Statement, FilesGiveTheirRecords) {
    std::size_t count = 0;
    for (const auto& entry : fs::directory_iterator(source_dir / "tests/data/statements"))
        for (const Case& test : read_cases(entry.path())) {
            SCOPED_TRACE(entry.path().filename().string() + ": " + test.name);
            const Parser parser = new_parser();
            EXPECT_EQ(load(parser, test.file), 1) << error(parser);
            EXPECT_EQ(describe(parser), test.records);
            EXPECT_EQ(error(parser), "");
            ++count;
        }
    EXPECT_GT(count, 50U);
}

// A file cut anywhere gives the records up to there, and never less than a shorter piece of it.
TEST(Statement, EveryPieceOfAFileIsRead) {
    const std::string file = read_file(source_dir / "examples/statement.mt940");
    std::size_t before = 0;
    for (std::size_t size = 1; size <= file.size(); ++size) {
        const Parser parser = new_parser();
        ASSERT_EQ(load(parser, file.substr(0, size)), 1);
        const std::string records = describe(parser);
        const auto count = static_cast<std::size_t>(std::count(records.begin(), records.end(), '\n'));
        EXPECT_GE(count, before) << size;
        before = count;
    }
    EXPECT_GE(before, 12U);
}

// ------------------------------------------------------------------------------------------------------
// Handles and failures

TEST(Statement, HandleRules) {
    EXPECT_EQ(sepa_stmt_parser_load(nullptr, 1, "x"), 0);
    EXPECT_EQ(sepa_stmt_parser_getStatement(nullptr), nullptr);
    EXPECT_STREQ(sepa_stmt_parser_getError(nullptr), "invalid sepa_stmt_parser_t handle");
    sepa_stmt_parser_free(nullptr);

    const Parser parser = new_parser();
    EXPECT_EQ(error(parser), "");
    EXPECT_EQ(sepa_stmt_parser_getStatement(parser.get()), nullptr);
    EXPECT_EQ(sepa_stmt_parser_load(parser.get(), 0, "x"), 0); // leaves the parser as new as it was
    EXPECT_EQ(error(parser), "Format not (yet) supported");
    EXPECT_EQ(load(parser, "X\r\n:20:A\r\n-"), 1);
    EXPECT_EQ(describe(parser), "statement ref=\"A\"\n");
    EXPECT_EQ(load(parser, "X\r\n:20:B\r\n-"), 0);
    EXPECT_EQ(error(parser), "Parser already used");
    EXPECT_EQ(describe(parser), "statement ref=\"A\"\n");

    const Parser refused = new_parser();
    EXPECT_EQ(sepa_stmt_parser_load(refused.get(), 2, "x"), 0);
    EXPECT_EQ(error(refused), "Format not (yet) supported");
    EXPECT_EQ(load(refused, "X\r\n:20:B\r\n-"), 0);
    EXPECT_EQ(error(refused), "Parser already used");

    const Parser bare = new_parser();
    EXPECT_EQ(velmora::load_mt940(bare.get(), velmora::allocate_text(8)), 0);
    EXPECT_EQ(error(bare), "MT940 parser not initialized");
}

// What the next calls of read() and fstat() do: give back at most so many bytes, or an error.
struct Disturbance {
    bool on = false;
    std::vector<int> reads = {}; // bytes, or a negative error number; then as the system does
    int fstat_error = 0;
} disturbance;

// Under the address sanitizer, too, an allocation that is too large fails.
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}

extern "C" ssize_t __real_read(int descriptor, void* buffer, size_t size);
extern "C" ssize_t __wrap_read(int descriptor, void* buffer, size_t size) {
    if (!disturbance.on || disturbance.reads.empty()) return __real_read(descriptor, buffer, size);
    const int next = disturbance.reads.front();
    disturbance.reads.erase(disturbance.reads.begin());
    if (next >= 0) return __real_read(descriptor, buffer, std::min(size, static_cast<size_t>(next)));
    errno = -next;
    return -1;
}

extern "C" int __real_fstat(int descriptor, struct stat* status);
extern "C" int __wrap_fstat(int descriptor, struct stat* status) {
    if (!disturbance.on || disturbance.fstat_error == 0) return __real_fstat(descriptor, status);
    errno = disturbance.fstat_error;
    return -1;
}

int load_disturbed(const Parser& parser, std::string_view content, Disturbance how) {
    const MemoryFile file(content);
    disturbance = how;
    disturbance.on = true;
    const int result = sepa_stmt_parser_load(parser.get(), SEPA_STMT_FORMAT_MT940, file.path());
    disturbance.on = false;
    return result;
}

std::size_t open_descriptors() {
    const fs::directory_iterator all("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

TEST(Statement, WhatCannotBeReadIsTold) {
    const std::size_t descriptors = open_descriptors() + 1; // and the huge file's
    const fs::path folder = fs::temp_directory_path() / ("velmora-" + std::to_string(getpid()));
    fs::create_directory(folder);
    const std::string pipe = folder / "pipe", loop = folder / "loop", locked = folder / "locked";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    fs::create_symlink("loop", loop);
    const auto expect_failure = [&](const char* path, const std::string& text) {
        const Parser parser = new_parser();
        EXPECT_EQ(sepa_stmt_parser_load(parser.get(), SEPA_STMT_FORMAT_MT940, path), 0) << path;
        EXPECT_EQ(error(parser), text);
        EXPECT_EQ(sepa_stmt_parser_getStatement(parser.get()), nullptr);
    };
    expect_failure(nullptr, "Can't open input file: Bad address");
    expect_failure("", "Can't open input file: No such file or directory");
    expect_failure(loop.c_str(), "Can't open input file: Too many levels of symbolic links");
    expect_failure(std::string(PATH_MAX, 'x').c_str(), "Can't open input file: File name too long");
    expect_failure(pipe.c_str(), "Input file is empty"); // and nobody waits for its writer
    expect_failure("/dev/zero", "Input file is empty");
    expect_failure("/proc/self/status", "Input file is empty");
    expect_failure("/usr", "Error while reading from file: Is a directory");
    std::ofstream(locked) << "X";
    fs::permissions(locked, fs::perms::none);
    if (geteuid() != 0) expect_failure(locked.c_str(), "Can't open input file: Permission denied");
    fs::remove_all(folder);

    const MemoryFile huge("");
    ASSERT_EQ(ftruncate(huge.descriptor(), 1L << 60), 0);
    expect_failure(huge.path(), "Failed to allocate 1152921504606846976 bytes");

    const auto expect_disturbed = [&](std::string_view content, Disturbance how, const std::string& text) {
        const Parser parser = new_parser();
        EXPECT_EQ(load_disturbed(parser, content, how), 0);
        EXPECT_EQ(error(parser), text);
        EXPECT_EQ(sepa_stmt_parser_getStatement(parser.get()), nullptr);
    };
    const std::string_view file = "X\r\n:20:A\r\n-\r\n";
    expect_disturbed(file, {.fstat_error = EIO}, "Can't stat input file: Input/output error");
    expect_disturbed(file, {.reads = {4, -EIO}}, "Error while reading from file: Input/output error");
    expect_disturbed(file, {.reads = {4, 0}}, "Error while reading from file: Unexpected end of file");
    expect_disturbed("", {}, "Input file is empty");
    expect_disturbed(std::string_view("\0\r\n:20:A\r\n-\r\n", 13), {}, "");
    EXPECT_EQ(open_descriptors(), descriptors);
}

TEST(Statement, ReadingGoesOnAfterInterruptions) {
    const Parser parser = new_parser();
    EXPECT_EQ(load_disturbed(parser, "X\r\n:20:A\r\n-\r\n", {.reads = {-EINTR, 1, 1, -EINTR, -EINTR, 3}}), 1);
    EXPECT_EQ(describe(parser), "statement ref=\"A\"\n");
}

// ------------------------------------------------------------------------------------------------------
// Properties

class Random {
public:
    int below(int count) { return static_cast<int>(generator_() % static_cast<unsigned>(count)); }
    int between(int least, int most) { return least + below(most - least + 1); }
    bool chance(int percent) { return below(100) < percent; }
    std::string text(int length, std::string_view characters) {
        std::string result;
        while (length-- > 0)
            result += characters[static_cast<std::size_t>(below(static_cast<int>(characters.size())))];
        return result;
    }

private:
    std::mt19937 generator_{940};
};

TEST(Statement, NumbersAreReadLikeSscanf) {
    Random random;
    const auto expect_like = [](const std::string& text, const char* format, std::size_t width) {
        std::uint32_t expected = 77, number = 77;
        std::string copy = text;
        char* at = copy.data();
        const int found = std::sscanf(text.c_str(), format, &expected);
        EXPECT_EQ(velmora::scan_number(at, width, number), found == 1) << text;
        EXPECT_EQ(number, expected) << text;
    };
    for (int i = 0; i < 50000 && !HasFailure(); ++i) {
        const std::string text = random.text(random.below(3), " \t\r\n\v\f") +
                                 random.text(random.below(3), "+-") +
                                 random.text(random.chance(20) ? 22 : random.below(12), "0123456789") +
                                 random.text(random.below(3), " x-5");
        expect_like(text, "%02d", 2);
        expect_like(text, "%03u", 3);
        expect_like(text, "%u", velmora::any_width);
    }
}

TEST(Statement, FieldsAreReadAsTheRulesSay) {
    constexpr const char* pieces[] = {"?",     "??",    "\r\n",  "\r",    "\n",  "?2",  "?00", "?10", "?20",
                                      "?21",   "?22",   "?23",   "?24",   "?28", "?29", "?30", "?31", "?32",
                                      "?33",   "?34",   "?35",   "?60",   "?61", "?63", "?64", "?99", "EREF+",
                                      "SVWZ+", "+",     ",",     "1,5",   "997", "a",   "Abc", " ",   "-",
                                      "COAM+", "OAMT+", "MREF+", "ABWE+", ":",   "9"};
    Random random;
    for (int i = 0; i < 60000 && !HasFailure(); ++i) {
        std::string field;
        for (int count = random.below(25); count > 0; --count)
            field += random.chance(5) ? random.text(random.between(20, 28), "x")
                                      : pieces[random.below(static_cast<int>(std::size(pieces)))];
        if (random.chance(95)) field += "\r\n:62F:,,,";
        ASSERT_EQ(read_field(field), read_field_plainly(field)) << field;
    }
}

// A well-formed file and the records it must give.
class RandomFile {
public:
    explicit RandomFile(Random& random) : random_(random) {
        for (int count = random.chance(1) ? 200 : random.below(4); count >= 0; --count)
            add_statement();
    }
    std::string file = "{1:F01BANK}\r\n";
    Description records;

private:
    static std::string digits(int number) {
        return {static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
    }
    std::string word(int most) {
        constexpr std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
        constexpr std::string_view others = "ABC NOP XYZ abc nop xyz 0123456789/-+.,()";
        return random_.text(1, letters).append(random_.text(random_.below(most), others));
    }
    std::string day(struct tm& date) {
        date = {};
        date.tm_year = random_.between(80, 179);
        date.tm_mon = random_.below(12);
        date.tm_mday = random_.between(1, 31);
        return digits(date.tm_year % 100) + digits(date.tm_mon + 1) + digits(date.tm_mday);
    }
    std::string amount(double& value) {
        const int cents = random_.below(INT_MAX);
        value = cents / 100.0;
        return std::to_string(cents / 100).append(",").append(digits(cents % 100));
    }
    void add_line(const char* begin, const std::string& rest) {
        file.append(begin).append(rest).append("\r\n");
    }
    char* keep(const std::string& text) { return kept_.emplace_back(text).data(); }

    std::string balance(const char* name) {
        struct tm date;
        double value;
        const bool debit = random_.chance(50);
        const std::string currency = random_.text(3, "EURCHSGBP");
        std::string text =
            std::string(debit ? "D" : "C").append(day(date)).append(currency).append(amount(value));
        records.add_balance(name, date, currency.c_str(), debit ? -value : value);
        return text;
    }

    void add_statement() {
        const std::string ref = word(16), account = word(35);
        const int number = random_.between(1, 99999), page = random_.between(1, 999);
        records.begin("statement");
        records.add("ref", ref.c_str());
        records.add("account", account.c_str());
        records.add_number("number", static_cast<unsigned>(number));
        records.add_number("page", static_cast<unsigned>(page));
        add_line(":20:", ref);
        add_line(":25:", account);
        add_line(":28C:", std::to_string(number).append("/").append(std::to_string(page)));
        add_line(":60F:", balance("open"));
        const std::string closing = balance("close");
        records.end();
        for (int count = random_.below(6); count > 0; --count)
            add_booking();
        add_line(":62F:", closing);
        add_line("-", random_.text(random_.below(2), "}"));
    }

    void add_booking() {
        sepa_stmt_tx_t tx{};
        std::string text = day(tx.valuta);
        if (random_.chance(70)) {
            tx.booked = tx.valuta;
            tx.booked.tm_mon = random_.between(1, 10);
            if (tx.valuta.tm_mon == 11 && tx.valuta.tm_year < 179) {
                tx.booked.tm_mon = 0;
                tx.booked.tm_year++;
            }
            text += digits(tx.booked.tm_mon + 1) + digits(tx.booked.tm_mday);
        }
        const bool reversal = random_.chance(20), debit = random_.chance(50);
        const std::string code = random_.text(3, "MSCTRFN"), ref = random_.text(16, "ABCN 0123"),
                          bankref = random_.text(16, "0123N/");
        text.append(reversal ? "R" : "").append(debit ? "D" : "C").append(random_.chance(30) ? "R" : "");
        text.append(amount(tx.amount)).append("N").append(code).append(ref).append("//").append(bankref);
        add_line(":61:", text);
        if (random_.chance(20)) add_line("supplementary details", "");
        tx.reversal = reversal;
        if (debit) tx.amount *= 255;
        std::strcpy(tx.code, code.c_str());
        tx.ref = keep(ref);
        tx.bankref = keep(bankref);

        const std::string field = information(tx);
        const std::size_t width = random_.chance(80) ? 65 : static_cast<std::size_t>(random_.between(1, 70));
        for (std::size_t at = 0; at < field.size(); at += width)
            add_line(at == 0 ? ":86:" : "", field.substr(at, width));
        describe(records, tx);
        kept_.clear();
    }

    std::string information(sepa_stmt_tx_t& tx) {
        tx.gvc = static_cast<unsigned>(random_.between(100, 999));
        tx.extcode = static_cast<unsigned>(random_.between(100, 999));
        std::string field = std::to_string(tx.gvc);
        const auto add = [&](int number, const std::string& text) {
            field.append("?").append(digits(number)).append(text);
            return text;
        };
        const std::vector<std::string> purpose = purpose_lines(tx);
        tx.txtext = keep(add(0, word(27)));
        tx.primanota = keep(add(10, word(10)));
        int next = 20;
        for (const std::string& line : purpose) {
            if (next == 30) add_counterpart(tx, add);
            add(next == 30 ? next = 60 : next, line);
            ++next;
        }
        if (next <= 30) add_counterpart(tx, add);
        return field;
    }

    template <typename Add>
    void add_counterpart(sepa_stmt_tx_t& tx, Add add) {
        std::strcpy(tx.bank, add(30, word(12)).c_str());
        std::strcpy(tx.account, add(31, word(34)).c_str());
        std::strcpy(tx.name, add(32, word(27)).c_str());
        if (std::strlen(tx.name) < 27) std::strcat(tx.name, " ");
        std::strcat(tx.name, add(33, word(26)).c_str());
        add(34, std::to_string(tx.extcode));
    }

    std::vector<std::string> purpose_lines(sepa_stmt_tx_t& tx) {
        std::vector<std::string> lines;
        if (random_.chance(50)) {
            std::string purpose;
            for (int count = random_.between(1, 14); count > 0; --count) {
                lines.push_back(word(27));
                purpose.append(purpose.empty() ? "" : "\n").append(lines.back());
            }
            tx.purpose = keep(purpose);
            return lines;
        }
        // Values whose lines are full but for the last one come out as they went in.
        for (const auto& [keyword, value] : {std::pair("EREF+", &tx.eref), std::pair("MREF+", &tx.mref),
                                             std::pair("CRED+", &tx.cred), std::pair("SVWZ+", &tx.svwz)}) {
            *value = keep(word(76));
            const std::string text = std::string(keyword).append(*value);
            for (std::size_t at = 0; at < text.size(); at += 27)
                lines.push_back(text.substr(at, 27));
        }
        return lines;
    }

    Random& random_;
    std::list<std::string> kept_; // of the booking that is being built
};

TEST(Statement, WellFormedFilesComeBack) {
    Random random;
    for (int i = 0; i < 1000 && !HasFailure(); ++i) {
        const RandomFile expected(random);
        const Parser parser = new_parser();
        ASSERT_EQ(load(parser, expected.file), 1);
        EXPECT_EQ(describe(parser), expected.records.text()) << expected.file;
    }
}

// The fuzzer's seeds and all inputs that ever failed.
TEST(Statement, FuzzCorpus) {
    std::size_t count = 0;
    for (const auto& entry : fs::directory_iterator(source_dir / "fuzz/corpus/statement")) {
        SCOPED_TRACE(entry.path());
        const std::string input = read_file(entry.path());
        EXPECT_EQ(LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size()),
                  0);
        ++count;
    }
    EXPECT_GT(count, 10U);
}

} // namespace
