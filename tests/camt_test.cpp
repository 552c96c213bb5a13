// camt.052, camt.053 and camt.054: the records they give, what is refused, and that no shape takes long.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <regex>
#include <vector>

#include "command.h"
#include "cpu_time.h"
#include "statement_records.h"

namespace {

using namespace velmora::test;
namespace fs = std::filesystem;

const fs::path data = fs::path(VELMORA_SOURCE_DIR) / "tests/data/camt";

std::string read_all(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::string replaced(const std::string& text, const char* pattern, const char* by) {
    return std::regex_replace(text, std::regex(pattern), by);
}

Parser parsed(const std::string& document) {
    Parser parser = new_parser();
    sepa_stmt_parser_loadMemory(parser.get(), SEPA_STMT_FORMAT_CAMT, document.data(), document.size());
    return parser;
}

// The records, or the error; there is never something of both.
std::string records(const std::string& document) {
    const Parser parser = parsed(document);
    const std::string error = sepa_stmt_parser_getError(parser.get()), found = describe_all(parser);
    return error.empty() ? found : "error: " + error + "\n" + found;
}

std::string in_statement(const std::string& content) {
    return "<Document "
           "xmlns=\"urn:iso:std:iso:20022:tech:xsd:camt.053.001.08\"><BkToCstmrStmt><GrpHdr><MsgId>M</MsgId>"
           "</GrpHdr><Stmt><Id>S</Id><Acct><Id><IBAN>DE89370400440532013000</IBAN></Id><Ccy>EUR</Ccy></"
           "Acct>\n" +
           content + "</Stmt></BkToCstmrStmt></Document>\n";
}

TEST(Camt, FilesGiveTheirRecords) {
    const std::string all = read_all(data / "cases.txt");
    int count = 0;
    for (std::size_t at = all.find("\n== "), next; at != all.npos; at = next, ++count) {
        next = all.find("\n== ", at + 1);
        const std::string test = all.substr(at + 1, next == all.npos ? next : next - at - 1);
        const std::size_t xml = test.find('\n') + 1, arrow = test.find("=>\n");
        const std::string document = test.substr(xml, arrow - xml);
        const bool is_whole = document.starts_with("<?") || document.starts_with("<Document");
        std::string expected = test.substr(arrow + 3);
        if (expected.ends_with("\n\n") || expected == "\n") expected.pop_back();
        EXPECT_EQ(records(is_whole ? document : in_statement(document)), expected) << test.substr(0, xml);
    }
    EXPECT_GT(count, 35);
}

// One day in every form it may come in.
TEST(Camt, VersionsAndFormsGiveEqualRecords) {
    const std::string expected = read_all(data / "day.txt");
    const std::string without_version = replaced(expected, "kind=53 version=8", "");
    const auto expect = [&](const std::string& document, const char* what, bool has_balances = true) {
        const Parser parser = parsed(document);
        std::string found = replaced(describe_all(parser), "kind=5[234] version=[0-9]", "");
        EXPECT_EQ(found, has_balances ? without_version
                                      : replaced(replaced(without_version, "\n  balance[^\n]*", ""),
                                                 " (open|close)=[^ ]* EUR saldo=[0-9.]*", ""))
            << what << sepa_stmt_parser_getError(parser.get());
        EXPECT_EQ(sepa_stmt_parser_check(parser.get(), sepa_stmt_parser_getStatement(parser.get()), nullptr),
                  has_balances ? 1 : -1);
    };
    EXPECT_EQ(records(read_all(data / "day.001.08.xml")), expected);
    for (const char* version : {"02", "04", "08"}) {
        const std::string day = read_all(data / ("day.001." + std::string(version) + ".xml"));
        expect(day, version);
        expect(replaced(replaced(day, "<(/?)([A-Z])", "<$1ns2:$2"), "xmlns=", "xmlns:ns2="), "a prefix");
        expect(replaced(day, "\n", "\r\n"), "CR LF");
        const std::string report = replaced(
            replaced(replaced(day, "BkToCstmrStmt", "BkToCstmrAcctRpt"), "<(/?)Stmt(>|Pgntn)", "<$1Rpt$2"),
            "AddtlStmtInf", "AddtlRptInf");
        expect(report, "camt.052");
        expect(replaced(replaced(report, "AcctRpt>", "DbtCdtNtfctn>"), "Rpt(>|Pgntn|Inf)", "Ntfctn$1"),
               "camt.054");

        // The official schemas that can be had are those of camt.052.
        const std::string schema = VELMORA_SCHEMAS "/camt.052.001." + std::string(version) + ".xsd";
        if (!fs::exists(schema)) continue;
        const MemoryFile file(replaced(report, "camt.053", "camt.052"));
        const CommandResult result =
            run("xmllint --noout --schema " + schema + " /proc/" + std::to_string(getpid()) + "/fd/" +
                std::to_string(file.descriptor()));
        EXPECT_EQ(result.status, 0) << result.output;
    }
}

TEST(Camt, DamagedFilesLeaveNothing) {
    const std::string day = read_all(data / "day.001.08.xml");
    for (std::size_t size = 1; size < day.size() - 1; ++size) {
        const Parser parser = parsed(day.substr(0, size));
        ASSERT_STRNE(sepa_stmt_parser_getError(parser.get()), "") << size;
        ASSERT_EQ(sepa_stmt_parser_getStatement(parser.get()), nullptr) << size;
        ASSERT_EQ(load(parser, "X\r\n:20:A\r\n-"), 0);
        ASSERT_STREQ(sepa_stmt_parser_getError(parser.get()), "Parser already used");
    }
}

// Eight times the input takes about eight times as long, whatever it is made of; four times that is for a
// busy machine. Anything that looks again at what it has seen takes 64 times.
TEST(Camt, NoShapeTakesLong) {
    const std::string entry = "<Ntry><Amt Ccy=\"EUR\">1</Amt><CdtDbtInd>CRDT</CdtDbtInd>";
    const auto times = [](const std::string& text, int count) {
        std::string all;
        all.reserve(text.size() * static_cast<std::size_t>(count));
        while (count-- > 0)
            all += text;
        return all;
    };
    const auto in_part = [&](const std::string& content) {
        return in_statement(entry + "<NtryDtls><TxDtls>" + content + "</TxDtls></NtryDtls></Ntry>");
    };
    const std::pair<const char*, std::function<std::string(int)>> shapes[] = {
        {"parts",
         [&](int n) {
             return in_statement(entry + "<NtryDtls>" +
                                 times("<TxDtls><Amt Ccy=\"EUR\">0</Amt></TxDtls>", n) +
                                 "</NtryDtls></Ntry>");
         }},
        {"entries", [&](int n) { return in_statement(times(entry + "</Ntry>", n)); }},
        {"statements",
         [&](int n) {
             return "<BkToCstmrStmt>" +
                    times("<Stmt><Bal><Amt>1</Amt><CdtDbtInd>CRDT</CdtDbtInd>"
                          "</Bal></Stmt>",
                          n) +
                    "</BkToCstmrStmt>";
         }},
        {"balances",
         [&](int n) { return in_statement(times("<Bal><Amt>1</Amt><CdtDbtInd>CRDT</CdtDbtInd></Bal>", n)); }},
        {"texts",
         [&](int n) {
             return in_part("<RmtInf>" + times("<Ustrd>EREF+a SVWZ+b\r\n</Ustrd>", n) + "</RmtInf>" +
                            "<RtrInf>" + times("<AddtlInf>x</AddtlInf>", n) + "</RtrInf>");
         }},
        {"a long text",
         [&](int n) {
             return in_part("<RmtInf><Ustrd>EREF+" + times("a&amp; SVWZ+\r\n", n) + "</Ustrd></RmtInf>");
         }},
        {"blanks",
         [&](int n) {
             return in_part("<RltdPties><Cdtr><Nm>" + times(" \n", n) + "</Nm></Cdtr></RltdPties>");
         }},
        {"levels",
         [&](int n) { return in_statement(times(times("<a b='1'>", 60) + times("</a>", 60), n / 50)); }},
        {"comments",
         [&](int n) { return in_part("<AddtlTxInf>" + times("a<!-- -->b<?c d?>", n) + "</AddtlTxInf>"); }},
        {"attributes",
         [&](int n) { return in_statement(times("<a a1='&lt;' a2='' a3='' a4='' a5='' a6='' a7=''/>", n)); }},
    };
    for (const auto& [name, make] : shapes) {
        const auto seconds = [&, make = &make](int count) {
            const std::string document = (*make)(count);
            return cpu_seconds(
                [&] { EXPECT_NE(sepa_stmt_parser_getStatement(parsed(document).get()), nullptr); });
        };
        const double once = seconds(4000);
        EXPECT_LT(seconds(32000), once * 32 + 0.01) << name;
    }
}

// A day as MT940 and as camt.053 tells the same.
TEST(Camt, TellsWhatMt940Tells) {
    std::string mt940 = "X\r\n:20:S\r\n:25:DE89370400440532013000\r\n:60F:C261119EUR0,00\r\n", camt;
    for (int i = 0; i < 200; ++i) {
        const std::string number = std::to_string(i), gvc = i % 3 == 0 ? "166" : i % 3 == 1 ? "105" : "171";
        const bool debit = i % 3 == 1;
        const std::string name = "Party " + number,
                          iban = "DE" + std::to_string(10 + i % 80) + "701500001739563912",
                          side = debit ? "Cdtr" : "Dbtr", mandate = i % 3 == 0 ? "" : "M" + number;
        mt940 += ":61:2611201120" + std::string(debit ? "D" : "C") + number + ",25NTRFR" + number +
                 "\r\n:86:" + gvc + "?00TEXT?10931?20EREF+E" + number +
                 (mandate.empty() ? "" : "?21MREF+" + mandate) + (debit ? "?22CRED+DE98ZZZ09999999999" : "") +
                 "?23SVWZ+Purpose " + number + "?30COBADEFF?31" + iban + "?32" + name + "\r\n";
        camt += "<Ntry><Amt Ccy=\"EUR\">" + number + ".25</Amt><CdtDbtInd>" + (debit ? "DBIT" : "CRDT") +
                "</CdtDbtInd><BookgDt><Dt>2026-11-20</Dt></BookgDt><ValDt><Dt>2026-11-20</Dt></"
                "ValDt><NtryDtls><TxDtls>"
                "<Refs><InstrId>R" +
                number + "</InstrId><EndToEndId>E" + number + "</EndToEndId>" +
                (mandate.empty() ? "" : "<MndtId>" + mandate + "</MndtId>") +
                "</Refs><BkTxCd><Prtry><Cd>NTRF+" + gvc + "+931</Cd></Prtry></BkTxCd><RltdPties><" + side +
                "><Nm>" + name + "</Nm>" +
                (debit ? "<Id><PrvtId><Othr><Id>DE98ZZZ09999999999</Id></Othr></PrvtId></Id>" : "") + "</" +
                side + "><" + side + "Acct><Id><IBAN>" + iban + "</IBAN></Id></" + side +
                "Acct></RltdPties><RltdAgts><" + side + "Agt><FinInstnId><BIC>COBADEFF</BIC></FinInstnId></" +
                side + "Agt></RltdAgts><RmtInf><Ustrd>Purpose " + number +
                "</Ustrd></RmtInf></TxDtls></NtryDtls><AddtlNtryInf>TEXT</AddtlNtryInf></Ntry>";
    }
    const Parser first = new_parser(), second = parsed(in_statement(camt));
    ASSERT_EQ(load(first, mt940 + ":62F:C261120EUR0,00\r\n-\r\n"), 1);
    const auto comparable = [](const Parser& parser) {
        return replaced(describe(*sepa_stmt_parser_getStatement(parser.get())),
                        "^statement[^\n]*|amount=[^ ]*| kref=[^ ]*", "");
    };
    EXPECT_EQ(comparable(first), comparable(second));

    const Parser tolerant = new_parser();
    ASSERT_EQ(sepa_stmt_parser_loadMemory(tolerant.get(), 940, mt940.data(), mt940.size()), 1);
    EXPECT_EQ(comparable(tolerant), comparable(second));
    const sepa_stmt_tx_t* tx = sepa_stmt_parser_getStatement(tolerant.get())->first_tx;
    for (const sepa_stmt_tx_t* other = sepa_stmt_parser_getStatement(second.get())->first_tx;
         other != nullptr; other = other->next, tx = tx->next)
        EXPECT_EQ(tx->amount, other->amount);
}

} // namespace
