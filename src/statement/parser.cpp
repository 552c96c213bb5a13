#include "statement/parser.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "statement/file.h"
#include "statement/mt940.h"

namespace velmora {

int fail_with(sepa_stmt_parser_t* parser, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(parser->error, sizeof parser->error, format, arguments);
    va_end(arguments);
    return 0;
}

} // namespace velmora

using namespace velmora;

sepa_stmt_parser_t* sepa_stmt_parser_new(void) {
    return static_cast<sepa_stmt_parser_t*>(std::calloc(1, sizeof(sepa_stmt_parser_t)));
}

int sepa_stmt_parser_load(sepa_stmt_parser_t* parser, uint32_t format, const char* path) {
    if (parser == nullptr) return 0;
    if (parser->format != 0) return fail_with(parser, "Parser already used");
    // Deliberate: a refused format uses the parser up, too (callers rely on it).
    parser->format = format;
    if (format != SEPA_STMT_FORMAT_MT940) return fail_with(parser, "Format not (yet) supported");

    void* const input = std::calloc(1, sizeof(StatementInput));
    if (input == nullptr)
        return fail_with(parser, "Error while allocating %lu bytes: %s",
                         static_cast<unsigned long>(sizeof(StatementInput)), std::strerror(errno));
    parser->input = new (input) StatementInput{};
    FileText text = read_statement_file(parser, path);
    return text != nullptr ? load_mt940(parser, std::move(text)) : 0;
}

sepa_stmt_t* sepa_stmt_parser_getStatement(sepa_stmt_parser_t* parser) {
    return parser == nullptr ? nullptr : parser->first;
}

const char* sepa_stmt_parser_getError(sepa_stmt_parser_t* parser) {
    return parser == nullptr ? "invalid sepa_stmt_parser_t handle" : parser->error;
}

void sepa_stmt_parser_free(sepa_stmt_parser_t* parser) {
    if (parser == nullptr) return;
    if (parser->input != nullptr) std::destroy_at(parser->input);
    std::free(parser->input);
    std::free(parser);
}
