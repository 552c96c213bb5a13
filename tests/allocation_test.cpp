// The failing heap, and what the tables of calls do not try on it: they run on it row by row.
#include <gtest/gtest.h>

#include <malloc.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include "failing_heap.h"
#include "message/add_all.h"
#include "message_builder.h"
#include "statement_records.h"

Heap heap;

namespace {

bool refuse() {
    return heap.watching && ++heap.requests == heap.refused;
}

// The accounts, names and texts of message_builder.h and of the tables of calls.
bool holds_account_data(const void* block) {
    const std::size_t size = malloc_usable_size(const_cast<void*>(block));
    for (const std::string_view text : {"370400440532013", "611904300234573", "Eva Muster", "Musterstadt"})
        if (memmem(block, size, text.data(), text.size()) != nullptr) return true;
    return false;
}

} // namespace

extern "C" {
void* __real_calloc(std::size_t count, std::size_t size);
void __real_free(void* block);

void* __wrap_calloc(std::size_t count, std::size_t size) {
    if (refuse()) return nullptr;
    ++heap.live;
    return __real_calloc(count, size);
}

// Filled, so that what a block holds is its owner's.
void* __wrap_malloc(std::size_t size) {
    void* const block = __wrap_calloc(1, size);
    return block == nullptr ? nullptr : std::memset(block, '#', malloc_usable_size(block));
}

void __wrap_free(void* block) {
    heap.live -= block != nullptr;
    heap.unwiped += heap.watching && block != nullptr && holds_account_data(block);
    __real_free(block);
}

// Always moves the block, so that what a growing one leaves behind is seen too.
void* __wrap_realloc(void* block, std::size_t size) {
    void* moved = __wrap_malloc(size);
    if (moved != nullptr && block != nullptr) {
        std::memcpy(moved, block, std::min(size, malloc_usable_size(block)));
        __wrap_free(block);
    }
    return moved;
}

char* __wrap_strndup(const char* text, std::size_t length) {
    length = strnlen(text, length);
    auto* copy = static_cast<char*>(__wrap_malloc(length + 1));
    if (copy != nullptr) *static_cast<char*>(mempcpy(copy, text, length)) = '\0';
    return copy;
}

char* __wrap_strdup(const char* text) {
    return __wrap_strndup(text, std::strlen(text));
}
}

namespace {

using namespace velmora::test;

// Texts that become five times as long, of every length, so that every kind of line has to grow the document.
TEST(Allocation, DocumentIsWholeOrMissing) {
    heap.unwiped = 0;
    for (std::size_t length = 1; length <= 70; ++length) {
        const Message message = complete_message(SEPA_MSGTYPE_DDI, "DE-3.7");
        const std::string name(length, '&'), reference(140, '&');
        for (int i = 0; i < 20; ++i)
            ASSERT_TRUE(
                add(message, with(direct_debit(), {{"name", name.c_str()}, {"ref", reference.c_str()}})));
        const auto timeless = [](std::string text) { return text.erase(0, text.find("<NbOfTxs>")); };
        const std::string whole = timeless(document(message));
        long growths = 0;
        std::free(call_with_failing_allocations([&] { return sepa_toXML(message.get()); },
                                                [&](char* text) {
                                                    ++growths;
                                                    EXPECT_TRUE(text == nullptr || timeless(text) == whole)
                                                        << length;
                                                    std::free(text);
                                                    return false;
                                                }));
        EXPECT_GT(growths, 7);
    }
    EXPECT_EQ(heap.unwiped, 0);
}

TEST(Allocation, BatchesAreAddedWholeOrNotAtAll) {
    const Message message = complete_message(SEPA_MSGTYPE_DDI, "DE-3.7");
    ASSERT_TRUE(add(message, direct_debit()));
    const auto totals = [&] {
        sepa_totals_t found{};
        sepa_getTotals(message.get(), &found);
        return std::tuple(found.payments, found.cents, found.blocks);
    };
    const auto before = totals();
    const char* const payment[] = {"iban", "DE89370400440532013000", "amount", "2", "seq", "RCUR", nullptr};
    const std::vector<const char* const*> payments(100, payment);
    std::size_t refused = 0;
    call_with_failing_allocations(
        [&] { return velmora_add_all(message.get(), payments.data(), payments.size(), &refused); },
        [&](int added) {
            EXPECT_EQ(totals(), before);
            EXPECT_GT(refused, 0u);
            return added != 0;
        });
    EXPECT_EQ(totals(), std::tuple(101u, 21250, 1u));
}

TEST(Allocation, LookupsTellThatThereIsNoMemory) {
    sepa_bank_t* const untouched = reinterpret_cast<sepa_bank_t*>(&heap);
    sepa_bank_t* bank = untouched;
    EXPECT_EQ(call_watched([&] { return sepa_bankid_check("DE", "37040044", &bank); }, 1), -3);
    EXPECT_EQ(call_watched([&] { return sepa_iban_getBank(own_iban, &bank); }, 1), -3);
    EXPECT_EQ(call_watched([&] { return sepa_bic_getBank("COBADEFF", &bank); }, 1), -3);
    EXPECT_EQ(bank, untouched);
}

class StatementFormats : public testing::TestWithParam<int> {};

TEST_P(StatementFormats, AreReadWholeOrNotAtAll) {
    std::string content = "X\r\n:20:A\r\n-\r\n:20:B\r\n";
    for (int i = 0; i < 1000; ++i)
        content += ":61:230102C1,NMSCX\r\n:86:166?31DE89370400440532013000?32Eva "
                   "Muster\r\n:86:again\r\n:64:C230102EUR1,\r\n:86:x\r\n:86:y\r\n";
    const MemoryFile file(content);
    const std::string texts[] = {"invalid sepa_stmt_parser_t handle",
                                 "Error while allocating 264 bytes: Cannot allocate memory",
                                 "Failed to allocate " + std::to_string(content.size()) + " bytes"};
    const long live = heap.live;
    long n = heap.unwiped = 0;
    call_with_failing_allocations(
        [&] {
            errno = ENOMEM;
            sepa_stmt_parser_t* parser = sepa_stmt_parser_new();
            const int loaded = sepa_stmt_parser_load(parser, static_cast<uint32_t>(GetParam()), file.path());
            EXPECT_EQ(sepa_stmt_parser_getError(parser), n < 3 ? texts[n] : loaded ? "" : "Out of memory");
            EXPECT_EQ(sepa_stmt_parser_getStatement(parser) != nullptr, loaded == 1);
            sepa_stmt_parser_free(parser);
            return loaded;
        },
        [&](int) { return ++n, false; });
    EXPECT_GT(n, 5);
    EXPECT_EQ(heap.live, live);
    EXPECT_EQ(heap.unwiped, 0);
}
INSTANTIATE_TEST_SUITE_P(Allocation, StatementFormats,
                         testing::Values(SEPA_STMT_FORMAT_MT940, SEPA_STMT_FORMAT_MT940_TOLERANT));

TEST(Allocation, CamtFilesAreReadWholeOrNotAtAll) {
    // In another encoding, with texts to join, parts that add up and parts that do not.
    const std::string
        amount = "<Amt Ccy='EUR'>1</Amt><CdtDbtInd>CRDT</CdtDbtInd>",
        part = "<TxDtls>" + amount +
               "<RltdPties><Dbtr><Nm>Eva Muster</Nm></Dbtr><DbtrAcct><Id><IBAN>"
               "DE89 3704 0044 0532 0130 00</IBAN></Id></DbtrAcct></RltdPties><RmtInf><Ustrd>an</Ustrd>"
               "<Ustrd>Eva Muster, M\xFCnchen</Ustrd></RmtInf></TxDtls>";
    std::string content = "<?xml version='1.0' encoding='ISO-8859-1'?><BkToCstmrStmt><Stmt>";
    for (int i = 0; i < 200; ++i)
        content += "<Bal>" + amount + "</Bal><Ntry>" + amount +
                   "<BkTxCd><Prtry><Cd>NTRF+166+1</Cd></Prtry></BkTxCd>" + "<NtryDtls>" + part +
                   (i % 2 == 0 ? part : "") + "</NtryDtls></Ntry>";
    content += "</Stmt></BkToCstmrStmt>";
    const long live = heap.live;
    long n = heap.unwiped = 0;
    call_with_failing_allocations(
        [&] {
            sepa_stmt_parser_t* parser = sepa_stmt_parser_new();
            const int loaded =
                sepa_stmt_parser_loadMemory(parser, SEPA_STMT_FORMAT_CAMT, content.data(), content.size());
            EXPECT_EQ(*sepa_stmt_parser_getError(parser) == '\0', loaded == 1);
            EXPECT_EQ(sepa_stmt_parser_getStatement(parser) != nullptr, loaded == 1);
            sepa_stmt_parser_free(parser);
            return loaded;
        },
        [&](int) { return ++n, false; });
    EXPECT_GT(n, 10);
    EXPECT_EQ(heap.live, live);
    EXPECT_EQ(heap.unwiped, 0);
}

TEST(Allocation, ReportsAreReadWholeOrNotAtAll) {
    std::string content = "<CstmrPmtStsRpt><OrgnlPmtInfAndSts>";
    for (int i = 0; i < 200; ++i)
        content += "<TxInfAndSts><OrgnlEndToEndId>E" + std::to_string(i) +
                   "</OrgnlEndToEndId><StsRsnInf><Rsn><Cd>AC01</Cd></Rsn>"
                   "<AddtlInf>Konto von Eva "
                   "Muster</AddtlInf><AddtlInf>DE89370400440532013000</AddtlInf></StsRsnInf></TxInfAndSts>";
    content += "</OrgnlPmtInfAndSts></CstmrPmtStsRpt>";
    const long live = heap.live;
    long n = heap.unwiped = 0;
    call_with_failing_allocations(
        [&] {
            sepa_report_t* report = sepa_report_new();
            const int loaded = sepa_report_loadMemory(report, content.data(), content.size());
            EXPECT_EQ(*sepa_report_getError(report) == '\0', loaded == 1);
            EXPECT_EQ(sepa_report_getItem(report) != nullptr, loaded == 1);
            sepa_report_free(report);
            return loaded;
        },
        [&](int) { return ++n, false; });
    EXPECT_GT(n, 5);
    EXPECT_EQ(heap.live, live);
    EXPECT_EQ(heap.unwiped, 0);
}

} // namespace
