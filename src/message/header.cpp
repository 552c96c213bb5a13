// The setters of a message's header.
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <new>

#include "bank/bic.h"
#include "bank/iban_check.h"
#include "message/characters.h"
#include "message/creditor_identifier.h"
#include "message/message.h"
#include "message/rulebook.h"

using namespace velmora;

namespace {

int store(sepa_t* message, OwnedText& field, std::string_view text, const char* failure = "strdup() failed") {
    return field.assign(text) ? 1 : fail(message, failure);
}

// Deliberate: an id that is replaced stays allocated as long as the message (callers rely on it).
void retire_message_id(sepa_t* message) {
    if (!message->message_id) return;
    void* memory = std::malloc(sizeof(RetiredId));
    if (memory == nullptr) return;
    message->retired_ids = new (memory) RetiredId{message->retired_ids, std::move(message->message_id)};
}

bool is_message_id_character(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) ||
           std::string_view(" '()+,-./:?").find(c) != std::string_view::npos;
}

} // namespace

int sepa_setIBAN(sepa_t* message, const char* iban) {
    if (message == nullptr) return 0;
    const char* reason = nullptr;
    const int result = iban_validate(iban, &reason);
    if (result != 1) {
        const char* input = iban == nullptr ? "(null)" : iban;
        return reason != nullptr ? fail_with(message, "%s (%s)", reason, input)
                                 : fail_with(message, "invalid IBAN (%s)", input);
    }
    return store(message, message->iban, iban) ? result : 0;
}

int sepa_setBIC(sepa_t* message, const char* bic) {
    if (message == nullptr) return 0;
    char buffer[bic_length + 1];
    const char* upper = upper_case_bic(bic, buffer);
    if (upper == nullptr) return fail(message, "sepa_setBIC: invalid BIC");
    if (!is_bic(upper)) return fail(message, "sepa_setBIC: invalid BIC format");
    return store(message, message->bic, upper, "sepa_setBIC: strdup() failed");
}

int sepa_setName(sepa_t* message, const char* name) {
    constexpr std::size_t longest = 70;
    if (message == nullptr) return 0;
    // Deliberate: the first two texts name another operation (callers match on them).
    if (name == nullptr || *name == '\0') return fail(message, "sepa_setAccount: Name too short");
    const std::string_view text(name, strnlen(name, longest + 1));
    if (text.size() > longest) return fail(message, "sepa_setAccount: Name too long");
    if (const char* c = find_forbidden_character(text, CharacterSet::name, *selected_rulebook()))
        return fail_with(message, "sepa_setName: invalid character '%c' in name", *c);
    return store(message, message->name, text, "sepa_setName: strdup() failed");
}

int sepa_setCreditorIdentifier(sepa_t* message, const char* identifier) {
    if (message == nullptr) return 0;
    const std::string_view text = identifier == nullptr ? "" : identifier;
    if (const char* fault = creditor_identifier_fault(text)) return fail(message, fault);
    return store(message, message->creditor_identifier, text);
}

int sepa_setDate(sepa_t* message, const char* date) {
    constexpr std::size_t length = 10;
    if (message == nullptr) return 0;
    if (date == nullptr || strnlen(date, length + 1) != length) return fail(message, "Invalid date");
    std::tm parsed{};
    if (strptime(date, "%Y-%m-%d", &parsed) == nullptr) return fail(message, "Invalid date format");
    return store(message, message->date, std::string_view(date, length));
}

int sepa_setDDType(sepa_t* message, uint32_t type) {
    if (message == nullptr) return 0;
    if (message->type == SEPA_MSGTYPE_CTI) return fail(message, "Not a direct debit message");
    if (type > SEPA_DDTYPE_B2B) return fail(message, "Unknown/unsupported LocalInstrumentCode (setDDType)");
    if (type == SEPA_DDTYPE_COR1 && !permits_choosing_cor1(*selected_rulebook()))
        return fail(message, "COR1 is not allowed with selected SEPA rulebook");
    message->direct_debit_type = type;
    return 1;
}

int sepa_setBatchBooking(sepa_t* message, uint8_t batch) {
    if (message == nullptr) return 0;
    if (batch > 1) return fail(message, "Invalid BatchBooking mode (only 0 or 1 allowed)");
    message->batch_booking = batch;
    return 1;
}

int sepa_setMessageId(sepa_t* message, const char* id) {
    constexpr std::size_t longest = 35;
    if (message == nullptr) return 0;
    const std::string_view text =
        id == nullptr ? std::string_view() : std::string_view(id, strnlen(id, longest + 1));
    if (text.empty() || text.size() > longest) return fail(message, "Invalid message id");
    for (const char c : text)
        if (!is_message_id_character(c)) return fail(message, "Invalid message id");
    retire_message_id(message);
    // Deliberate: a failed copy is not reported, sepa_toXML() then generates an id (callers rely on it).
    message->message_id.assign(text);
    return 1;
}
