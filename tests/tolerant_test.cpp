// Format 940: the records that files give, amounts, what fails, and files of any shape.
#include <gtest/gtest.h>

#include <random>

#include "cpu_time.h"
#include "statement_records.h"

namespace {

using namespace velmora::test;

// All records of a file, with the proofs of their sums, or why there are none.
std::string read(std::string_view file) {
    const Parser parser = new_parser();
    const int loaded =
        sepa_stmt_parser_loadMemory(parser.get(), SEPA_STMT_FORMAT_MT940_TOLERANT, file.data(), file.size());
    const std::string error = sepa_stmt_parser_getError(parser.get());
    EXPECT_EQ(loaded == 0, !error.empty());
    Description out{error.empty() ? describe_all(parser) : error + "\n"};
    const sepa_stmt_t* statement = sepa_stmt_parser_getStatement(parser.get());
    EXPECT_TRUE(loaded != 0 || statement == nullptr);
    for (; statement != nullptr; statement = statement->next) {
        double difference = 7;
        out.text += "check";
        out.add("result", sepa_stmt_parser_check(parser.get(), statement, &difference));
        out.add("difference", difference);
        out.text += "\n";
    }
    return out.text;
}

TEST(Tolerant, FilesGiveTheirRecords) {
    for (const Case& test : read_cases("tolerant.txt", "\n")) {
        SCOPED_TRACE(test.name + test.file);
        EXPECT_EQ(read(test.file), test.records);
        // What ends the lines makes no difference, unless the case is about that.
        std::string other = test.file;
        replace_all(other, "\n", "\r\r\n");
        if (test.name.find("@@") != std::string::npos) other = test.file;
        EXPECT_EQ(read(other), test.records);
    }
}

TEST(Tolerant, AmountsAreExactOrFail) {
    struct {
        const char *written, *amount;
        bool ends_earlier = false; // in a booking, where more follows
    } const cases[] = {
        {"12,5", "12.5"},
        {"12", "12"},
        {"12,", "12"},
        {",50", "0.5"},
        {"1.234,56", "1234.56"},
        {"1.234.567,", "1234567"},
        {"000000002145.00", "2145"},
        {"0,12345", "0.12345"},
        {"12.3", "12.3"},
        {".5", "0.5"},
        {"12.", "12"},
        {"0,1000000", "0.1"},
        {"92233720368547,75806", "92233720368547.77"},
        {"", nullptr},
        {",", nullptr},
        {".", nullptr},
        {"1.234", nullptr},
        {"1.2.3", nullptr},
        {"1.2,3", nullptr},
        {"1234.567,8", nullptr},
        {"1,2,3", nullptr},
        {"1,234.5", nullptr},
        {"-1", nullptr},
        {"+1", nullptr},
        {"1e3N", nullptr, true},
        {"0,000001", nullptr},
        {"92233720368547,75807", nullptr},
        {"1'234,56", nullptr},
        {"1 234,56", nullptr},
        {"1,00-", nullptr},
        {"0,10000000000000000001", nullptr},
    };
    for (const auto& test : cases) {
        const std::string file = std::string(":20:A\n:60F:C260101EUR") + test.written + "\n";
        const std::string records = read(file),
                          expected = std::string("EUR saldo=") + (test.amount != nullptr ? test.amount : "?");
        const bool fails = test.amount == nullptr && !test.ends_earlier;
        EXPECT_EQ(read(std::string(":20:A\n:61:260101C") + test.written + " NTRF")
                      .starts_with("Line 2: the amount"),
                  fails)
            << test.written;
        if (test.amount == nullptr)
            EXPECT_EQ(records, "Line 2: the amount of a balance\n");
        else
            EXPECT_NE((records + " ").find(expected + "\n"), std::string::npos) << records;
    }
}

// The text of every subfield, line and keyword is found somewhere in the records, whatever their order.
TEST(Tolerant, NothingIsDropped) {
    std::mt19937 random(940);
    const auto below = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    constexpr const char* separators[] = {
        "\n",     "\n:86:", "?20",    "?21",    "?22",    "?29",           "?30",
        "?31",    "?32",    "?33",    "?34",    "?38",    "?40",           "?60",
        "?63",    " ",      " EREF+", "SVWZ+",  " IBAN+", " BIC:",         "/NAME/",
        "/REMI/", "/OCMT/", "/CNTP/", "/IBAN/", "\n- ",   "\n:64:x\n:86:", "\n:20:A\n:61:260101C1,NTRF"};
    for (int i = 0; i < 10000 && !HasFailure(); ++i) {
        std::string file = ":20:A\n:61:260101C1,NTRF";
        std::vector<std::string> words;
        for (int count = below(12); count >= 0; --count) {
            words.push_back("w" + std::to_string(words.size()) +
                            std::string(static_cast<std::size_t>(below(2) * below(40)), 'x') + "z");
            if (below(20) == 0) words.back() = "DE89370400440532013000";
            file += words.back() + separators[below(std::size(separators))];
        }
        const std::string records = read(file);
        for (const std::string& word : words)
            EXPECT_NE(records.find(word), std::string::npos) << word << "\n" << file << "\n" << records;
    }
}

// The fuzzer's seeds and all inputs that ever failed, cut anywhere.
TEST(Tolerant, FuzzCorpus) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(source_dir / "fuzz/corpus/tolerant")) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string input{std::istreambuf_iterator<char>(file), {}};
        for (std::size_t size = 1; size <= input.size(); ++size, ++count)
            read(std::string_view(input).substr(0, size));
    }
    EXPECT_GT(count, 3000U);
}

// A file of any shape takes time by its size.
TEST(Tolerant, TakesTimeByTheSizeOfTheFile) {
    const auto seconds = [](std::string file, const char* repeated) {
        while (file.size() < 4'000'000)
            file += repeated;
        return cpu_seconds([&] {
            EXPECT_EQ(sepa_stmt_parser_loadMemory(new_parser().get(), 940, file.data(), file.size()), 1);
        });
    };
    const std::string field = ":20:A\n:61:260101C1,N\n:86:";
    const double usual = seconds(":20:A\n", ":61:260101C1,NTRFX\n:86:166?20SVWZ+A?21B\n") + 0.02;
    for (const char* repeated :
         {"-\n", " \n", "x\n", "?20?21", "?20?22", "?20SVWZ+a?21b", "?", "IBAN+ ", "+", "/NAME/", "/",
          "\n:86:x", "\n:64:C260101EUR1,\n:86:", "\n:20:A", "@@", "\xC4", "\xC3\x84\n"})
        EXPECT_LT(seconds(field, repeated), 30 * usual) << repeated;
    EXPECT_LT(seconds("", ":20:A@@:61:260101C1,N@@:86:x@@"), 30 * usual);
}

} // namespace
