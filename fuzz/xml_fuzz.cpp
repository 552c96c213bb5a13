// Feeds arbitrary documents to the XML reader and to expat: they must give the same elements and texts, and
// what expat refuses must be refused.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "../tests/xml_events.h"

using namespace velmora::test;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string document(reinterpret_cast<const char*>(data), size);
    // expat believes a declaration more than a mark, and takes UTF-16 without one.
    const bool is_marked = document.rfind("\xEF\xBB\xBF", 0) == 0;
    const bool is_other = (is_marked && document.find("encoding") != document.npos) ||
                          document.substr(0, 2).find('\0') != document.npos;
    const std::string difference = is_other ? "" : difference_from_expat(document);
    if (!difference.empty()) {
        std::fprintf(stderr, "%s\n", difference.c_str());
        std::abort();
    }
    return 0;
}
