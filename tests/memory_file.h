// A file without a name in any folder, for tests and benchmarks.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

namespace velmora::test {

class MemoryFile {
public:
    explicit MemoryFile(std::string_view content) : descriptor_(memfd_create("statement", MFD_CLOEXEC)) {
        std::snprintf(path_, sizeof path_, "/proc/self/fd/%d", descriptor_);
        const ssize_t count = write(descriptor_, content.data(), content.size());
        if (count != static_cast<ssize_t>(content.size())) std::abort();
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { close(descriptor_); }

    const char* path() const { return path_; }
    int descriptor() const { return descriptor_; }

private:
    int descriptor_;
    char path_[32];
};

} // namespace velmora::test
