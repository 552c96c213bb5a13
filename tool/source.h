// Bytes of a file or of the standard input, in UTF-8 if an encoding was named.
#pragma once

#include <iconv.h>

#include "failure.h"
#include "options.h"
#include "progress.h"

namespace velmora::tool {

// An open file, closed at the end.
class File {
public:
    // "-" is the standard input. Ends the program with exit code 3 when there is no such file.
    explicit File(const char* path);
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File();

    [[nodiscard]] int descriptor() const { return descriptor_; }
    // As it is named in messages.
    [[nodiscard]] Text name() const { return name_; }
    // Of a regular file from where it is read on, otherwise 0.
    [[nodiscard]] std::uint64_t size() const { return size_; }
    [[nodiscard]] std::uint64_t start() const { return start_; }
    [[nodiscard]] bool is_regular() const { return regular_; }

private:
    int descriptor_;
    Text name_;
    std::uint64_t size_ = 0, start_ = 0;
    bool regular_ = false;
};

// Converts to UTF-8, piece by piece.
class Decoder {
public:
    // A null or UTF-8 encoding hands everything through. Ends the program when iconv does not know it.
    Decoder(Subcommand subcommand, const char* encoding, bool replaces);
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    ~Decoder();

    [[nodiscard]] bool is_used() const { return used_; }
    // Appends what the bytes mean. False when they mean nothing in this encoding; with `replaces` they become
    // U+FFFD instead. `last`: nothing follows.
    bool decode(Text bytes, bool last, Buffer& out);

private:
    bool used_ = false, replaces_;
    iconv_t converter_{};
    Buffer rest_; // of a character that the piece before ended in
};

// Reads a stream; before it waits for more, it tells that nothing is there yet.
class Source {
public:
    // The progress may be null.
    Source(const File& file, Decoder& decoder, Progress* progress)
        : file_(file), decoder_(decoder), progress_(progress) {}
    // From a place of a regular file, whatever others read of it.
    Source(const File& file, Decoder& decoder, std::uint64_t place) : Source(file, decoder, nullptr) {
        place_ = static_cast<std::int64_t>(place);
    }

    // Appends a piece to the buffer. 1, 0 at the end, -1 when the bytes have no meaning in their encoding.
    int read(Buffer& out);
    // Whether read() would wait.
    [[nodiscard]] bool would_wait() const;
    [[nodiscard]] const File& file() const { return file_; }

private:
    const File& file_;
    Decoder& decoder_;
    Progress* progress_;
    std::int64_t place_ = -1;
    Buffer bytes_;
    bool ended_ = false;
};

// Appends what read(2) gives, at most `size` bytes, or pread(2) from a place that is not negative; 0 at the
// end. Ends the program when the file cannot be read.
std::size_t read_some(const File& file, std::size_t size, Buffer& out, std::int64_t place = -1);

// The whole file; ends the program when it is larger than `limit`.
void read_whole(const File& file, std::uint64_t limit, Buffer& out);

} // namespace velmora::tool
