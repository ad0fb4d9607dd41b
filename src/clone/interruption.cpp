// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/interruption.h"

#include "clone/failure.h"

#include <atomic>
#include <csignal>

namespace kestro::clone {

namespace {

// A signal handler can reach nothing but a global.
std::atomic<bool> stopRequested{false};
static_assert(std::atomic<bool>::is_always_lock_free);

void onSignal(int)
{
    stopRequested = true;
}

} // namespace

void watchSignals(WhenAlone whenAlone)
{
    struct sigaction action
    {
    };
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
    if (whenAlone == WhenAlone::GoOn) {
        action.sa_handler = SIG_IGN;
    }
    ::sigaction(SIGHUP, &action, nullptr);
    action.sa_handler = SIG_IGN;
    ::sigaction(SIGPIPE, &action, nullptr);
}

void requestStop()
{
    stopRequested = true;
}

void throwIfInterrupted()
{
    if (stopRequested) {
        throw Failure(ExitCode::Interrupted, "interrupted");
    }
}

} // namespace kestro::clone
