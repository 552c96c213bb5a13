#include "statement/file.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora {
namespace {

class File {
public:
    explicit File(const char* path) {
        // Opening a pipe would wait for its writer without O_NONBLOCK; regular files do not notice it.
        if (path != nullptr)
            descriptor_ = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
        else
            errno = EFAULT;
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() {
        if (is_open()) close(descriptor_);
    }

    bool is_open() const { return descriptor_ >= 0; }
    int descriptor() const { return descriptor_; }

private:
    int descriptor_ = -1;
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

} // namespace

FileText read_statement_file(sepa_stmt_parser_t* parser, const char* path) {
    const auto failed = [&](const char* format, auto value) {
        fail_with(parser, format, value);
        return FileText();
    };
    const File file(path);
    if (!file.is_open()) return failed("Can't open input file: %s", std::strerror(errno));
    struct stat status;
    if (fstat(file.descriptor(), &status) != 0)
        return failed("Can't stat input file: %s", std::strerror(errno));
    // Devices and pipes are empty in this sense, too.
    if (status.st_size <= 0) return failed("%s", "Input file is empty");

    const auto size = static_cast<std::size_t>(status.st_size);
    FileText text = allocate_text(size + 1);
    if (text == nullptr) return failed("Failed to allocate %li bytes", static_cast<long>(status.st_size));
    if (const char* reason = read_fully(file, text.get(), size))
        return failed("Error while reading from file: %s", reason);
    text[size] = '\0';
    return text;
}

} // namespace velmora
