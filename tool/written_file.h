// A file that appears under its name whole, or not at all.
#pragma once

#include "failure.h"

namespace velmora::tool {

class WrittenFile {
public:
    WrittenFile() = default;
    WrittenFile(const WrittenFile&) = delete;
    WrittenFile& operator=(const WrittenFile&) = delete;
    ~WrittenFile();

    // Writes the text where nobody sees it yet. What is no regular file (a terminal, /dev/null) gets it at
    // once. Ends the program with exit code 4 when that is not possible.
    void prepare(Text path, Text content);
    // Gives it its name, and takes the place of what has it now.
    void publish();

private:
    bool link_to(const char* name) const;

    Buffer path_, temporary_; // the latter while a file has that name
    int descriptor_ = -1;
};

// Several of them.
class WrittenFiles {
public:
    WrittenFiles() = default;
    WrittenFiles(const WrittenFiles&) = delete;
    WrittenFiles& operator=(const WrittenFiles&) = delete;
    ~WrittenFiles();

    void prepare(Text path, Text content);
    void publish();

private:
    List<WrittenFile*> files_;
};

} // namespace velmora::tool
