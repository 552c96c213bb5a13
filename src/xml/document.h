// What both documents share: the line writer, the document element, headers and addresses.
#pragma once

#include <ctime>
#include <string_view>

#include "message/message.h"
#include "message/rulebook.h"
#include "xml/buffer.h"
#include "xml/payment_blocks.h"

namespace velmora {

// Writes lines into a growing text. The first failure ends the writing: every later line is left out.
struct DocumentWriter {
    sepa_buf_t text;
    bool failed = false;
    bool out_of_memory = false; // the failure is one that callers are told about

    DocumentWriter() = default;
    DocumentWriter(const DocumentWriter&) = delete;
    DocumentWriter& operator=(const DocumentWriter&) = delete;
    ~DocumentWriter();

    // Lines without a value.
    void fixed(std::string_view lines) {
        if (!failed && !sepa_buf_append(&text, lines)) failed = true;
    }

    // A line with values, written as they stand; one that is not set leaves its place empty.
    template <typename... Texts>
    void line(const Texts&... texts) {
        if (!failed && !sepa_buf_append_strs(&text, std::string_view(texts)...))
            failed = out_of_memory = true;
    }

    // A line with a free text, escaped. Nothing when the text is not set.
    void escaped(std::string_view open, const OwnedText& content, std::string_view close) {
        if (content) escaped_line(open, content.view(), close);
    }
    void escaped_line(std::string_view open, std::string_view content, std::string_view close);

    void amount(std::string_view open, double euros, std::string_view close);
    void number(std::string_view open, std::size_t number, std::string_view close);

    // Makes room for a payment ahead of its lines.
    void reserve_payment();

    // Gives the text to the caller.
    char* release();
};

// Generates a message identification unless one is set. False without memory.
bool ensure_message_id(sepa_t* message, std::time_t now);

// The document element with its namespace, for instance of "pain.008.001.08".
void write_document_open(DocumentWriter& out, std::string_view schema, const Rulebook& rulebook);

// Group header up to the initiating party: identification, time and totals.
void write_group_header(DocumentWriter& out, const sepa_t& message, std::time_t now);

// Payment block up to the payment type: identification, method, booking mode and totals.
void write_block_header(DocumentWriter& out, const sepa_t& message, const PaymentBlock& block,
                        std::size_t number, std::string_view payment_method);

// A BIC on a line of its own, `tabs` deep.
void write_bic(DocumentWriter& out, std::string_view tabs, const OwnedText& bic);

// The end-to-end identification of a payment.
void write_payment_id(DocumentWriter& out, const Transaction& transaction);

// Whether the counterpart's address is written: the structured fields other than the town do not open it.
bool has_postal_address(const Transaction& transaction);

// The fields of the structured address with the country at their end.
void write_structured_address(DocumentWriter& out, const Transaction& transaction);
void write_country(DocumentWriter& out, const Transaction& transaction);
void write_address_lines(DocumentWriter& out, const Transaction& transaction);

// The two documents, behind the XML declaration. Null on success, otherwise what went wrong; a failure of the
// writer is the writer's to tell.
const char* write_direct_debits(DocumentWriter& out, sepa_t* message);
const char* write_credit_transfers(DocumentWriter& out, sepa_t* message);

} // namespace velmora
