#include "message/message.h"

#include <cstdlib>
#include <new>

using namespace velmora;

int sepa_init(int option, const char* value) {
    if (option != SEPA_INIT_RULEBOOK || value == nullptr) return 0;
    const Rulebook* rulebook = find_rulebook(value);
    if (rulebook == nullptr) return 0;
    select_rulebook(*rulebook);
    return 1;
}

int sepa_setRulebook(sepa_t* message, const char* rulebook) {
    if (message == nullptr) return 0;
    const char* const name = rulebook == nullptr ? "(null)" : rulebook;
    const Rulebook* found = find_rulebook(name);
    if (found == nullptr) {
        message->failure.fail_with("Unknown SEPA rulebook '%s'", name);
        if (counts_characters(rulebook_of(*message))) message->failure.keep_whole_characters();
        return 0;
    }
    message->rulebook = found;
    return 1;
}

sepa_t* sepa_new(uint32_t type) {
    settle_rulebook(); // before the type is looked at: a refused call settles it, too
    if (type != SEPA_MSGTYPE_DDI && type != SEPA_MSGTYPE_CTI) return nullptr;
    void* memory = std::malloc(sizeof(sepa_t));
    if (memory == nullptr) return nullptr;
    auto* message = new (memory) sepa_t;
    message->type = type;
    return message;
}

void sepa_free(sepa_t* message) {
    if (message == nullptr) return;
    for (RetiredId* id = message->retired_ids; id != nullptr;) {
        RetiredId* next = id->next;
        id->~RetiredId();
        std::free(id);
        id = next;
    }
    message->~sepa_t();
    explicit_bzero(static_cast<void*>(message),
                   sizeof *message); // the text of a failure may quote an account
    std::free(message);
}

const char* sepa_getError(sepa_t* message) {
    return message == nullptr ? "Invalid sepa_t handle (NULL)" : message->failure.text();
}

void sepa_cleanup(void) {
    // Nothing is left to release: no check builds anything that outlives it.
}
