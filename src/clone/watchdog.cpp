// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/watchdog.h"

#include "clone/failure.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <new>

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kestro::clone {

namespace {

/// Beats that come faster say no more.
constexpr auto beatInterval = std::chrono::milliseconds(250);

/// Who releases the mounts; each of the two processes may take that on itself once.
enum class Keeper { Nobody, Tool, Watchdog };

/// What the watchdog hears. Each message begins its waiting anew.
struct Message
{
    /// The mount that the message is about; none when it is negative.
    int mount = -1;
    Stillness way = Stillness::None;
    /// In milliseconds.
    int patience = 0;
};

} // namespace

struct WatchdogState
{
    std::atomic<Keeper> keeper{Keeper::Nobody};
    static_assert(std::atomic<Keeper>::is_always_lock_free);

    /// Only one of the two can; that one as often as it likes.
    bool take(Keeper taker)
    {
        Keeper present = Keeper::Nobody;
        return keeper.compare_exchange_strong(present, taker) || present == taker;
    }
};

namespace {

void releaseAll(const std::vector<int>& roots, std::vector<Stillness>& ways)
{
    for (std::size_t i = 0; i < roots.size(); ++i) {
        // What is not held yet, because holding it takes so long, is tried again at the end.
        ways[i] = releaseMount(roots[i], ways[i]) ? Stillness::None : ways[i];
    }
}

/// In a session of its own, so that nothing aimed at the other process's group reaches this one.
void standApart()
{
    ::setsid();
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGQUIT}) {
        ::signal(signal, SIG_IGN);
    }
    // A reader of our standard output must see its end when the other process ends.
    ::close(STDIN_FILENO);
    ::close(STDOUT_FILENO);
    ::close(STDERR_FILENO);
}

/// The life of the watchdog. Only async-signal-safe calls: the other process may have threads.
[[noreturn]] void watch(
    int lifeline, const std::vector<int>& roots, std::vector<Stillness>& ways, int patience, WatchdogState& state)
{
    standApart();
    pollfd line{lifeline, POLLIN, 0};
    Message message;
    for (bool alive = true; alive;) {
        const int ready = ::poll(&line, 1, patience);
        if (ready == 0 && state.take(Keeper::Watchdog)) {
            releaseAll(roots, ways);
        }
        if (ready <= 0) {
            // Whoever releases the mounts, nothing is left to wait for but the end.
            patience = ready == 0 ? -1 : patience;
            continue;
        }
        const ssize_t got = ::read(lifeline, &message, sizeof message);
        alive = got == sizeof message || (got < 0 && errno == EINTR);
        if (got == sizeof message && state.keeper != Keeper::Watchdog) {
            patience = message.patience;
            if (message.mount >= 0) {
                ways[static_cast<std::size_t>(message.mount)] = message.way;
            }
        }
    }
    releaseAll(roots, ways);
    ::_exit(0);
}

} // namespace

Watchdog::Watchdog(const std::vector<int>& roots, Patience patience)
    : m_patience(patience)
    , m_lastBeat(std::chrono::steady_clock::now())
{
    std::vector<Stillness> ways(roots.size(), Stillness::None);
    std::array<int, 2> ends{-1, -1};
    void* memory = ::mmap(nullptr, sizeof(WatchdogState), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory != MAP_FAILED && ::pipe2(ends.data(), O_CLOEXEC) == 0) {
        m_state = new (memory) WatchdogState;
        m_process = ::fork();
    }
    if (m_process == 0) {
        ::close(ends[1]);
        watch(ends[0], roots, ways, static_cast<int>(patience.count()), *m_state);
    }
    const int error = errno;
    ::close(ends[0]);
    m_lifeline = ends[1];
    if (m_process < 0) {
        end();
        throw Failure(ExitCode::Internal, "cannot start a process: " + errorText(error));
    }
    // The run must not wait for a watchdog that somebody stopped.
    ::fcntl(m_lifeline, F_SETFL, O_NONBLOCK);
}

Watchdog::~Watchdog()
{
    end();
}

void Watchdog::end()
{
    ::close(m_lifeline);
    if (m_process > 0) {
        ::waitpid(m_process, nullptr, 0);
    }
    if (m_state != nullptr) {
        ::munmap(m_state, sizeof(WatchdogState));
    }
}

bool Watchdog::send(int mount, Stillness way)
{
    const Message message{mount, way, static_cast<int>(m_patience.load().count())};
    return ::write(m_lifeline, &message, sizeof message) == sizeof message;
}

bool Watchdog::tell(std::size_t mount, Stillness way)
{
    return send(static_cast<int>(mount), way);
}

void Watchdog::setPatience(Patience patience)
{
    m_patience = patience;
    (void)send(-1, Stillness::None);
}

void Watchdog::beat()
{
    const auto now = std::chrono::steady_clock::now();
    auto last = m_lastBeat.load();
    if (now - last >= beatInterval && m_lastBeat.compare_exchange_strong(last, now)) {
        // When the pipe is full the watchdog has more than enough to hear.
        (void)send(-1, Stillness::None);
    }
}

bool Watchdog::gaveUp() const
{
    return m_state->keeper == Keeper::Watchdog;
}

bool Watchdog::takeOver()
{
    return m_state->take(Keeper::Tool);
}

} // namespace kestro::clone
