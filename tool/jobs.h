// One file, several processes: each answers every N-th piece of it, and they write in turn.
#pragma once

#include "reader.h"

namespace velmora::tool {

// What the answers so far came to.
struct Tally {
    std::uint64_t lines = 0, rows = 0, bad = 0;
    Exit end = Exit::good;
};

// Something to tell about a line, once the lines before it have been counted.
struct Complaint {
    std::uint64_t line;
    Text text; // a constant, or one of the reader
};

// Who answers the rows of a piece.
class Worker {
public:
    virtual void prepare(Reader& reader) = 0;
    // Answers the rows that begin in the next `size` bytes; the answers stay in a buffer.
    virtual void answer(Reader& reader, std::uint64_t size, Tally& tally) = 0;
    virtual Buffer& answers() = 0;
    virtual List<Complaint>& complaints() = 0;

protected:
    ~Worker() = default;
};

struct Jobs {
    std::size_t count;
    std::uint64_t start; // of the first row behind a header, in bytes of the file
    Shape shape;
    bool escaped;
};

// Reports what a worker has to tell; its lines count from `lines` on.
void report_complaints(Worker& worker, Text file, std::uint64_t lines);

// Adds to the tally.
void run_jobs(const Jobs& jobs, const File& file, Worker& worker, Progress& progress, Tally& tally);

} // namespace velmora::tool
