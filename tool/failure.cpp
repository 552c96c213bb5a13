#include "failure.h"

#include <cerrno>
#include <cstdlib>
#include <unistd.h>

#include "json.h"
#include "progress.h"

namespace velmora::tool {
namespace {

bool errors_json = false;

// What a file says about itself must not reach the terminal as commands.
void append_harmless(Buffer& out, Text text) {
    for (const char c : text)
        out << (static_cast<unsigned char>(c) < ' ' || c == 0x7F ? ' ' : c);
}

// A header may be a data row of many megabytes that somebody took for one.
Text beginning(Text text, std::size_t most) {
    if (text.size() <= most) return text;
    while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0) == 0x80)
        --most;
    return piece(text, 0, most);
}

} // namespace

void set_errors_json(bool json) {
    errors_json = json;
}

void report(const Finding& finding) {
    const bool has_line = finding.line > 0;
    const Text key = beginning(finding.key, 100), text = beginning(finding.text, 1000);
    Buffer out;
    if (errors_json) {
        out << "{\"file\":";
        append_json_or_null(out, finding.file);
        out << ",\"line\":";
        has_line ? out << finding.line : out << "null";
        out << ",\"key\":";
        append_json_or_null(out, key);
        out << ",\"code\":";
        finding.code >= 0 ? out << finding.code : out << "null";
        out << ",\"position\":";
        finding.position >= 0 ? out << finding.position : out << "null";
        out << ",\"text\":";
        append_json(out, text);
        constexpr Text levels[] = {"error", "warning", "note"};
        out << ",\"level\":\"" << levels[static_cast<int>(finding.level)] << "\"}\n";
    } else {
        append_harmless(out, finding.file.empty() ? Text("velmora") : finding.file);
        if (has_line) out << ':' << finding.line;
        out << ": ";
        if (finding.level == Level::warning) out << "warning: ";
        if (!key.empty()) {
            append_harmless(out, key);
            out << ": ";
        }
        append_harmless(out, text);
        out << '\n';
    }
    hide_progress();
    // Nothing is left to tell when this fails.
    if (write(STDERR_FILENO, out.data(), out.size()) < 0) return;
}

void fail(Exit code, Text text) {
    fail(code, {}, text);
}

void fail(Exit code, Text file, Text text) {
    report({.file = file, .text = text});
    std::exit(static_cast<int>(code));
}

void fail_errno(Exit code, Text file, int error) {
    fail(code, file, std::strerror(error));
}

void write_all(int fd, Text text, Text file) {
    while (!text.empty()) {
        const ssize_t written = write(fd, text.data(), text.size());
        if (written > 0)
            text.remove_prefix(static_cast<std::size_t>(written));
        else if (written < 0 && errno != EINTR)
            fail_errno(Exit::output, file, errno);
    }
}

} // namespace velmora::tool
