#include "source.h"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include "interrupt.h"

namespace velmora::tool {

constexpr std::size_t block_size = 256 << 10;

File::File(const char* path) : name_(path) {
    if (name_ == "-") {
        descriptor_ = STDIN_FILENO;
        name_ = "standard input";
    } else {
        descriptor_ = open(path, O_RDONLY | O_CLOEXEC);
        if (descriptor_ < 0) fail_errno(Exit::input, name_, errno);
    }
    struct stat status {};
    if (fstat(descriptor_, &status) != 0) fail_errno(Exit::input, name_, errno);
    if (S_ISDIR(status.st_mode)) fail_errno(Exit::input, name_, EISDIR);
    regular_ = S_ISREG(status.st_mode);
    if (!regular_) return;
    const off_t position = lseek(descriptor_, 0, SEEK_CUR);
    if (position < 0 || position >= status.st_size) return;
    start_ = static_cast<std::uint64_t>(position);
    size_ = static_cast<std::uint64_t>(status.st_size - position);
}

File::~File() {
    if (descriptor_ != STDIN_FILENO) close(descriptor_);
}

std::size_t read_some(const File& file, std::size_t size, Buffer& out, std::int64_t place) {
    out.reserve(out.size() + size);
    for (;;) {
        char* to = out.data() + out.size();
        const ssize_t got =
            place < 0 ? read(file.descriptor(), to, size) : pread(file.descriptor(), to, size, place);
        if (got >= 0) {
            out.set_size(out.size() + static_cast<std::size_t>(got));
            return static_cast<std::size_t>(got);
        }
        if (errno != EINTR) fail_errno(Exit::input, file.name(), errno);
        if (is_interrupted()) return 0;
    }
}

void read_whole(const File& file, std::uint64_t limit, Buffer& out) {
    out.reserve(static_cast<std::size_t>(file.size() < limit ? file.size() : limit) + 1);
    while (read_some(file, out.capacity() > out.size() ? out.capacity() - out.size() : block_size, out) > 0)
        if (out.size() > limit) fail(Exit::input, file.name(), "larger than 2 GiB");
}

Decoder::Decoder(Subcommand subcommand, const char* encoding, bool replaces) : replaces_(replaces) {
    if (encoding == nullptr || equals_ignoring_case(encoding, "UTF-8") ||
        equals_ignoring_case(encoding, "UTF8"))
        return;
    converter_ = iconv_open("UTF-8", encoding);
    used_ = reinterpret_cast<std::intptr_t>(converter_) != -1;
    if (!used_) fail_usage(subcommand, "iconv knows no encoding", encoding);
}

Decoder::~Decoder() {
    if (used_) iconv_close(converter_);
}

bool Decoder::decode(Text bytes, bool last, Buffer& out) {
    rest_ << bytes;
    char* in = rest_.data();
    std::size_t left = rest_.size();
    while (left > 0) {
        out.reserve(out.size() + 4 * left + 16);
        char* to = out.data() + out.size();
        std::size_t room = out.capacity() - out.size();
        const std::size_t converted = iconv(converter_, &in, &left, &to, &room);
        out.set_size(static_cast<std::size_t>(to - out.data()));
        if (converted != static_cast<std::size_t>(-1) || errno == E2BIG) continue;
        if (errno == EINVAL && !last) break; // the character goes on in the next piece
        if (!replaces_) return false;
        out << "\xEF\xBF\xBD";
        ++in;
        --left;
    }
    if (left > 0) std::memmove(rest_.data(), in, left);
    rest_.set_size(left);
    return true;
}

int Source::read(Buffer& out) {
    if (ended_ || is_interrupted()) return 0;
    bytes_.clear();
    const std::size_t before = out.size();
    const std::size_t got = read_some(file_, block_size, decoder_.is_used() ? bytes_ : out, place_);
    if (place_ >= 0) place_ += static_cast<std::int64_t>(got);
    if (progress_ != nullptr) progress_->advance(got);
    ended_ = got == 0;
    if (!decoder_.is_used()) return got > 0 ? 1 : 0;
    if (!decoder_.decode(bytes_.view(), ended_, out)) return -1;
    return !ended_ || out.size() > before ? 1 : 0;
}

bool Source::would_wait() const {
    pollfd descriptor{.fd = file_.descriptor(), .events = POLLIN, .revents = 0};
    return !file_.is_regular() && poll(&descriptor, 1, 0) == 0;
}

} // namespace velmora::tool
