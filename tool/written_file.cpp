#include "written_file.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora::tool {
namespace {

// NAME with something behind it that no other process takes.
void name_temporary(Buffer& out, Text path, int attempt) {
    out.clear();
    out << path << '.' << getpid() << '.' << attempt << ".part";
}

} // namespace

WrittenFile::~WrittenFile() {
    if (descriptor_ >= 0) close(descriptor_);
    if (!temporary_.empty()) unlink(temporary_.c_str());
}

bool WrittenFile::link_to(const char* name) const {
    char self[32];
    std::snprintf(self, sizeof self, "/proc/self/fd/%d", descriptor_);
    // Without /proc this needs a privilege.
    return linkat(AT_FDCWD, self, AT_FDCWD, name, AT_SYMLINK_FOLLOW) == 0 ||
           (errno == ENOENT && linkat(descriptor_, "", AT_FDCWD, name, AT_EMPTY_PATH) == 0);
}

void WrittenFile::prepare(Text path, Text content) {
    path_ << path;
    // The file that a link leads to is replaced, not the link.
    char* real = realpath(path_.c_str(), nullptr);
    if (real != nullptr) {
        path_.clear();
        path_ << Text(real);
        std::free(real);
    }
    struct stat status {};
    const bool exists = stat(path_.c_str(), &status) == 0;
    if (exists && !S_ISREG(status.st_mode)) {
        descriptor_ = open(path_.c_str(), O_WRONLY | O_CLOEXEC);
        if (descriptor_ < 0) fail_errno(Exit::output, path, errno);
        write_all(descriptor_, content, path);
        path_.clear();
        return;
    }

    // A file without a name is gone whatever ends the program. Where the file system or the kernel knows
    // none, it has a name of its own until then.
    Buffer folder;
    const std::size_t slash = path_.view().rfind('/');
    folder << (slash == Text::npos ? Text(".") : piece(path_.view(), 0, slash + 1));
    descriptor_ = open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
    for (int attempt = 0; descriptor_ < 0 && attempt < 100; ++attempt) {
        name_temporary(temporary_, path_.view(), attempt);
        descriptor_ = open(temporary_.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
        if (descriptor_ < 0) temporary_.clear();
        if (descriptor_ < 0 && errno != EEXIST) break;
    }
    if (descriptor_ < 0) fail_errno(Exit::output, path, errno);
    if (exists) fchmod(descriptor_, status.st_mode & 07777);
    write_all(descriptor_, content, path);
    if (fsync(descriptor_) != 0) fail_errno(Exit::output, path, errno);
}

void WrittenFile::publish() {
    if (path_.empty()) return;
    // A new name needs no step between; one that is taken does.
    bool done = temporary_.empty() && link_to(path_.c_str());
    for (int attempt = 0; !done && temporary_.empty() && attempt < 100; ++attempt) {
        name_temporary(temporary_, path_.view(), attempt);
        if (link_to(temporary_.c_str())) break;
        temporary_.clear();
        if (errno != EEXIST) break;
    }
    if (!done) done = !temporary_.empty() && rename(temporary_.c_str(), path_.c_str()) == 0;
    if (!done) fail_errno(Exit::output, path_.view(), errno);
    temporary_.clear();
}

WrittenFiles::~WrittenFiles() {
    for (WrittenFile* file : files_) {
        file->~WrittenFile();
        wipe_and_free(file, sizeof *file);
    }
}

void WrittenFiles::prepare(Text path, Text content) {
    auto* file = new (allocate(sizeof(WrittenFile))) WrittenFile;
    files_.add(file);
    file->prepare(path, content);
}

void WrittenFiles::publish() {
    for (WrittenFile* file : files_)
        file->publish();
}

} // namespace velmora::tool
