// Loading camt.053 files: a realistic one, beside expat and libxml2's SAX parser walking over the same file,
// and hostile ones at two sizes, whose rates must be the same. The walks count entries, sum up the lengths of
// texts and know the path of each element; nothing is kept of it.
#include <expat.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <unistd.h>

#include <cstdint>
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

const std::string head =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Document xmlns=\"urn:iso:std:iso:20022:tech:"
    "xsd:camt.053.001.08\"><BkToCstmrStmt><GrpHdr><MsgId>053D2026112000001</MsgId><CreDtTm>"
    "2026-11-20T18:30:00+01:00</CreDtTm></GrpHdr>";
const std::string tail = "</BkToCstmrStmt></Document>\n";
const std::string statement_head =
    "<Stmt><Id>0532026112000001</Id><ElctrncSeqNb>224</ElctrncSeqNb><CreDtTm>2026-11-20T18:30:00+01:00</"
    "CreDtTm>"
    "<Acct><Id><IBAN>DE16701900000376033458</IBAN></Id><Ccy>EUR</Ccy></Acct><Bal><Tp><CdOrPrtry><Cd>PRCD</Cd>"
    "</CdOrPrtry></Tp><Amt "
    "Ccy=\"EUR\">1000.00</Amt><CdtDbtInd>CRDT</CdtDbtInd><Dt><Dt>2026-11-19</Dt></Dt></Bal>";
const std::string entry_head = "<Ntry><Amt Ccy=\"EUR\">1.00</Amt><CdtDbtInd>CRDT</CdtDbtInd>";

// About 1,300 bytes, as banks send them.
void append_entry(std::string& file, unsigned number) {
    char entry[2048];
    const bool debit = number % 4 != 0;
    const char* const side = debit ? "Cdtr" : "Dbtr";
    std::snprintf(
        entry, sizeof entry,
        "<Ntry>\n <NtryRef>%08u</NtryRef><Amt "
        "Ccy=\"EUR\">%u.%02u</Amt><CdtDbtInd>%s</CdtDbtInd><Sts><Cd>BOOK</Cd></Sts>"
        "<BookgDt><Dt>2026-11-%02u</Dt></BookgDt><ValDt><Dt>2026-11-%02u</Dt></"
        "ValDt><AcctSvcrRef>2026112000%08u"
        "</AcctSvcrRef><BkTxCd><Domn><Cd>PMNT</Cd><Fmly><Cd>%s</Cd><SubFmlyCd>ESCT</SubFmlyCd></Fmly></"
        "Domn><Prtry><Cd>"
        "NTRF+%s+9310</Cd><Issr>DK</Issr></Prtry></BkTxCd>\n <NtryDtls><TxDtls><Refs><EndToEndId>RE-2026-%06u"
        "</EndToEndId>%s</Refs><Amt "
        "Ccy=\"EUR\">%u.%02u</Amt><CdtDbtInd>%s</CdtDbtInd><BkTxCd><Domn><Cd>PMNT</Cd><Fmly><Cd>RCDT</"
        "Cd><SubFmlyCd>ESCT</SubFmlyCd></Fmly></Domn><Prtry><Cd>NTRF+166+9310</Cd><Issr>DK</Issr></Prtry></"
        "BkTxCd><RltdPties><%s><Pty><Nm>"
        "Veranstaltungsgesellschaft Nordlicht &amp; Söhne "
        "mbH</Nm></Pty></%s><%sAcct><Id><IBAN>DE89370400440532013000"
        "</IBAN></Id></%sAcct></RltdPties><RltdAgts><%sAgt><FinInstnId><BICFI>COBADEFFXXX</BICFI></"
        "FinInstnId></%sAgt>"
        "</RltdAgts><Purp><Cd>GDDS</Cd></Purp><RmtInf><Ustrd>Rechnung RE-2026-%06u vom 18.09.2026, "
        "Kundennummer "
        "%07u, Catering für das Herbstfest der Stadt Ahrensburg im Kulturamt und</Ustrd><Ustrd>Abschlag "
        "November, "
        "abzüglich der Gutschrift vom 2. Oktober</Ustrd></RmtInf></TxDtls></NtryDtls>\n "
        "<AddtlNtryInf>%s</AddtlNtryInf>"
        "</Ntry>\n",
        number, number % 5000 + 1, number % 100, debit ? "DBIT" : "CRDT", number % 28 + 1, number % 28 + 1,
        number, debit ? "ICDT" : "RCDT", debit ? "116" : "166", number,
        number % 3 == 0 ? "<MndtId>STW-2019-77</MndtId>" : "", number % 5000 + 1, number % 100,
        debit ? "DBIT" : "CRDT", side, side, side, side, side, side, number, number,
        debit ? "UEBERWEISUNG ONLINE" : "GUTSCHRIFT UEBERWEISUNG");
    file += entry;
}

std::string realistic(std::size_t size) {
    std::string file = head + statement_head;
    for (unsigned number = 0; file.size() < size; ++number)
        append_entry(file, number);
    return file + "</Stmt>" + tail;
}

std::string repeated(std::size_t size, const std::string& first, const std::string& piece,
                     const std::string& last) {
    std::string file = head + first;
    while (file.size() < size)
        file += piece;
    return file + last + tail;
}
std::string one_entry_of_parts(std::size_t size) {
    return repeated(size, statement_head + entry_head + "<NtryDtls>",
                    "<TxDtls><Refs><EndToEndId>E</EndToEndId></Refs><Amt Ccy=\"EUR\">0.01</Amt></TxDtls>",
                    "</NtryDtls></Ntry></Stmt>");
}
std::string statements(std::size_t size) {
    return repeated(size, "", statement_head + "</Stmt>", "");
}
std::string long_texts(std::size_t size) {
    return repeated(size, statement_head,
                    entry_head + "<NtryDtls><TxDtls><RmtInf><Ustrd>" + std::string(megabyte, 'x') +
                        "</Ustrd></RmtInf></TxDtls></NtryDtls></Ntry>",
                    "</Stmt>");
}
std::string references(std::size_t size) {
    return repeated(size, statement_head + entry_head + "<AddtlNtryInf>", "&amp;&#65;\r\n",
                    "</AddtlNtryInf></Ntry></Stmt>");
}
std::string levels(std::size_t size) {
    std::string down, up;
    for (int i = 0; i < 60; ++i)
        down += "<x>", up += "</x>";
    return repeated(size, statement_head, down + up, "</Stmt>");
}

// ------------------------------------------------------------------------------------------------------

// Bytes of this process in memory.
std::size_t resident() {
    unsigned long whole = 0, pages = 0;
    std::FILE* const file = std::fopen("/proc/self/statm", "re");
    if (file != nullptr && std::fscanf(file, "%lu %lu", &whole, &pages) != 2) pages = 0;
    if (file != nullptr) std::fclose(file);
    return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

bool load_once(const MemoryFile& file, benchmark::State* state = nullptr) {
    const std::size_t before = resident();
    sepa_stmt_parser_t* parser = sepa_stmt_parser_new();
    const bool done = sepa_stmt_parser_load(parser, SEPA_STMT_FORMAT_CAMT, file.path()) == 1;
    if (state != nullptr) {
        std::size_t bookings = 0;
        const sepa_stmt_t* statement = sepa_stmt_parser_getStatement(parser);
        for (; statement != nullptr; statement = statement->next)
            for (const sepa_stmt_tx_t* tx = statement->first_tx; tx != nullptr; tx = tx->next)
                ++bookings;
        state->counters["bookings"] = static_cast<double>(bookings);
        state->counters["memory_MB"] = static_cast<double>(resident() - before) / megabyte;
    }
    sepa_stmt_parser_free(parser);
    return done;
}

struct Walk {
    std::size_t entries = 0;
    std::size_t text = 0;
    int depth = 0;
    std::uint64_t path[256] = {};

    void begin(const char* name) {
        entries += std::strcmp(name, "Ntry") == 0;
        path[(depth + 1) & 255] = path[depth & 255] * 31 + static_cast<unsigned char>(name[0]);
        ++depth;
    }
    void end() { --depth; }
};

std::size_t walk_with_expat(const std::string& content) {
    Walk walk;
    XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetUserData(parser, &walk);
    XML_SetElementHandler(
        parser, [](void* data, const char* name, const char**) { static_cast<Walk*>(data)->begin(name); },
        [](void* data, const char*) { static_cast<Walk*>(data)->end(); });
    XML_SetCharacterDataHandler(parser, [](void* data, const char*, int length) {
        static_cast<Walk*>(data)->text += static_cast<std::size_t>(length);
    });
    constexpr std::size_t chunk = 16384;
    for (std::size_t at = 0; at < content.size(); at += chunk) {
        const std::size_t length = std::min(chunk, content.size() - at);
        if (XML_Parse(parser, content.data() + at, static_cast<int>(length), at + length == content.size()) ==
            0)
            walk.entries = 0;
    }
    XML_ParserFree(parser);
    return walk.entries;
}

std::size_t walk_with_libxml2(const std::string& content) {
    Walk walk;
    xmlSAXHandler handler = {};
    handler.initialized = XML_SAX2_MAGIC;
    handler.startElementNs = [](void* data, const xmlChar* name, const xmlChar*, const xmlChar*, int,
                                const xmlChar**, int, int, const xmlChar**) {
        static_cast<Walk*>(data)->begin(reinterpret_cast<const char*>(name));
    };
    handler.endElementNs = [](void* data, const xmlChar*, const xmlChar*, const xmlChar*) {
        static_cast<Walk*>(data)->end();
    };
    handler.characters = [](void* data, const xmlChar*, int length) {
        static_cast<Walk*>(data)->text += static_cast<std::size_t>(length);
    };
    if (xmlSAXUserParseMemory(&handler, &walk, content.data(), static_cast<int>(content.size())) != 0)
        return 0;
    return walk.entries;
}

using Maker = std::string (*)(std::size_t size);
using Walker = std::size_t (*)(const std::string& content);

void report_rate(benchmark::State& state, std::size_t size) {
    state.SetBytesProcessed(static_cast<std::int64_t>(size) * state.iterations());
}

template <Maker make>
void load(benchmark::State& state) {
    const std::string content = make(static_cast<std::size_t>(state.range(0)) * megabyte);
    const MemoryFile file(content);
    load_once(file, &state); // a virtual machine gets its memory on first use
    for (auto _ : state)
        if (!load_once(file)) state.SkipWithError("not loaded");
    report_rate(state, content.size());
}

template <Walker walk>
void walk_over(benchmark::State& state) {
    const std::string content = realistic(static_cast<std::size_t>(state.range(0)) * megabyte);
    for (auto _ : state)
        if (walk(content) == 0) state.SkipWithError("not read");
    report_rate(state, content.size());
}

#define CAMT_FILE(name) WORKLOAD("camt_load/" #name, load<name>)->Unit(benchmark::kMillisecond)
#define CAMT_PEER(peer, walk)                                                                                \
    WORKLOAD("camt_load/realistic/" #peer, walk_over<walk>)->Unit(benchmark::kMillisecond)

CAMT_FILE(realistic)->Arg(50);
CAMT_PEER(expat, walk_with_expat)->Arg(50);
CAMT_PEER(libxml2_sax, walk_with_libxml2)->Arg(50);
CAMT_FILE(one_entry_of_parts)->Arg(10)->Arg(20);
CAMT_FILE(statements)->Arg(10)->Arg(20);
CAMT_FILE(long_texts)->Arg(10)->Arg(20);
CAMT_FILE(references)->Arg(10)->Arg(20);
CAMT_FILE(levels)->Arg(10)->Arg(20);

} // namespace
