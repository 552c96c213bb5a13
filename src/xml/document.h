// What both documents share.
#pragma once

#include <ctime>
#include <span>
#include <string_view>

#include "message/message.h"
#include "xml/document_writer.h"
#include "xml/payment_blocks.h"

namespace velmora {

// A document to write: its message and the rulebook that decides how.
struct Document {
    const sepa_t& message;
    const Rulebook& rulebook;
    std::time_t now;
    std::span<const PaymentBlock> blocks;
};

// The elements of the message's own side: those of the creditor in a direct debit document, of the debtor in
// a credit transfer document.
struct OwnSide {
    char party[5], account[9], agent[8];
};

// From the document element to the end of the group header; `schema` is for instance "pain.008.001.08".
void write_opening(DocumentWriter& out, const Document& document, std::string_view schema,
                   std::string_view root);

// Payment block up to the payment type: identification, method, booking mode and totals.
void write_block_header(DocumentWriter& out, const Document& document, const PaymentBlock& block,
                        std::size_t number, std::string_view payment_method);

// The category purpose of a block, if it has one.
void write_category(DocumentWriter& out, const PaymentBlock& block);

// Own name, account and bank as far as they are set, and who bears the charges.
void write_own_side(DocumentWriter& out, const Document& document, const OwnSide& elements);

// A BIC on a line of its own, `tabs` deep.
void write_bic(DocumentWriter& out, const Rulebook& rulebook, std::string_view tabs, std::string_view bic);

// The identifications of a payment.
void write_payment_id(DocumentWriter& out, const Payment& payment);

// A party on whose behalf a payment is made or taken, in the element `name`. Nothing for an empty party.
void write_ultimate_party(DocumentWriter& out, std::string_view name, std::string_view party);

// The ultimate party on the message's own side: the payment's, otherwise the message's.
inline std::string_view own_ultimate_party(const Payment& payment, Field field, const sepa_t& message) {
    return payment.has(field) ? payment[field] : message.defaults.ultimate_party.view();
}

void write_purpose(DocumentWriter& out, const Rulebook& rulebook, const Payment& payment);

// Reference or text, as strict rulebooks have it: nothing when there is neither.
void write_strict_remittance(DocumentWriter& out, const Payment& payment);

// Whether the counterpart's address is written: the structured fields other than the town do not open it.
inline bool has_postal_address(const Payment& payment) {
    return payment.has(fields(Field::country, Field::town, Field::address_line_1, Field::address_line_2));
}

// The fields of the structured address with the country, and of a hybrid one the address lines, at their end.
void write_structured_address(DocumentWriter& out, const Rulebook& rulebook, const Payment& payment);
void write_country(DocumentWriter& out, const Payment& payment);
void write_address_lines(DocumentWriter& out, const Payment& payment);

// A whole document. `write_block` writes one block, given its number; `write_payment` a payment of it.
template <typename WriteBlock, typename WritePayment>
void write_document(DocumentWriter& out, const Document& document, std::string_view schema,
                    std::string_view root, WriteBlock write_block, WritePayment write_payment) {
    write_opening(out, document, schema, root);
    std::size_t number = 0;
    for (const PaymentBlock& block : document.blocks) {
        write_block(block, ++number);
        for (std::size_t i = 0; i < block.payments.size(); ++i) {
            // Far ahead enough to be there in time: the payments of a block lie apart in a large message.
            constexpr std::size_t ahead = 4;
            if (i + ahead < block.payments.size()) block.payments[i + ahead]->prefetch();
            write_payment(block.payments[i]->read());
        }
        out.line("\t\t</PmtInf>\n");
    }
    out.line("\t</", root, ">\n</Document>\n");
}

// What is missing or wrong in a message before its document can be written, or null.
const char* fault_in_direct_debits(const sepa_t& message, const Rulebook& rulebook);
const char* fault_in_credit_transfers(const sepa_t& message, const Rulebook& rulebook);

void write_direct_debits(DocumentWriter& out, const Document& document);
void write_credit_transfers(DocumentWriter& out, const Document& document);

} // namespace velmora
