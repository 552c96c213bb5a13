#include "progress.h"

#include <ctime>
#include <unistd.h>

namespace velmora::tool {
namespace {

bool is_shown = false;

double now() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

void append_bytes(Buffer& out, std::uint64_t bytes) {
    if (bytes >= 10'000'000)
        out << bytes / 1'000'000 << " MB";
    else
        out << bytes / 1'000 << " kB";
}

} // namespace

Progress::Progress(const Options& options) {
    enabled_ =
        !options.given(Opt::no_progress) && (options.given(Opt::progress) || isatty(STDERR_FILENO) != 0);
    if (enabled_) began_ = shown_ = now();
}

Progress::~Progress() {
    hide_progress();
}

void Progress::advance(std::uint64_t bytes) {
    done_ += bytes;
    if (!enabled_) return;
    const double time = now();
    // The first line after a second, then five in a second.
    if (time - shown_ < (shown_ > began_ ? 0.2 : 1.0)) return;
    shown_ = time;
    show(time - began_);
}

void Progress::show(double seconds) {
    Buffer line;
    line << "\r\033[K";
    append_bytes(line, done_);
    if (total_ > 0) {
        line << " of ";
        append_bytes(line, total_);
        line << " (" << 100 * done_ / total_ << " %)";
    }
    line << ", ";
    append_grouped(line, rows_);
    line << " rows, ";
    append_grouped(line, static_cast<std::uint64_t>(static_cast<double>(rows_) / seconds));
    line << " rows/s";
    if (total_ > done_ && done_ > 0) {
        const double left = seconds * static_cast<double>(total_ - done_) / static_cast<double>(done_);
        line << ", " << static_cast<std::uint64_t>(left) + 1 << " s left";
    }
    if (write(STDERR_FILENO, line.data(), line.size()) > 0) is_shown = true;
}

void hide_progress() {
    constexpr Text erase = "\r\033[K";
    if (is_shown && write(STDERR_FILENO, erase.data(), erase.size()) > 0) is_shown = false;
}

} // namespace velmora::tool
