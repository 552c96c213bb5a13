#include "jobs.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "interrupt.h"

namespace velmora::tool {
namespace {

constexpr std::uint64_t piece_size = 1 << 20;
constexpr std::size_t most_jobs = 256;

// Goes round with the right to write.
struct Token {
    std::uint64_t piece; // whose turn it is
    Tally tally;
};

struct Pipe {
    int ends[2];

    void open() {
        if (pipe(ends) != 0) fail_errno(Exit::memory, {}, errno);
    }
    void send(const Token& token) const {
        // Small enough to go through in one piece.
        if (write(ends[1], &token, sizeof token) != static_cast<ssize_t>(sizeof token)) std::_Exit(1);
    }
    [[nodiscard]] bool receive(Token& token) const {
        ssize_t got;
        do
            got = read(ends[0], &token, sizeof token);
        while (got < 0 && errno == EINTR);
        return got == static_cast<ssize_t>(sizeof token);
    }
};

// Where the rows of a CSV begin that are the first of their pieces: a line end between quotes ends no row.
// Empty when there are no quotes in the file.
void find_rows(const File& file, std::uint64_t start, List<std::uint64_t>& firsts) {
    Buffer block;
    bool any = false, quoted = false, row_begins = true;
    for (std::uint64_t at = start;;) {
        block.clear();
        block.reserve(piece_size);
        const ssize_t got = pread(file.descriptor(), block.data(), piece_size, static_cast<off_t>(at));
        if (got < 0) fail_errno(Exit::input, file.name(), errno);
        if (got == 0) break;
        block.set_size(static_cast<std::size_t>(got));
        any |= std::memchr(block.data(), '"', block.size()) != nullptr;
        // The first row that begins in this block; none when it has no end of a row.
        firsts.add(UINT64_MAX);
        std::uint64_t& first = firsts[firsts.size() - 1];
        for (std::size_t i = 0; i < block.size(); ++i) {
            if (row_begins && first == UINT64_MAX) first = at + i;
            row_begins = block[i] == '\n' && !quoted;
            if (block[i] == '"') quoted = !quoted;
        }
        at += block.size();
    }
    if (!any) firsts.clear();
}

class Ring {
public:
    Ring(const Jobs& jobs, const File& file, Worker& worker, Progress& progress)
        : jobs_(jobs), file_(file), worker_(worker), progress_(progress) {}

    void run(Tally& tally);

private:
    [[nodiscard]] std::uint64_t piece_start(std::uint64_t number) const {
        return jobs_.start + number * piece_size;
    }
    void answer_piece(std::uint64_t number, Tally& tally);
    [[noreturn]] void work(std::size_t number);
    void wait_for(Tally& tally);
    void end_workers();

    const Jobs& jobs_;
    const File& file_;
    Worker& worker_;
    Progress& progress_;
    std::uint64_t pieces_ = 0;
    std::size_t count_ = 0;
    Pipe turns_[most_jobs] = {}, done_ = {};
    pid_t workers_[most_jobs] = {};
    List<std::uint64_t> firsts_;
};

void Ring::answer_piece(std::uint64_t number, Tally& tally) {
    const std::uint64_t start = piece_start(number), end = start + piece_size;
    // A row belongs to the piece that it begins in: one that began before is left out.
    const bool known = firsts_.size() > number;
    const std::uint64_t from = known         ? firsts_[static_cast<std::size_t>(number)]
                               : number == 0 ? start
                                             : start - 1;
    if (known && from == UINT64_MAX) return;

    Decoder decoder(sub::check, nullptr, false);
    Source source(file_, decoder, from);
    Reader reader(source, jobs_.shape, jobs_.escaped, from == file_.start());
    worker_.prepare(reader);
    Row skipped;
    if (!known && number > 0 && reader.next(skipped) != Reader::Result::row) return;
    const std::uint64_t skipped_lines = reader.lines();
    worker_.answer(reader, end - from, tally);
    for (Complaint& complaint : worker_.complaints())
        complaint.line -= skipped_lines;
    tally.lines += reader.lines() - skipped_lines;
}

void Ring::work(std::size_t number) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    (void)std::signal(SIGINT, SIG_DFL);
    for (std::uint64_t mine = number; mine < pieces_; mine += count_) {
        Tally tally;
        answer_piece(mine, tally);
        Token token;
        if (!turns_[number].receive(token)) std::_Exit(1);
        write_all(STDOUT_FILENO, worker_.answers().view());
        worker_.answers().clear();
        report_complaints(worker_, file_.name(), token.tally.lines);
        token.tally.lines += tally.lines;
        token.tally.rows += tally.rows;
        token.tally.bad += tally.bad;
        token.tally.end = worse(token.tally.end, tally.end);
        ++token.piece;
        done_.send(token);
        if (tally.end == Exit::input) break;
        turns_[(number + 1) % count_].send(token);
    }
    std::_Exit(0);
}

void Ring::end_workers() {
    for (std::size_t i = 0; i < count_; ++i)
        kill(workers_[i], SIGTERM);
    while (waitpid(-1, nullptr, 0) > 0) {
    }
}

void Ring::wait_for(Tally& tally) {
    const Tally before = tally;
    Token token{.piece = 0, .tally = tally};
    turns_[0].send(token);
    while (token.piece < pieces_ && token.tally.end != Exit::input && !is_interrupted()) {
        pollfd news{.fd = done_.ends[0], .events = POLLIN, .revents = 0};
        if (poll(&news, 1, 100) > 0 && done_.receive(token)) {
            tally = token.tally;
            progress_.set_rows(tally.rows - before.rows);
            progress_.advance(piece_size);
            continue;
        }
        int status = 0;
        if (waitpid(-1, &status, WNOHANG) <= 0 || (WIFEXITED(status) && WEXITSTATUS(status) == 0)) continue;
        end_workers();
        // As one process would have ended.
        if (WIFSIGNALED(status) && WTERMSIG(status) == SIGPIPE) (void)std::raise(SIGPIPE);
        if (WIFEXITED(status)) std::exit(WEXITSTATUS(status));
        fail(Exit::memory, "one of the processes was killed");
    }
    end_workers();
}

void Ring::run(Tally& tally) {
    const std::uint64_t end = file_.start() + file_.size(), size = end > jobs_.start ? end - jobs_.start : 0;
    pieces_ = (size + piece_size - 1) / piece_size;
    if (pieces_ == 0) return;
    if (jobs_.shape == Shape::csv) find_rows(file_, jobs_.start, firsts_);
    count_ = jobs_.count < most_jobs ? jobs_.count : most_jobs;
    if (count_ > pieces_) count_ = static_cast<std::size_t>(pieces_);
    done_.open();
    for (std::size_t i = 0; i < count_; ++i)
        turns_[i].open();
    for (std::size_t i = 0; i < count_; ++i) {
        workers_[i] = fork();
        if (workers_[i] == 0) work(i);
        if (workers_[i] < 0) fail_errno(Exit::memory, {}, errno);
    }
    wait_for(tally);
}

} // namespace

void report_complaints(Worker& worker, Text file, std::uint64_t lines) {
    for (const Complaint& complaint : worker.complaints())
        report({.file = file, .line = lines + complaint.line, .text = complaint.text});
    worker.complaints().clear();
}

void run_jobs(const Jobs& jobs, const File& file, Worker& worker, Progress& progress, Tally& tally) {
    Ring(jobs, file, worker, progress).run(tally);
}

} // namespace velmora::tool
