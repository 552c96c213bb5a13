// Format 940: the records that files give, amounts, what fails, and files of any shape.
#include <gtest/gtest.h>

#include <random>

#include "statement_records.h"

namespace {

using namespace velmora::test;

std::string number(double value) {
    char digits[32];
    return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}

// What stands beside the records that every format has.
std::string describe_info(const Parser& parser, const sepa_stmt_t& statement) {
    const sepa_stmt_info_t& info = *sepa_stmt_parser_getInfo(parser.get(), &statement);
    EXPECT_EQ(info.kind, SEPA_STMT_FORMAT_MT940_TOLERANT);
    Description out{info.lastPage != 0 ? "" : " notLast"};
    out.add({{"bic", *info.bic != '\0' ? info.bic : nullptr}});
    if (*info.currency != '\0') out.text += std::string(" currency=") + info.currency;
    out.add({{"text", info.text}});
    if (info.utf8 != 0) out.text += " utf8";
    for (std::uint32_t i = 0; i < info.balanceCount; ++i)
        out.text += std::string(" ") + info.balances[i].code + (info.balances[i].interim != 0 ? "*" : "") +
                    "=" + number(info.balances[i].amount);
    double difference = 0;
    const int proved = sepa_stmt_parser_check(parser.get(), &statement, &difference);
    if (proved == 1) out.text += " proved";
    if (proved == 0) out.text += " off=" + number(difference);
    return out.text.empty() ? "" : out.text + "\n";
}

std::string describe_info(const Parser& parser, const sepa_stmt_tx_t& booking, std::uint32_t entry) {
    const sepa_stmt_tx_info_t& info = *sepa_stmt_parser_getTxInfo(parser.get(), &booking);
    EXPECT_EQ(info.entry, entry);
    EXPECT_EQ(info.entryAmount, booking.amount);
    EXPECT_EQ(static_cast<double>(info.signedAmount) / 100000, booking.amount);
    Description out;
    const char* const name = *booking.name != '\0' ? booking.name : nullptr;
    const bool is_cut = name != nullptr && std::strcmp(info.fullName, name) != 0;
    out.add({{"fullName", is_cut ? info.fullName : nullptr}});
    if (info.debit != 0) out.text += " debit";
    if (*info.currency != '\0') out.text += std::string(" ") + info.currency;
    if (std::strcmp(info.status, "BOOK") != 0) out.text += std::string(" ") + info.status;
    out.add({{"returnReason", info.returnReason}, {"creditorReference", info.creditorReference}});
    out.add({{"text", info.text}});
    return out.text;
}

// All records of a file, or why there are none.
std::string read(std::string_view file, std::uint32_t format = SEPA_STMT_FORMAT_MT940_TOLERANT) {
    const Parser parser = new_parser();
    const int loaded = sepa_stmt_parser_loadMemory(parser.get(), format, file.data(), file.size());
    const sepa_stmt_t* statement = sepa_stmt_parser_getStatement(parser.get());
    std::string text = sepa_stmt_parser_getError(parser.get());
    EXPECT_EQ(loaded == 0, !text.empty());
    if (loaded == 0) {
        EXPECT_EQ(statement, nullptr);
        return text + "\n";
    }
    for (; statement != nullptr; statement = statement->next) {
        std::string records = describe(*statement);
        records.insert(records.find('\n') + 1, describe_info(parser, *statement));
        std::size_t at = records.find("  tx");
        std::uint32_t entry = 0;
        for (const sepa_stmt_tx_t* tx = statement->first_tx; tx != nullptr; tx = tx->next) {
            at = records.find('\n', at);
            const std::string info = describe_info(parser, *tx, ++entry);
            at = records.insert(at, info).find("  tx", at + info.size());
        }
        text += records;
    }
    return text;
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
        for (std::size_t size = 1; size <= test.file.size(); ++size)
            read(std::string_view(test.file).substr(0, size));
    }
}

TEST(Tolerant, AmountsAreExactOrFail) {
    struct {
        const char *written, *amount;
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
        {"1e3N", nullptr},
        {"0,000001", nullptr},
        {"92233720368547,75807", nullptr},
        {"0,10000000000000000001", nullptr},
    };
    for (const auto& test : cases) {
        const std::string file = std::string(":20:A\n:60F:C260101EUR") + test.written + "\n";
        EXPECT_EQ(read(file), test.amount == nullptr
                                  ? "Line 2: the amount of a balance\n"
                                  : std::string("statement ref=\"A\" open=2026-01-01 EUR saldo=") +
                                        test.amount + "\n currency=EUR utf8 OPBD=" + test.amount + "\n");
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
    for (int i = 0; i < 30000 && !HasFailure(); ++i) {
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

} // namespace
