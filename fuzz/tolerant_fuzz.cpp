// Feeds arbitrary files to format 940: twice from memory, the second time as if its lines ended otherwise.
// Every text of every record is read; a load that fails has a text and no records.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "../tests/statement_records.h"

using namespace velmora::test;

namespace {

std::string read(const std::string& input) {
    const Parser parser = new_parser();
    const int loaded = sepa_stmt_parser_loadMemory(parser.get(), SEPA_STMT_FORMAT_MT940_TOLERANT,
                                                   input.data(), input.size());
    const std::string error = sepa_stmt_parser_getError(parser.get());
    const std::string records = describe_all(parser);
    if ((loaded == 1) != error.empty() || (loaded == 0 && !records.empty())) std::abort();
    for (const sepa_stmt_t* s = sepa_stmt_parser_getStatement(parser.get()); s != nullptr; s = s->next)
        sepa_stmt_parser_check(parser.get(), s, nullptr);
    return loaded == 1 ? records : error;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string input(reinterpret_cast<const char*>(data), size);
    const std::string records = read(input);
    if (input.find('\r') != input.npos || input.find("@@") != input.npos) return 0;
    replace_all(input, "\n", "\r\n");
    if (read(input) != records) std::abort();
    return 0;
}
