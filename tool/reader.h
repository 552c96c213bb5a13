// Lines of a text, and rows of a table in CSV (RFC 4180) or TSV.
#pragma once

#include "source.h"

namespace velmora::tool {

enum class Shape : std::uint8_t { csv, tsv, lines };

struct Row {
    Text raw; // without its line end
    List<Text> fields;
    std::uint64_t line = 0; // that it begins in, from 1
};

class Reader {
public:
    enum class Result : std::uint8_t { row, end, damaged };

    // At the start of a file there may be a byte order mark.
    Reader(Source& source, Shape shape, bool escaped, bool at_start = true)
        : source_(source), shape_(shape), escaped_(escaped), began_(!at_start) {}

    // Its texts stay until the next call.
    Result next(Row& row);
    // Why the input is damaged.
    [[nodiscard]] Text error() const { return error_; }
    [[nodiscard]] std::uint64_t lines() const { return lines_; }
    // Where the next row begins, in bytes from where the source began.
    [[nodiscard]] std::uint64_t offset() const { return offset_; }
    // What separates the fields of a CSV; the first row tells.
    [[nodiscard]] char delimiter() const { return delimiter_; }
    void set_delimiter(char delimiter) { delimiter_ = delimiter; }
    // A longer row is damaged input; a longer line of values is cut there.
    void set_longest(std::size_t bytes, bool cuts) {
        longest_ = bytes;
        cuts_ = cuts;
    }
    // Before the reader waits for input.
    void before_waiting(void (*call)(void*), void* context) {
        call_ = call;
        context_ = context;
    }

private:
    enum class Parsed : std::uint8_t { row, incomplete, damaged };

    bool refill();
    Parsed find_line(Row& row);
    Parsed parse_csv(Row& row);
    Parsed end_row(Row& row, const char* end, std::size_t line_end);
    void split_tsv(Row& row);
    Text unescaped(Text field);
    Text undoubled(Text field);
    bool choose_delimiter();
    Parsed damaged(Text why) {
        error_ = why;
        return Parsed::damaged;
    }

    Source& source_;
    Shape shape_;
    bool escaped_;
    bool began_;
    char delimiter_ = '\0';
    Buffer buffer_;
    const char *position_ = nullptr, *end_ = nullptr;
    bool ended_ = false, cuts_ = false;
    std::size_t longest_ = 16 << 20;
    std::size_t searched_ = 0; // bytes of an incomplete line without a line end
    std::uint64_t lines_ = 0, offset_ = 0, dropped_ = 0;
    Buffer scratch_; // fields whose quotes or escapes were resolved
    Text error_;
    void (*call_)(void*) = nullptr;
    void* context_ = nullptr;
};

// How a file is read: --input, or its name.
Shape wanted_shape(const Options& options, Text path, Shape otherwise);

} // namespace velmora::tool
