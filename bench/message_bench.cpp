// Adding payments and writing documents.
#include <libxml/xmlwriter.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "payments.h"
#include "velmora.h"
#include "workload.h"

namespace {

using namespace payments;

void add_payment(benchmark::State& state, std::uint32_t type, const char* rulebook = default_rulebook) {
    constexpr std::size_t in_one_message = 1000;
    Payment list[in_one_message];
    for (std::size_t i = 0; i < in_one_message; ++i)
        list[i] = payment(static_cast<long>(i), 4);
    Message message = new_message(type, rulebook);
    std::size_t number = 0;
    for (auto _ : state) {
        if (number == in_one_message) {
            state.PauseTiming();
            message = new_message(type, rulebook);
            number = 0;
            state.ResumeTiming();
        }
        if (!add(message.get(), type, list[number++]))
            return state.SkipWithError(sepa_getError(message.get()));
    }
}

void add_direct_debit(benchmark::State& state) {
    add_payment(state, SEPA_MSGTYPE_DDI);
}
void add_direct_debit_of_2026(benchmark::State& state) {
    add_payment(state, SEPA_MSGTYPE_DDI, "DE-26.11");
}
void add_credit_transfer(benchmark::State& state) {
    add_payment(state, SEPA_MSGTYPE_CTI);
}

// A whole message, from the first payment to the document: how much slower a payment gets among many.
void message_of(benchmark::State& state) {
    const long payments = state.range(0);
    const auto list = std::make_unique<Payment[]>(static_cast<std::size_t>(payments));
    for (long i = 0; i < payments; i++)
        list[static_cast<std::size_t>(i)] = payment(i, 4);
    for (auto _ : state) {
        const Message message = new_message(SEPA_MSGTYPE_DDI);
        for (long i = 0; i < payments; i++)
            if (!add(message.get(), SEPA_MSGTYPE_DDI, list[static_cast<std::size_t>(i)]))
                return state.SkipWithError(sepa_getError(message.get()));
        const Text text(sepa_toXML(message.get()), &std::free);
        if (!text) return state.SkipWithError(sepa_getError(message.get()));
    }
    state.counters["per_payment"] =
        benchmark::Counter(static_cast<double>(state.iterations() * payments),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void count(benchmark::State& state, std::size_t document_size, long payments) {
    state.SetBytesProcessed(state.iterations() * static_cast<long>(document_size));
    state.counters["per_payment"] =
        benchmark::Counter(static_cast<double>(state.iterations() * payments),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["bytes"] = static_cast<double>(document_size);
}

void write_document(benchmark::State& state, std::uint32_t type, long payments, long dates) {
    const Message message = filled_message(type, payments, dates);
    if (!message) return state.SkipWithError("not filled");
    std::size_t size = 0;
    for (auto _ : state) {
        const Text text(sepa_toXML(message.get()), &std::free);
        if (!text) return state.SkipWithError(sepa_getError(message.get()));
        if (size == 0) size = std::strlen(text.get());
    }
    count(state, size, payments);
}

void direct_debits(benchmark::State& state) {
    write_document(state, SEPA_MSGTYPE_DDI, state.range(0), 4);
}
void credit_transfers(benchmark::State& state) {
    write_document(state, SEPA_MSGTYPE_CTI, state.range(0), 4);
}
// Every payment on a date of its own, in ascending order.
void direct_debits_own_dates(benchmark::State& state) {
    write_document(state, SEPA_MSGTYPE_DDI, state.range(0), state.range(0));
}

// The limit: the finished text once more.
void direct_debits_memcpy(benchmark::State& state) {
    const Message message = filled_message(SEPA_MSGTYPE_DDI, state.range(0), 4);
    const Text text(sepa_toXML(message.get()), &std::free);
    const std::size_t size = std::strlen(text.get());
    for (auto _ : state) {
        const Text copy(static_cast<char*>(std::malloc(size + 1)), &std::free);
        std::memcpy(copy.get(), text.get(), size + 1);
        benchmark::DoNotOptimize(copy.get());
        benchmark::ClobberMemory();
    }
    count(state, size, state.range(0));
}

// libxml2's text writer, into memory, with the same elements and indentation.
class XmlWriter {
public:
    XmlWriter() : buffer_(xmlBufferCreate()), writer_(xmlNewTextWriterMemory(buffer_, 0)) {
        xmlTextWriterSetIndent(writer_, 1);
        xmlTextWriterSetIndentString(writer_, BAD_CAST "\t");
        xmlTextWriterStartDocument(writer_, nullptr, "UTF-8", nullptr);
    }
    ~XmlWriter() {
        xmlFreeTextWriter(writer_);
        xmlBufferFree(buffer_);
    }
    XmlWriter(const XmlWriter&) = delete;
    XmlWriter& operator=(const XmlWriter&) = delete;

    void open(const char* element) { xmlTextWriterStartElement(writer_, BAD_CAST element); }
    void close(int levels = 1) {
        while (levels-- > 0)
            xmlTextWriterEndElement(writer_);
    }
    void attribute(const char* key, const char* value) {
        xmlTextWriterWriteAttribute(writer_, BAD_CAST key, BAD_CAST value);
    }
    void text(const char* value) { xmlTextWriterWriteString(writer_, BAD_CAST value); }
    void line(const char* element, const char* value) {
        xmlTextWriterWriteElement(writer_, BAD_CAST element, BAD_CAST value);
    }
    // One element inside others: path("Id/IBAN", value) opens Id, writes IBAN and closes both.
    void nested(std::initializer_list<const char*> elements, const char* element, const char* value) {
        for (const char* outer : elements)
            open(outer);
        line(element, value);
        close(static_cast<int>(elements.size()));
    }
    int size() {
        xmlTextWriterEndDocument(writer_);
        return xmlBufferLength(buffer_);
    }

private:
    xmlBufferPtr buffer_;
    xmlTextWriterPtr writer_;
};

void write_payment(XmlWriter& xml, const Payment& p) {
    xml.open("DrctDbtTxInf");
    xml.nested({"PmtId"}, "EndToEndId", p.id);
    xml.open("InstdAmt");
    xml.attribute("Ccy", "EUR");
    xml.text(p.amount);
    xml.close();
    xml.open("DrctDbtTx");
    xml.open("MndtRltdInf");
    xml.line("MndtId", p.mandate);
    xml.line("DtOfSgntr", mandate_date);
    xml.close(2);
    xml.nested({"DbtrAgt", "FinInstnId"}, "BICFI", bic);
    xml.nested({"Dbtr"}, "Nm", name);
    xml.nested({"DbtrAcct", "Id"}, "IBAN", iban);
    xml.nested({"RmtInf"}, "Ustrd", reference);
    xml.close();
}

void direct_debits_libxml2(benchmark::State& state) {
    const long payments = state.range(0);
    const auto list = std::make_unique<Payment[]>(static_cast<std::size_t>(payments));
    for (long i = 0; i < payments; i++)
        list[static_cast<std::size_t>(i)] = payment(i, 4);
    int size = 0;
    for (auto _ : state) {
        XmlWriter xml;
        xml.open("Document");
        xml.attribute("xmlns", "urn:iso:std:iso:20022:tech:xsd:pain.008.001.08");
        xml.open("CstmrDrctDbtInitn");
        xml.open("PmtInf");
        for (long i = 0; i < payments; i++)
            write_payment(xml, list[static_cast<std::size_t>(i)]);
        size = xml.size();
    }
    count(state, static_cast<std::size_t>(size), payments);
}

// Memory for one document, in a fresh process: the payments in the message, the finished text, and the most
// that was in use.
void document_memory(benchmark::State& state) {
    const std::string command = VELMORA_DOCUMENT_MEMORY " " + std::to_string(state.range(0));
    double records = 0, text = 0, peak = 0;
    for (auto _ : state) {
        FILE* process = popen(command.c_str(), "r");
        const bool measured =
            process != nullptr && std::fscanf(process, "%lf %lf %lf", &records, &text, &peak) == 3;
        if (process != nullptr) pclose(process);
        if (!measured) return state.SkipWithError("not measured");
    }
    state.counters["records"] = records;
    state.counters["per_payment"] = records / static_cast<double>(state.range(0));
    state.counters["text"] = text;
    state.counters["peak"] = peak;
    state.counters["peak_ratio"] = peak / (records + text);
}

WORKLOAD("add/direct_debit", add_direct_debit);
WORKLOAD("add/direct_debit/DE-26.11", add_direct_debit_of_2026);
WORKLOAD("add/credit_transfer", add_credit_transfer);
WORKLOAD("message", message_of)->Arg(10'000)->Arg(100'000);
WORKLOAD("document/direct_debits", direct_debits)->Arg(100)->Arg(10'000)->Arg(100'000);
WORKLOAD("document/direct_debits/libxml2", direct_debits_libxml2)->Arg(10'000)->Arg(100'000);
WORKLOAD("document/direct_debits/memcpy", direct_debits_memcpy)->Arg(10'000)->Arg(100'000);
WORKLOAD("document/credit_transfers", credit_transfers)->Arg(100)->Arg(10'000)->Arg(100'000);
WORKLOAD("document/own_dates", direct_debits_own_dates)->Arg(500)->Arg(5'000);
WORKLOAD("document/memory", document_memory)->Arg(10'000)->Arg(100'000)->Iterations(1);

} // namespace
