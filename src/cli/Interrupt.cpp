// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Interrupt.h"

#include <csignal>

namespace {

std::atomic<bool> stopRequested = false;
static_assert(std::atomic<bool>::is_always_lock_free, "set by a signal handler");

extern "C" void requestStop(int)
{
    stopRequested = true;
}

} // namespace

void Interrupt::ignoreClosedPipes()
{
    std::signal(SIGPIPE, SIG_IGN);
}

void Interrupt::takeOverSignals()
{
    struct sigaction action = {};
    action.sa_handler = requestStop;
    sigemptyset(&action.sa_mask);
    // No SA_RESTART: a question that waits for its answer must return.
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction current = {};
        // What a parent told us to ignore (nohup, a shell's background job) stays ignored.
        if (sigaction(signal, nullptr, &current) == 0 && current.sa_handler != SIG_IGN)
            sigaction(signal, &action, nullptr);
    }
}

const std::atomic<bool> &Interrupt::requested()
{
    return stopRequested;
}
