#include "interrupt.h"

#include <csignal>

namespace velmora::tool {
namespace {

volatile std::sig_atomic_t interrupted = 0;

void on_interrupt(int signal) {
    (void)signal;
    interrupted = 1;
}

} // namespace

void watch_interrupts() {
    // Not restarted: a read that waits has to end.
    struct sigaction action {};
    action.sa_handler = on_interrupt;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(SIGINT, &action, nullptr);
    // A reader that left ends this quietly, whatever the parent set.
    (void)std::signal(SIGPIPE, SIG_DFL);
}

bool is_interrupted() {
    return interrupted != 0;
}

void end_if_interrupted() {
    if (interrupted == 0) return;
    (void)std::signal(SIGINT, SIG_DFL);
    (void)std::raise(SIGINT);
}

} // namespace velmora::tool
