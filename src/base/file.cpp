#include "base/file.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora {
namespace {

bool is_regular(const char* path) {
    struct stat status;
    return stat(path, &status) == 0 && S_ISREG(status.st_mode);
}

int open_file(const char* path) {
    if (path == nullptr) {
        errno = EFAULT;
        return -1;
    }
    // Without O_NONBLOCK the opening of a pipe would wait for its writer.
    constexpr int flags = O_RDONLY | O_CLOEXEC | O_NOCTTY;
    int descriptor = open(path, flags | O_NONBLOCK);
    // With it a file under another process's lease cannot be opened; the wait for its release has an end.
    while (descriptor < 0 && (errno == EWOULDBLOCK || errno == EINTR) && is_regular(path))
        descriptor = open(path, flags);
    return descriptor;
}

class File {
public:
    explicit File(const char* path) : descriptor_(open_file(path)) {}
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() {
        if (is_open()) close(descriptor_);
    }

    bool is_open() const { return descriptor_ >= 0; }
    int descriptor() const { return descriptor_; }

private:
    int descriptor_;
};

// Why the file could not be read to its size, or null when it was.
const char* read_fully(const File& file, char* text, std::size_t size) {
    for (std::size_t done = 0; done < size;) {
        const ssize_t count = read(file.descriptor(), text + done, size - done);
        if (count == 0) return "Unexpected end of file";
        if (count > 0)
            done += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            return std::strerror(errno);
    }
    return nullptr;
}

FileText allocate(std::size_t size, ErrorText& error) {
    FileText text = FileText::allocate(size);
    if (!text) error.fail("Failed to allocate %li bytes", static_cast<long>(size));
    return text;
}

} // namespace

FileText read_file(const char* path, ErrorText& error) {
    const auto failed = [&](const char* format, auto value) {
        error.fail(format, value);
        return FileText();
    };
    const File file(path);
    if (!file.is_open()) return failed("Can't open input file: %s", std::strerror(errno));
    struct stat status;
    if (fstat(file.descriptor(), &status) != 0)
        return failed("Can't stat input file: %s", std::strerror(errno));
    // Devices and pipes are empty in this sense, too.
    if (status.st_size <= 0) return failed("%s", "Input file is empty");

    // With 32 bits a file may have more bytes than there are addresses: of so many there is no allocation
    // either.
    const std::intmax_t size = std::min<std::intmax_t>(status.st_size, PTRDIFF_MAX);
    FileText text = allocate(static_cast<std::size_t>(size), error);
    if (!text) return text;
    if (const char* reason = read_fully(file, text.data(), text.size()))
        return failed("Error while reading from file: %s", reason);
    return text;
}

FileText copy_bytes(const char* data, std::size_t size, ErrorText& error) {
    if (data == nullptr || size == 0) {
        error.fail("Input file is empty");
        return {};
    }
    FileText text = allocate(size, error);
    if (text) std::memcpy(text.data(), data, size);
    return text;
}

} // namespace velmora
