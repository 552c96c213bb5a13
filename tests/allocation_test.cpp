// Every allocation of a whole run fails once: the call that needed it says so, the message stays whole,
// nothing leaks, and no account data stay behind in freed memory.
#include <gtest/gtest.h>

#include <malloc.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "message_builder.h"
#include "statement_records.h"

namespace {

constexpr char account[] = "DE37701900002246044670";
constexpr char holder[] = "Heike & Björn Petersen";
constexpr char reference[] = "Rechnung 2026-17 & Kopie";

// What the wrapped allocation functions do and see while they are watching. The tests' own calls pass them
// by.
struct Heap {
    bool watching = false;
    long requests = 0; // allocations seen
    long refused = 0;  // which of them fails, counted from 1; 0 for none
    long live = 0;     // blocks allocated less blocks freed
    bool texts_must_be_wiped = false;
    long unwiped = 0; // blocks freed with account data in them
};
Heap heap;

bool refuse() {
    return heap.watching && ++heap.requests == heap.refused;
}

bool holds_account_data(const void* block) {
    const std::size_t size = malloc_usable_size(const_cast<void*>(block));
    for (const std::string_view text : {account, holder, reference})
        if (memmem(block, size, text.data(), text.size()) != nullptr) return true;
    return false;
}

} // namespace

extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void __real_free(void* block);

void* __wrap_malloc(std::size_t size) {
    if (refuse()) return nullptr;
    heap.live += heap.watching;
    return __real_malloc(size);
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
    if (refuse()) return nullptr;
    heap.live += heap.watching;
    return __real_calloc(count, size);
}

void __wrap_free(void* block) {
    if (heap.watching && block != nullptr) {
        heap.live--;
        heap.unwiped += heap.texts_must_be_wiped && holds_account_data(block);
    }
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

struct Attempt {
    bool done;
    bool refused; // one of its allocations
};

template <typename Call>
Attempt attempt(Call call) {
    const long before = heap.requests;
    heap.watching = true;
    const bool done = call();
    heap.watching = false;
    return {done, before < heap.refused && heap.refused <= heap.requests};
}

struct Scenario {
    std::uint32_t type;
    const char* rulebook;
    bool generated; // message id and date are left to the document
    std::vector<Pairs> payments;
};

std::vector<Scenario> scenarios() {
    const Pairs credit = {{"iban", account},  {"name", holder}, {"amount", "12.50"},   {"bic", "GENODEF1M01"},
                          {"ref", reference}, {"id", "E-1"},    {"date", "2026-12-01"}};
    const Pairs debit = with(credit, {{"seq", "RCUR"}, {"mref", "M-1"}, {"mdate", "2020-02-29"}});
    const Pairs amended = with(debit, {{"old_mref", "OLD-1"}, {"old_iban", account}, {"date", "2027-01-04"}});
    const Pairs lines = {{"addrLine1", holder}, {"addrLine2", reference}, {"addrCC", "CH"}};
    const Pairs structured = {{"addrStreet", holder}, {"addrTown", reference}, {"addrCC", "CH"}};
    return {{SEPA_MSGTYPE_DDI, "DE-2.9", true, {debit, with(amended, {{"smnda", "1"}})}},
            {SEPA_MSGTYPE_DDI, "DE-3.5", false, {debit, amended, with(debit, lines)}},
            {SEPA_MSGTYPE_DDI, "DE-3.7", false, {debit, with(amended, structured), debit}},
            {SEPA_MSGTYPE_CTI, "AT-6", true, {credit, with(credit, lines), with(credit, {{"purp", "SALA"}})}},
            {SEPA_MSGTYPE_CTI, "DE-3.7", false, {credit, with(credit, structured), credit}}};
}

struct HeaderField {
    int (*set)(sepa_t*, const char*);
    const char* value;
    const char* failure;
};
constexpr HeaderField required_fields[] = {
    {sepa_setIBAN, account, "strdup() failed"},
    {sepa_setName, holder, "sepa_setName: strdup() failed"},
    {sepa_setBIC, "genodef1m01", "sepa_setBIC: strdup() failed"},
};
constexpr HeaderField creditor_identifier = {sepa_setCreditorIdentifier, "DE98ZZZ09999999999",
                                             "strdup() failed"};
constexpr HeaderField date = {sepa_setDate, "2026-12-24", "strdup() failed"};
// Does not tell that it had no memory; the message is then without one.
constexpr HeaderField message_id = {sepa_setMessageId, "ID-1", nullptr};

std::vector<HeaderField> header_fields(const Scenario& scenario) {
    std::vector<HeaderField> fields(std::begin(required_fields), std::end(required_fields));
    if (scenario.type == SEPA_MSGTYPE_DDI) fields.push_back(creditor_identifier);
    if (!scenario.generated) fields.insert(fields.end(), {date, message_id});
    return fields;
}

void set(const HeaderField& field, sepa_t* message) {
    const auto call = [&] { return field.set(message, field.value) == 1; };
    const Attempt first = attempt(call);
    if (!first.refused) {
        EXPECT_TRUE(first.done);
        return;
    }
    EXPECT_EQ(first.done, field.failure == nullptr);
    if (!first.done) {
        EXPECT_STREQ(sepa_getError(message), field.failure);
    }
    EXPECT_TRUE(attempt(call).done);
}

// True when the payment was added, in the end.
bool add_payment(const Message& message, const Pairs& payment, const Scenario& scenario) {
    const bool structured = std::any_of(payment.begin(), payment.end(), [](const auto& pair) {
        return pair.first == std::string("addrTown");
    });
    const auto call = [&] { return add(message, payment) == 1; };
    const Attempt first = attempt(call);
    if (first.done) return true;
    if (first.refused) {
        EXPECT_EQ(error(message), "Out of memory");
    }
    // Structured addresses are refused by a message that holds the text of any earlier failure.
    const bool second = attempt(call).done;
    EXPECT_EQ(second, !structured) << scenario.rulebook << " " << error(message);
    return second;
}

// Without the lines that the clock and the counter of message ids change.
std::string timeless(std::string text) {
    for (const char* element : {"<MsgId>", "<CreDtTm>", "<PmtInfId>"})
        for (std::size_t at; (at = text.find(element)) != text.npos;)
            text.erase(at, text.find('\n', at) - at);
    return text;
}

// Takes the document as the caller would, with one repetition when memory was short.
std::string take_document(sepa_t* message, const Scenario& scenario) {
    char* xml = nullptr;
    const auto call = [&] { return (xml = sepa_toXML(message)) != nullptr; };
    const Attempt first = attempt(call);
    if (!first.done) {
        EXPECT_TRUE(first.refused);
        const std::string text = sepa_getError(message) ? sepa_getError(message) : "";
        EXPECT_TRUE(text == "Out of memory" || text == "malloc() failed" ||
                    text == (scenario.type == SEPA_MSGTYPE_DDI ? "ddi_toXML: strdup() failed"
                                                               : "cti_toXML: strdup() failed"))
            << text;
        EXPECT_TRUE(attempt(call).done);
    }
    const std::string document = xml == nullptr ? "" : xml;
    heap.texts_must_be_wiped = false; // the document belongs to the caller
    attempt([&] { return std::free(xml), true; });
    heap.texts_must_be_wiped = true;
    return document;
}

// One run whose nth allocation fails; false when it has fewer.
bool run(const Scenario& scenario, long n) {
    heap = {};
    heap.refused = n;
    heap.texts_must_be_wiped = true;
    sepa_init(SEPA_INIT_RULEBOOK, scenario.rulebook);
    sepa_t* handle = nullptr;
    const auto create = [&] { return (handle = sepa_new(scenario.type)) != nullptr; };
    if (const Attempt first = attempt(create); !first.done) {
        EXPECT_TRUE(first.refused);
        EXPECT_TRUE(attempt(create).done);
    }
    Message message(handle), undisturbed = new_message(scenario.type);
    for (const HeaderField& field : header_fields(scenario)) {
        set(field, handle);
        field.set(undisturbed.get(), field.value);
    }
    for (const Pairs& payment : scenario.payments) {
        if (add_payment(message, payment, scenario)) {
            EXPECT_TRUE(add(undisturbed, payment));
        }
    }

    EXPECT_EQ(timeless(take_document(handle, scenario)), timeless(document(undisturbed)));
    message.release();
    attempt([&] { return sepa_free(handle), true; });
    EXPECT_EQ(heap.live, 0);
    EXPECT_EQ(heap.unwiped, 0);
    return heap.requests >= n;
}

TEST(Allocation, EveryFailureIsToldAndNothingIsLost) {
    for (const Scenario& scenario : scenarios()) {
        long n = 1;
        for (; run(scenario, n) && !HasFailure(); n++) {
        }
        EXPECT_GT(n, 15);
        ASSERT_FALSE(HasFailure()) << "type " << scenario.type << ", " << scenario.rulebook << ", allocation "
                                   << n;
    }
}

// Names of every length, so that every kind of line has to grow the text once.
TEST(Allocation, DocumentIsWholeOrMissing) {
    for (std::size_t length = 1; length <= 70; ++length) {
        const Message message = complete_message(SEPA_MSGTYPE_DDI, "DE-3.7");
        ASSERT_TRUE(sepa_setName(message.get(), std::string(length, '&').c_str()));
        ASSERT_TRUE(add(message, direct_debit()));
        const std::string whole = timeless(document(message));
        heap = {};
        do {
            char* xml = nullptr;
            heap.requests = 0;
            ++heap.refused;
            attempt([&] { return (xml = sepa_toXML(message.get())) != nullptr; });
            EXPECT_TRUE(xml == nullptr || timeless(xml) == whole)
                << length << ", allocation " << heap.refused;
            std::free(xml);
        } while (heap.requests >= heap.refused);
    }
}

TEST(Allocation, LookupsTellThatThereIsNoMemory) {
    sepa_bank_t* const untouched = reinterpret_cast<sepa_bank_t*>(&heap);
    sepa_bank_t* bank = untouched;
    const auto refused = [](auto lookup) {
        heap = {};
        heap.refused = 1;
        return attempt([&] { return lookup() == -3; }).done;
    };
    EXPECT_TRUE(refused([&] { return sepa_bankid_check("DE", "37040044", &bank); }));
    EXPECT_TRUE(refused([&] { return sepa_iban_getBank(account, &bank); }));
    EXPECT_TRUE(refused([&] { return sepa_bic_getBank("COBADEFF", &bank); }));
    EXPECT_EQ(bank, untouched);
}

TEST(Allocation, StatementFilesAreReadWholeOrNotAtAll) {
    std::string content = "X\r\n:20:A\r\n-\r\n:20:B\r\n";
    for (int i = 0; i < 1000; ++i)
        content += ":61:230102C1,NMSCX\r\n";
    const MemoryFile file(content);
    const std::string texts[] = {"invalid sepa_stmt_parser_t handle",
                                 "Error while allocating 264 bytes: Cannot allocate memory",
                                 "Failed to allocate " + std::to_string(content.size()) + " bytes"};
    long n = 1;
    for (bool loaded = false; !loaded; n++) {
        heap = {};
        heap.refused = n;
        sepa_stmt_parser_t* parser = nullptr;
        loaded = attempt([&] {
                     errno = ENOMEM;
                     parser = sepa_stmt_parser_new();
                     return sepa_stmt_parser_load(parser, SEPA_STMT_FORMAT_MT940, file.path()) == 1;
                 }).done;
        EXPECT_EQ(sepa_stmt_parser_getError(parser), n <= 3 ? texts[n - 1] : loaded ? "" : "Out of memory");
        attempt([&] { return sepa_stmt_parser_free(parser), true; });
        EXPECT_EQ(heap.live, 0);
    }
    EXPECT_GT(n, 7);
}

} // namespace
