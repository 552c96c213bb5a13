// How far the work is, in one line of the standard error output.
#pragma once

#include "options.h"

namespace velmora::tool {

class Progress {
public:
    // On a terminal, and only after a second, unless the options say otherwise.
    explicit Progress(const Options& options);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void add_total(std::uint64_t bytes) { total_ += bytes; }
    // Bytes that were read; shows the line now and then.
    void advance(std::uint64_t bytes);
    void set_rows(std::uint64_t rows) { rows_ = rows; }
    void add_rows(std::uint64_t rows) { rows_ += rows; }
    [[nodiscard]] std::uint64_t rows() const { return rows_; }

private:
    void show(double seconds);

    bool enabled_ = false;
    std::uint64_t total_ = 0, done_ = 0, rows_ = 0;
    double began_ = 0, shown_ = 0;
};

// Takes the line away before something else is written there.
void hide_progress();

} // namespace velmora::tool
