// The lines of MT940 as banks really write it: whatever ends them, and the tags that begin them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/file_memory.h"

namespace velmora::tolerant {

enum class Tag : std::uint8_t {
    none,      // continues the line before
    skipped,   // a tag whose content nobody asks for
    reference, // :20:
    account,   // :25: :25P:
    number,    // :28: :28C:
    opening,   // :60F: :60M:
    closing,   // :62F: :62M:
    available, // :64:
    forward,   // :65:
    totals,    // :90C: :90D:
    booking,   // :61:
    text,      // :86:
    header,    // {1:...}{2:...}{4:
    end,       // "-" or "-}"
};

struct Line {
    char* begin;
    char* content; // behind the tag
    char* end;
    char* next; // the line after it
    Tag tag;
    bool is_intermediate; // :60M: :62M:
};

class Lines {
public:
    explicit Lines(const FileText& text);

    char* begin() const { return begin_; }
    char* end() const { return end_; }
    // Every line up to here is valid UTF-8.
    bool is_utf8() const { return is_utf8_; }
    // Bytes, if the file is not UTF-8.
    std::ptrdiff_t count_characters(const char* begin, const char* end) const;

    // The line that starts at `at`, which is not the end. A zero byte ends it, too. (Not returned: to load
    // what has just been stored in smaller pieces takes the processor as long as a short line.)
    void read(char* at, Line& line);
    // Where the line from `at` ends, and where the next one begins.
    char* find_end(char* at, char*& next) const {
        bool is_ascii = true;
        return find_end(at, next, is_ascii);
    }

    // Whether the line "-" ends its statement: only if no other tag than ":20:" comes next.
    bool ends_statement(const Line& line);

private:
    char* find_end(char* at, char*& next, bool& is_ascii) const;

    char* begin_;
    char* end_;
    bool ends_with_at_signs_ = false; // "@@" ends lines, and nothing else does
    bool is_utf8_ = true;
    bool is_ascii_ = true;
    Line next_tag_{}; // the one that was looked ahead for last
};

} // namespace velmora::tolerant
