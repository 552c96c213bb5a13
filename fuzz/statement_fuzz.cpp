// Feeds arbitrary files to the statement parser. Every text of every record is read.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "../tests/statement_records.h"

using namespace velmora::test;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    const Parser parser = new_parser();
    const bool readable = !input.empty() && input[0] != '\0';
    if ((load(parser, input) == 1) != readable) std::abort();
    describe(parser);
    return 0;
}
