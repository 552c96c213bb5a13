// The setters of a message's header.
#include <cstdlib>
#include <cstring>
#include <new>

#include "bank/bic.h"
#include "bank/iban_check.h"
#include "base/ascii.h"
#include "base/calendar.h"
#include "message/characters.h"
#include "message/creditor_identifier.h"
#include "message/message.h"
#include "message/text_check.h"

using namespace velmora;

namespace {

bool store(sepa_t* message, OwnedText& field, std::string_view text,
           const char* failure = "strdup() failed") {
    const bool loosely = !is_strict(rulebook_of(*message));
    if (field.assign(text)) {
        message->has_loose_values |= loosely;
        return true;
    }
    // Deliberate: without memory the field is empty afterwards; programs set it again. Strictly, it stays.
    if (loosely) field.reset();
    return message->failure.fail(failure);
}

// Deliberate: an id that is replaced stays allocated as long as the message, for programs that still point at
// it.
void retire_message_id(sepa_t* message) {
    if (!message->message_id) return;
    void* memory = std::malloc(sizeof(RetiredId));
    if (memory == nullptr) return;
    message->retired_ids = new (memory) RetiredId{message->retired_ids, std::move(message->message_id)};
}

bool is_message_id_character(char c) {
    return is_letter_or_digit(c) || std::string_view(" '()+,-./:?").find(c) != std::string_view::npos;
}

} // namespace

int sepa_setIBAN(sepa_t* message, const char* iban) {
    if (message == nullptr) return 0;
    const Rulebook& rulebook = rulebook_of(*message);
    const char* reason = nullptr;
    if (iban_validate(iban, &reason, iban_countries_of(rulebook)) == 1)
        return store(message, message->iban, iban);
    const char* input = iban == nullptr ? "(null)" : iban;
    if (reason != nullptr)
        message->failure.fail_with("%s (%s)", reason, input);
    else
        message->failure.fail_with("invalid IBAN (%s)", input);
    if (counts_characters(rulebook)) message->failure.keep_whole_characters();
    return 0;
}

int sepa_setBIC(sepa_t* message, const char* bic) {
    if (message == nullptr) return 0;
    char buffer[bic_length + 1];
    const char* upper = upper_case_bic(bic, buffer);
    if (upper == nullptr) return message->failure.fail("sepa_setBIC: invalid BIC");
    if (!is_bic(upper)) return message->failure.fail("sepa_setBIC: invalid BIC format");
    return store(message, message->bic, upper, "sepa_setBIC: strdup() failed");
}

int sepa_setName(sepa_t* message, const char* name) {
    constexpr std::size_t longest = 70;
    if (message == nullptr) return 0;
    // Deliberate: the first two texts name another operation; programs compare them.
    if (name == nullptr || *name == '\0') return message->failure.fail("sepa_setAccount: Name too short");
    const auto [text, fault, character] =
        check_text(name, 1, longest, CharacterSet::name, rulebook_of(*message));
    if (fault == TextFault::length) return message->failure.fail("sepa_setAccount: Name too long");
    if (fault == TextFault::character)
        return message->failure.fail_with("sepa_setName: invalid character '%.*s' in name",
                                          static_cast<int>(character.size()), character.data());
    if (fault != TextFault::none) return fail_text(message->failure, fault, "name");
    return store(message, message->name, text, "sepa_setName: strdup() failed");
}

int sepa_setCreditorIdentifier(sepa_t* message, const char* identifier) {
    if (message == nullptr) return 0;
    const std::string_view text = identifier == nullptr ? "" : identifier;
    if (const char* fault = creditor_identifier_fault(text, rulebook_of(*message)))
        return message->failure.fail(fault);
    return store(message, message->creditor_identifier, text);
}

int sepa_setDate(sepa_t* message, const char* date) {
    constexpr std::size_t length = 10;
    if (message == nullptr) return 0;
    if (date == nullptr || strnlen(date, length + 1) != length) return message->failure.fail("Invalid date");
    if (is_strict(rulebook_of(*message))) {
        if (!is_calendar_date({date, length})) return message->failure.fail("Invalid date");
    } else if (!begins_with_date(date)) {
        return message->failure.fail("Invalid date format");
    }
    return store(message, message->date, {date, length});
}

int sepa_setDDType(sepa_t* message, uint32_t type) {
    if (message == nullptr) return 0;
    if (message->type == SEPA_MSGTYPE_CTI) return message->failure.fail("Not a direct debit message");
    if (type > SEPA_DDTYPE_B2B)
        return message->failure.fail("Unknown/unsupported LocalInstrumentCode (setDDType)");
    if (type == SEPA_DDTYPE_COR1 && !permits_choosing_cor1(rulebook_of(*message)))
        return message->failure.fail("COR1 is not allowed with selected SEPA rulebook");
    message->direct_debit_type = type;
    return 1;
}

int sepa_setBatchBooking(sepa_t* message, uint8_t batch) {
    if (message == nullptr) return 0;
    if (batch > 1) return message->failure.fail("Invalid BatchBooking mode (only 0 or 1 allowed)");
    message->batch_booking = batch;
    return 1;
}

int sepa_setMessageId(sepa_t* message, const char* id) {
    if (message == nullptr) return 0;
    const bool strictly = is_strict(rulebook_of(*message));
    // "-P999" has to fit behind it.
    const std::size_t longest = strictly ? 30 : 35;
    const std::string_view text = id == nullptr ? "" : std::string_view(id, strnlen(id, longest + 1));
    if (text.empty() || text.size() > longest) return message->failure.fail("Invalid message id");
    for (const char c : text)
        if (!is_message_id_character(c)) return message->failure.fail("Invalid message id");
    if (strictly && text.find_first_not_of(' ') == text.npos)
        return message->failure.fail("Text must not consist of spaces");
    if (strictly && has_misplaced_slash(text))
        return message->failure.fail("Slash not allowed here in message id");

    OwnedText copy;
    // Deliberate: a failed copy is not reported; sepa_toXML() generates an id then. Strictly, it is.
    if (!copy.assign(text) && strictly) return message->failure.fail("strdup() failed");
    retire_message_id(message);
    message->message_id = std::move(copy);
    message->has_loose_values |= !strictly;
    return 1;
}
