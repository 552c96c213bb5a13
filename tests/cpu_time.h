// How much work something is, for tests that a reader's work grows with its input and no faster. The limits
// are far above what a busy machine changes, and far below what reading anything again and again would cost.
#pragma once

#include <algorithm>
#include <ctime>

// Seconds that the processor spends in this thread, the least of three times.
template <typename Work>
double cpu_seconds(const Work& work) {
    double least = 1e9;
    for (int i = 0; i < 3; ++i) {
        timespec begin{}, end{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &begin);
        work();
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &end);
        least = std::min(least, static_cast<double>(end.tv_sec - begin.tv_sec) +
                                    static_cast<double>(end.tv_nsec - begin.tv_nsec) * 1e-9);
    }
    return least;
}
