// Feeds arbitrary files to the statement parser. Every text of every record is read; the field ":86:" is also
// compared with the plain model of its rules that the tests keep.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "../tests/information_model.h"
#include "../tests/statement_records.h"

using namespace velmora::test;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    const Parser parser = new_parser();
    const bool readable = !input.empty() && input[0] != '\0';
    if ((load(parser, input) == 1) != readable) std::abort();
    describe(parser);

    const std::string field = input.c_str(); // up to a zero byte
    const std::string by_library = read_field(field), by_model = read_field_plainly(field);
    if (by_library != by_model) {
        std::fprintf(stderr, "library: %smodel:   %s", by_library.c_str(), by_model.c_str());
        std::abort();
    }
    return 0;
}
