// Status reports: the items they give, how payments are matched, what is refused.
#include <gtest/gtest.h>

#include <regex>

#include "cpu_time.h"
#include "statement_records.h"

namespace {

using namespace velmora::test;

struct FreeReport {
    void operator()(sepa_report_t* report) const { sepa_report_free(report); }
};
using Report = std::unique_ptr<sepa_report_t, FreeReport>;

Report load_report(std::string_view document) {
    Report report(sepa_report_new());
    const int loaded = sepa_report_loadMemory(report.get(), document.data(), document.size());
    EXPECT_EQ(loaded == 1, *sepa_report_getError(report.get()) == '\0');
    EXPECT_TRUE(loaded == 1 || sepa_report_getItem(report.get()) == nullptr);
    return report;
}

constexpr const char* levels[] = {"group", "block", "payment"};

std::string describe(const Report& report) {
    std::string text = sepa_report_getError(report.get());
    if (!text.empty()) text += "\n";
    for (const sepa_report_item_t* i = sepa_report_getItem(report.get()); i != nullptr; i = i->next) {
        Description out{levels[i->level]};
        out.add({{"status", unless_empty(i->status)},
                 {"messageId", i->messageId},
                 {"messageName", i->messageName}});
        out.add(
            {{"blockId", i->blockId}, {"instructionId", i->instructionId}, {"endToEndId", i->endToEndId}});
        out.add({{"uetr", i->uetr}, {"statusId", i->statusId}, {"reference", i->reference}});
        out.add({{"reason", i->reason}, {"reasons", i->reasons}, {"text", i->text}});
        out.add("amount", i->amount);
        out.add({{"currency", unless_empty(i->currency)}});
        out.add("count", i->count);
        out.add({{"name", i->name},
                 {"iban", unless_empty(i->iban)},
                 {"mandate", i->mandate},
                 {"date", unless_empty(i->date)}});
        text += out.text + "\n";
    }
    return text;
}

std::string match(const Report& report, const std::string& id) {
    const sepa_report_item_t* item = nullptr;
    const int result = sepa_report_match(report.get(), id.c_str(), &item);
    EXPECT_EQ(result, item != nullptr);
    EXPECT_EQ(sepa_report_match(report.get(), id.c_str(), nullptr), result);
    if (item == nullptr) return "match " + id + ": none";
    return "match " + id + ": " + levels[item->level] +
           (item->reason != nullptr ? "" : std::string(" ") + item->status);
}

TEST(Report, ContentsGiveTheirItems) {
    for (const Case& test : read_cases("../reports/cases.txt", "\n")) {
        SCOPED_TRACE(test.file);
        const Report report =
            load_report("<d><Document><CstmrPmtStsRpt>" + test.file + "</CstmrPmtStsRpt></Document></d>");
        std::string found = describe(report);
        const std::regex question("match (\\w+):");
        for (std::sregex_iterator at(test.records.begin(), test.records.end(), question), end; at != end;
             ++at)
            found += match(report, (*at)[1]) + "\n";
        EXPECT_EQ(found, test.records);
    }
}

// A partly refused file, in both forms of the schema and with prefixes.
TEST(Report, FormsGiveEqualItems) {
    std::ifstream in(source_dir / "tests/data/reports/partly.xml");
    const std::string document{std::istreambuf_iterator<char>(in), {}};
    const std::string original = "messageId=\"LOHN-11\" messageName=\"pain.001.001.09\"",
                      sum = " amount=4200.5 count=3\n", block = "blockId=\"LOHN-11-1\"";
    const std::string expected = "group status=\"PART\" " + original + sum + "block status=\"PART\" " +
                                 original + " " + block + sum + "payment status=\"ACCP\" " + original + " " +
                                 block +
                                 " instructionId=\"I1\" endToEndId=\"L-1\" "
                                 "uetr=\"8a562c67-ca16-48ba-b074-65581be6f001\" statusId=\"S1\" "
                                 "reference=\"REF1\"\npayment status=\"RJCT\" " +
                                 original + " " + block +
                                 " endToEndId=\"L-2\" reason=\"AC01\" reasons=\"AC01 X99\" "
                                 "text=\"Konto\\ngibt es nicht & gab es nie\" "
                                 "amount=1400.25 currency=\"EUR\" name=\"Eva Muster\" "
                                 "iban=\"DE89370400440532013000\" date=\"2026-11-27\"\n"
                                 "payment status=\"RVMC\" " +
                                 original + " " + block + " endToEndId=\"L-3\" text=\"Karl Weiß\"\n";
    std::string older = std::regex_replace(document, std::regex("</?Pty>|</?Dt>"), "");
    replace_all(older, "pain.002.001.10", "pain.002.001.03");
    const std::string prefixed = std::regex_replace(document, std::regex("<(/?)(\\w)"), "<$1ns2:$2");
    for (const std::string& form : {document, older, prefixed})
        EXPECT_EQ(describe(load_report(form)), expected);
    for (std::size_t size = 1; size < document.size() - 1; ++size)
        EXPECT_EQ(sepa_report_getItem(load_report(std::string_view(document).substr(0, size)).get()),
                  nullptr);

    const MemoryFile file(document);
    const Report report(sepa_report_new());
    EXPECT_EQ(sepa_report_load(report.get(), file.path()), 1);
    EXPECT_EQ(describe(report), expected);
    EXPECT_EQ(match(report, "L-2") + match(report, "L-4"), "match L-2: paymentmatch L-4: none");
    EXPECT_EQ(sepa_report_load(report.get(), file.path()), 0);
    EXPECT_STREQ(sepa_report_getError(report.get()), "Report already used");
    EXPECT_STREQ(sepa_report_getError(load_report("<Document/>").get()), "Not a pain.002 document");
    EXPECT_STREQ(sepa_report_getError(load_report("").get()), "Input file is empty");
    EXPECT_STREQ(sepa_report_getError(nullptr), "invalid sepa_report_t handle");
    EXPECT_EQ(sepa_report_load(nullptr, "x") + sepa_report_match(nullptr, "x", nullptr), 0);
    EXPECT_EQ(sepa_report_match(report.get(), nullptr, nullptr), 0);
    EXPECT_EQ(sepa_report_getItem(nullptr), nullptr);
    sepa_report_free(nullptr);
}

// Each payment is found among many, also among many of one identification, and time grows with the size.
TEST(Report, ManyItems) {
    const auto seconds = [](int count, bool is_equal) {
        std::string document = "<CstmrPmtStsRpt><OrgnlPmtInfAndSts>";
        for (int i = 0; i < count; ++i)
            document += "<TxInfAndSts><StsId>S" + std::to_string(i) + "</StsId><OrgnlEndToEndId>E" +
                        (is_equal ? "" : std::to_string(i)) + "</OrgnlEndToEndId></TxInfAndSts>";
        document += "</OrgnlPmtInfAndSts></CstmrPmtStsRpt>";
        return cpu_seconds([&] {
            const Report report = load_report(document);
            for (int i = 0; i < count; ++i) {
                const sepa_report_item_t* item = nullptr;
                EXPECT_EQ(sepa_report_match(report.get(), is_equal ? "E" : ("E" + std::to_string(i)).c_str(),
                                            &item),
                          1);
                EXPECT_EQ(item->statusId, is_equal ? "S0" : "S" + std::to_string(i));
            }
        });
    };
    for (const bool is_equal : {false, true})
        EXPECT_LT(seconds(80000, is_equal), 32 * seconds(10000, is_equal) + 0.1);
}

TEST(Report, ReasonsHaveTexts) {
    for (const char* code : {"AC01", "XT33", "MD06", "RR04", "RVMC", "ACCP"})
        EXPECT_GT(std::strlen(sepa_reason_text(code)), 6u) << code;
    for (const char* code : {"", "AC0", "AC011", "ac01", "ZZZZ", "XT34"})
        EXPECT_EQ(sepa_reason_text(code), nullptr);
    EXPECT_EQ(sepa_reason_text(nullptr), nullptr);
}

} // namespace
