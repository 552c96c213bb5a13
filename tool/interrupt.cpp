#include "interrupt.h"

#include <csignal>
#include <unistd.h>

namespace velmora::tool {
namespace {

volatile std::sig_atomic_t interrupts = 0;

void on_interrupt(int signal) {
    (void)signal;
    // Patience has an end: what waits for a reader that does not read goes on waiting.
    interrupts = interrupts + 1;
    if (interrupts >= 3) _exit(128 + SIGINT);
}

} // namespace

void watch_interrupts() {
    // Not restarted: a read that waits has to end.
    struct sigaction action {};
    action.sa_handler = on_interrupt;
    sigaction(SIGINT, &action, nullptr);
    // A reader that left ends this quietly, whatever the parent set.
    (void)std::signal(SIGPIPE, SIG_DFL);
}

bool is_interrupted() {
    return interrupts != 0;
}

void end_if_interrupted() {
    if (interrupts == 0) return;
    (void)std::signal(SIGINT, SIG_DFL);
    (void)std::raise(SIGINT);
}

} // namespace velmora::tool
