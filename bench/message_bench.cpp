// Adding payments and writing documents.
#include <libxml/xmlwriter.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>

#include "velmora.h"
#include "workload.h"

namespace {

struct FreeMessage {
    void operator()(sepa_t* message) const { sepa_free(message); }
};
using Message = std::unique_ptr<sepa_t, FreeMessage>;
using Text = std::unique_ptr<char, decltype(&std::free)>;

// A typical payment: everything a bill collector or payroll gives, no postal address.
struct Payment {
    char id[24], amount[16], mandate[24], date[11];
};

Payment payment(long number, long dates) {
    Payment p;
    std::snprintf(p.id, sizeof p.id, "RE-2026-%07ld", number);
    std::snprintf(p.amount, sizeof p.amount, "%ld.%02ld", 10 + number % 990, number % 100);
    std::snprintf(p.mandate, sizeof p.mandate, "M-%07ld", number);
    const long day = number % dates;
    std::snprintf(p.date, sizeof p.date, "%04ld-%02ld-%02ld", 2026 + day / 336, day / 28 % 12 + 1,
                  day % 28 + 1);
    return p;
}

constexpr char iban[] = "DE37701900002246044670";
constexpr char bic[] = "GENODEF1M01";
constexpr char name[] = "Mühlenwerke Süd GmbH & Co. KG";
constexpr char reference[] = "Rechnung 88213 vom 12.01.2027, Kundennummer 4711";
constexpr char mandate_date[] = "2024-03-15";

int add(sepa_t* message, std::uint32_t type, const Payment& p) {
    const char* const debit[] = {"name",   name,   "iban", iban,      "bic",   bic,          "amount",
                                 p.amount, "date", p.date, "id",      p.id,    "ref",        reference,
                                 "seq",    "RCUR", "mref", p.mandate, "mdate", mandate_date, nullptr};
    const char* const credit[] = {"name", name,   "iban", iban, "bic", bic,       "amount", p.amount,
                                  "date", p.date, "id",   p.id, "ref", reference, nullptr};
    return sepa_add(message, type == SEPA_MSGTYPE_DDI ? debit : credit);
}

Message new_message(std::uint32_t type) {
    sepa_init(SEPA_INIT_RULEBOOK, "DE-3.7");
    Message message(sepa_new(type));
    sepa_setName(message.get(), "Turnverein München-Süd e.V.");
    sepa_setIBAN(message.get(), "DE16701900000376033458");
    sepa_setBIC(message.get(), bic);
    sepa_setCreditorIdentifier(message.get(), "DE98ZZZ09999999999");
    return message;
}

Message filled_message(std::uint32_t type, long payments, long dates) {
    Message message = new_message(type);
    for (long i = 0; i < payments; i++)
        if (!add(message.get(), type, payment(i, dates))) return nullptr;
    return message;
}

void add_payment(benchmark::State& state, std::uint32_t type) {
    constexpr long in_one_message = 1000;
    Message message = new_message(type);
    long number = 0;
    for (auto _ : state) {
        if (++number % in_one_message == 0) {
            state.PauseTiming();
            message = new_message(type);
            state.ResumeTiming();
        }
        if (!add(message.get(), type, payment(number, 4)))
            return state.SkipWithError(sepa_getError(message.get()));
    }
}

void add_direct_debit(benchmark::State& state) {
    add_payment(state, SEPA_MSGTYPE_DDI);
}
void add_credit_transfer(benchmark::State& state) {
    add_payment(state, SEPA_MSGTYPE_CTI);
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

// Bytes that /proc/self/status names.
double status_bytes(const char* field) {
    std::ifstream file("/proc/self/status");
    for (std::string line; std::getline(file, line);)
        if (line.rfind(field, 0) == 0)
            return std::strtod(line.c_str() + std::strlen(field) + 1, nullptr) * 1024;
    return 0;
}

// Memory for one document, in a process of its own: the payments in the message, the finished text, and the
// most that was in use.
void document_memory(benchmark::State& state) {
    double measured[3] = {};
    for (auto _ : state) {
        int channel[2];
        if (pipe(channel) != 0) return state.SkipWithError("pipe");
        if (const pid_t child = fork(); child == 0) {
            const double at_start = status_bytes("VmRSS:");
            const Message message = filled_message(SEPA_MSGTYPE_DDI, state.range(0), 4);
            const double records = status_bytes("VmRSS:") - at_start;
            const Text text(sepa_toXML(message.get()), &std::free);
            const double result[3] = {records, static_cast<double>(std::strlen(text.get())),
                                      status_bytes("VmHWM:") - at_start};
            _exit(write(channel[1], result, sizeof result) == sizeof result ? 0 : 1);
        } else {
            close(channel[1]);
            if (read(channel[0], measured, sizeof measured) != sizeof measured)
                state.SkipWithError("no measurement");
            close(channel[0]);
            waitpid(child, nullptr, 0);
        }
    }
    const auto [records, text, peak] = measured;
    state.counters["records"] = records;
    state.counters["text"] = text;
    state.counters["peak"] = peak;
    state.counters["peak_ratio"] = peak / (records + text);
}

WORKLOAD("add/direct_debit", add_direct_debit);
WORKLOAD("add/credit_transfer", add_credit_transfer);
WORKLOAD("document/direct_debits", direct_debits)->Arg(100)->Arg(10'000)->Arg(100'000);
WORKLOAD("document/direct_debits/libxml2", direct_debits_libxml2)->Arg(10'000)->Arg(100'000);
WORKLOAD("document/direct_debits/memcpy", direct_debits_memcpy)->Arg(10'000)->Arg(100'000);
WORKLOAD("document/credit_transfers", credit_transfers)->Arg(100)->Arg(10'000)->Arg(100'000);
WORKLOAD("document/own_dates", direct_debits_own_dates)->Arg(500)->Arg(5'000);
WORKLOAD("document/memory", document_memory)->Arg(10'000)->Arg(100'000)->Iterations(1);

} // namespace
