// The finished shared object as others see it: names, needed libraries, relocations.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "command.h"

namespace {

const std::string library = VELMORA_LIBRARY;

// The first group of every match, line by line.
std::vector<std::string> find_all(const std::string& text, const std::string& pattern) {
    const std::regex expression(pattern);
    std::vector<std::string> found;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        for (std::sregex_iterator match(line.begin(), line.end(), expression), end; match != end; ++match)
            found.push_back((*match)[1]);
    return found;
}

std::string output_of(const std::string& command) {
    const CommandResult result = run(command + " " + library);
    EXPECT_EQ(result.status, 0) << result.output;
    return result.output;
}

unsigned long section_size(const std::string& sections, const std::string& name) {
    const auto sizes = find_all(sections, " \\" + name + " +[A-Z_]+ +[0-9a-f]+ [0-9a-f]+ ([0-9a-f]+) ");
    return sizes.size() == 1 ? std::stoul(sizes[0], nullptr, 16) : 0;
}

TEST(Abi, ExportsExactlyTheNamesOfTheList) {
    std::ifstream file(VELMORA_EXPORTED_NAMES);
    std::vector<std::string> listed;
    for (std::string line; std::getline(file, line);)
        if (!line.empty() && line[0] != '#') listed.push_back(line);
    std::sort(listed.begin(), listed.end());

    auto exported = find_all(output_of("nm -D --defined-only --format=posix"), "^(\\S+) ");
    std::sort(exported.begin(), exported.end());
    EXPECT_EQ(exported, listed);
}

TEST(Abi, NeedsLibcAlone) {
    for (const std::string& needed :
         find_all(output_of("readelf -dW"), "\\(NEEDED\\) +Shared library: \\[(.*)\\]"))
        // The last two are libc's own: before glibc 2.34, and where its loader holds the stack guard.
        EXPECT_TRUE(needed == "libc.so.6" || needed == "libdl.so.2" || needed.starts_with("ld-linux-"))
            << needed;
}

// Loading must cost nothing: the bank data lie in read-only pages that need no work by the dynamic linker.
TEST(Abi, DataNeedNoRelocations) {
    const std::string relocations = output_of("readelf -rW");
    EXPECT_EQ(find_all(output_of("readelf -dW"), "(TEXTREL)"), std::vector<std::string>{});
    EXPECT_LT(find_all(relocations, "(_RELATIVE) ").size(), 600u);
    EXPECT_LT(find_all(relocations, "(R_[A-Z0-9_]+) ").size(), 700u);

    const std::string sections = output_of("readelf -SW");
    EXPECT_GT(section_size(sections, ".rodata"), 500'000u);
    EXPECT_LT(section_size(sections, ".data.rel.ro"), 16'384u);
    EXPECT_LT(section_size(sections, ".data"), 8'192u); // PHP's tables
}

TEST(Abi, IsHardened) {
    const std::string segments = output_of("readelf -lW");
    EXPECT_EQ(find_all(segments, "(GNU_RELRO)").size(), 1u);
    EXPECT_EQ(find_all(segments, "GNU_STACK.* (RWE?) "), std::vector<std::string>{"RW"});
    EXPECT_EQ(find_all(output_of("readelf -dW"), "FLAGS\\) +(BIND_NOW)").size(), 1u);
    // Checked calls go to functions of the library's own, because not every C library has them.
    const std::string wanted = output_of("nm -D --undefined-only --format=posix");
    EXPECT_EQ(find_all(wanted, "^(__stack_chk_fail)[@ ]").size(), 1u);
    EXPECT_EQ(find_all(wanted, "^(__(?!stack).*_chk)[@ ]"), std::vector<std::string>{});
    const std::string code = output_of("objdump -d --no-show-raw-insn");
    EXPECT_FALSE(find_all(code, "(?:callq?|jmpq?|bl?)[ \\t].*<__(v?snprintf|memcpy)_chk>").empty());
#if defined(__x86_64__) || defined(__aarch64__)
    const std::string function = output_of("objdump -d --no-show-raw-insn --disassemble=sepa_iban_check");
    EXPECT_FALSE(find_all(function, "(endbr64|paciasp|bti)").empty());
#endif
}

TEST(Abi, LoadsWithAllSymbolsBound) {
    const CommandResult result = run(VELMORA_LOAD_LIBRARY " " + library);
    EXPECT_EQ(result.status, 0) << result.output;
}

} // namespace
