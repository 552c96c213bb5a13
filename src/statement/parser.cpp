#include "statement/parser.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "base/file.h"
#include "statement/info.h"
#include "statement/load.h"
#include "statement/proof.h"

using namespace velmora;

namespace {

// Gives a parser that has not been used its text; `read` gets it from wherever it lies.
template <typename Read>
int load_text(sepa_stmt_parser_t* parser, uint32_t format, Read read) {
    if (parser == nullptr) return 0;
    if (parser->format != 0) return parser->error.fail("Parser already used");
    // Deliberate: a refused format uses the parser up, too; PHP programs see that in "Parser already used".
    parser->format = format;
    LoadFunction* const load = find_load_function(format);
    if (load == nullptr) return parser->error.fail("Format not (yet) supported");

    void* const input = std::malloc(sizeof(StatementInput));
    // Deliberate: the number is part of a text that never changes.
    if (input == nullptr)
        return parser->error.fail("Error while allocating 264 bytes: %s", std::strerror(errno));
    parser->input = new (input) StatementInput;
    parser->input->text = read(parser->error);
    if (!parser->input->text) return 0;
    if (load(*parser) == 1) return 1;

    parser->first = parser->last = nullptr;
    parser->input->records.clear();
    parser->input->text = {};
    return 0;
}

bool owns(const sepa_stmt_parser_t* parser, const void* record) {
    return parser != nullptr && parser->input != nullptr && record != nullptr &&
           parser->input->records.owns(record);
}

} // namespace

sepa_stmt_parser_t* sepa_stmt_parser_new(void) {
    return static_cast<sepa_stmt_parser_t*>(std::calloc(1, sizeof(sepa_stmt_parser_t)));
}

int sepa_stmt_parser_load(sepa_stmt_parser_t* parser, uint32_t format, const char* path) {
    return load_text(parser, format, [&](ErrorText& error) { return read_file(path, error); });
}

int sepa_stmt_parser_loadMemory(sepa_stmt_parser_t* parser, uint32_t format, const char* data, size_t size) {
    return load_text(parser, format, [&](ErrorText& error) { return copy_bytes(data, size, error); });
}

sepa_stmt_t* sepa_stmt_parser_getStatement(sepa_stmt_parser_t* parser) {
    return parser == nullptr ? nullptr : parser->first;
}

const sepa_stmt_info_t* sepa_stmt_parser_getInfo(sepa_stmt_parser_t* parser, const sepa_stmt_t* statement) {
    if (!owns(parser, statement) || parser->format == SEPA_STMT_FORMAT_MT940) return nullptr;
    return &reinterpret_cast<const StatementPiece*>(statement)->info;
}

const sepa_stmt_tx_info_t* sepa_stmt_parser_getTxInfo(sepa_stmt_parser_t* parser,
                                                      const sepa_stmt_tx_t* booking) {
    return owns(parser, booking) ? &find_info(*parser, *booking) : nullptr;
}

int sepa_stmt_parser_check(sepa_stmt_parser_t* parser, const sepa_stmt_t* statement, double* difference) {
    if (difference != nullptr) *difference = 0;
    return owns(parser, statement) ? prove_statement(*parser, *statement, difference) : -1;
}

const char* sepa_stmt_parser_getError(sepa_stmt_parser_t* parser) {
    return parser == nullptr ? "invalid sepa_stmt_parser_t handle" : parser->error.text;
}

void sepa_stmt_parser_free(sepa_stmt_parser_t* parser) {
    if (parser == nullptr) return;
    if (parser->input != nullptr) std::destroy_at(parser->input);
    std::free(parser->input);
    explicit_bzero(parser, sizeof *parser);
    std::free(parser);
}
