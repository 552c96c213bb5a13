// The reading of one camt file: where its values are gathered, and the records made of them.
#pragma once

#include "base/file_memory.h"
#include "statement/camt_fields.h"
#include "statement/camt_remittance.h"
#include "statement/info.h"
#include "xml/reader.h"

namespace velmora::camt {

struct Reading {
    explicit Reading(sepa_stmt_parser_t& owner) : parser(owner), records(owner.input->records) {}
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;
    ~Reading() { explicit_bzero(&fields, sizeof fields); }

    sepa_stmt_parser_t& parser;
    RecordPool& records;
    XmlReader xml;
    Fields fields{};
    Remittance remittance;
    JoinedText return_text;
    WipedBuffer balances; // of the statement being read, as bytes

    StatementPiece* statement = nullptr;
    // The records of the entry's parts, as long as they may add up to the entry.
    BookingPiece* first_part = nullptr;
    BookingPiece* last_part = nullptr;
    std::int64_t sum_of_parts = 0;
    bool parts_add_up = false;
    BookingPiece* spare = nullptr; // records of parts that did not

    char* no_reference = nullptr; // "NONREF"
};

// What is done where an element begins or ends. False when the reading is over: the XML reader has the
// reason, or the parser, or memory ran out.
bool begin_statement(Reading& reading);
bool begin_part(Reading& reading);
bool end_entry(Reading& reading);
bool end_balance(Reading& reading);
bool end_statement(Reading& reading);

// Refuses the document at its present line. Always false.
bool refuse(Reading& reading, const char* reason);
bool out_of_memory(Reading& reading);

} // namespace velmora::camt
