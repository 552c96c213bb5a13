// Loading a status report of 100,000 payments, beside expat walking over the same bytes, and asking for each
// payment.
#include <expat.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "velmora.h"
#include "workload.h"

namespace {

constexpr int payments = 100000;

const std::string& document() {
    static const std::string text = [] {
        std::string made =
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Document><CstmrPmtStsRpt><OrgnlGrpInfAndSts>"
            "<OrgnlMsgNmId>pain.001.001.09</OrgnlMsgNmId></OrgnlGrpInfAndSts><OrgnlPmtInfAndSts>\n";
        for (int i = 0; i < payments; ++i) {
            char item[1024];
            std::snprintf(
                item, sizeof item,
                "<TxInfAndSts><StsId>S%d</StsId><OrgnlEndToEndId>E2E-%d</OrgnlEndToEndId><TxSts>RJCT</TxSts>"
                "<StsRsnInf><Orgtr><Nm>Bank</Nm></Orgtr><Rsn><Cd>AC01</Cd></Rsn><AddtlInf>Konto gibt es nicht"
                "</AddtlInf></StsRsnInf><OrgnlTxRef><Amt><InstdAmt Ccy=\"EUR\">%d.25</InstdAmt></Amt>"
                "<ReqdExctnDt><Dt>2026-11-27</Dt></ReqdExctnDt><Cdtr><Pty><Nm>Eva Muster</Nm></Pty></Cdtr>"
                "<CdtrAcct><Id><IBAN>DE89370400440532013000</IBAN></Id></CdtrAcct></OrgnlTxRef></"
                "TxInfAndSts>\n",
                i, i, i);
            made += item;
        }
        return made + "</OrgnlPmtInfAndSts></CstmrPmtStsRpt></Document>\n";
    }();
    return text;
}

void load(benchmark::State& state) {
    for (auto _ : state) {
        sepa_report_t* const report = sepa_report_new();
        if (sepa_report_loadMemory(report, document().data(), document().size()) != 1)
            state.SkipWithError("not loaded");
        sepa_report_free(report);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(document().size()) * state.iterations());
}

void walk_expat(benchmark::State& state) {
    for (auto _ : state) {
        std::size_t seen = 0;
        XML_Parser parser = XML_ParserCreate(nullptr);
        XML_SetUserData(parser, &seen);
        XML_SetElementHandler(
            parser, [](void* count, const char*, const char**) { ++*static_cast<std::size_t*>(count); },
            [](void*, const char*) {});
        XML_SetCharacterDataHandler(parser, [](void* count, const char*, int length) {
            *static_cast<std::size_t*>(count) += static_cast<std::size_t>(length);
        });
        constexpr std::size_t chunk = 65536;
        for (std::size_t at = 0; at < document().size(); at += chunk)
            XML_Parse(parser, document().data() + at,
                      static_cast<int>(std::min(chunk, document().size() - at)),
                      at + chunk >= document().size());
        XML_ParserFree(parser);
        benchmark::DoNotOptimize(seen);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(document().size()) * state.iterations());
}

void match(benchmark::State& state) {
    sepa_report_t* const report = sepa_report_new();
    sepa_report_loadMemory(report, document().data(), document().size());
    int number = 0;
    for (auto _ : state) {
        char id[32];
        std::snprintf(id, sizeof id, "E2E-%d", number = (number + 7919) % payments);
        const sepa_report_item_t* item = nullptr;
        if (sepa_report_match(report, id, &item) != 1) state.SkipWithError("not found");
    }
    sepa_report_free(report);
}

WORKLOAD("report_load", load)->Unit(benchmark::kMillisecond);
WORKLOAD("report_load/expat", walk_expat)->Unit(benchmark::kMillisecond);
WORKLOAD("report_match", match);

} // namespace
