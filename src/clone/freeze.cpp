// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/freeze.h"

#include "clone/failure.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <map>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kestro::clone {

namespace {

/// What the watchdog hears before each step: how which mount is about to be held.
struct Step
{
    std::size_t mount = 0;
    Stillness way = Stillness::None;
};

/// Waits for the end of the other process in a session of its own, so that nothing aimed at that one's group reaches
/// this one. Only async-signal-safe calls: the other process may have threads.
[[noreturn]] void guardLife(int lifeline, const std::vector<int>& roots, std::vector<Stillness>& ways)
{
    ::setsid();
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGQUIT}) {
        ::signal(signal, SIG_IGN);
    }
    // A reader of our standard output must see its end when the other process ends.
    ::close(STDIN_FILENO);
    ::close(STDOUT_FILENO);
    ::close(STDERR_FILENO);
    Step step;
    ssize_t got = 0;
    while ((got = ::read(lifeline, &step, sizeof step)) == sizeof step || (got < 0 && errno == EINTR)) {
        if (got > 0) {
            ways[step.mount] = step.way;
        }
    }
    for (std::size_t i = 0; i < roots.size(); ++i) {
        releaseMount(roots[i], ways[i]);
    }
    ::_exit(0);
}

/// The root of a mount, open; -1 when another mount hides it.
int openRoot(const Mount& mount)
{
    const int root = ::open(mount.target.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    struct statx status
    {
    };
    if (root >= 0 && ::statx(root, "", AT_EMPTY_PATH, STATX_MNT_ID, &status) == 0 && status.stx_mnt_id == mount.id) {
        return root;
    }
    if (root >= 0) {
        ::close(root);
    }
    return -1;
}

} // namespace

FrozenMounts::FrozenMounts(const std::vector<Mount>& mounts)
{
    try {
        openRoots(mounts);
        if (any()) {
            startWatchdog();
            holdAll();
        }
    } catch (...) {
        releaseAll();
        throw;
    }
}

FrozenMounts::~FrozenMounts()
{
    releaseAll();
}

std::set<dev_t> FrozenMounts::devices() const
{
    std::set<dev_t> devices;
    for (const Held& held : m_held) {
        if (held.way == Stillness::Frozen) {
            devices.insert(held.device);
        }
    }
    return devices;
}

void FrozenMounts::openRoots(const std::vector<Mount>& mounts)
{
    std::map<dev_t, Held> found;
    for (const Mount& mount : mounts) {
        Held& held = found[mount.device];
        // Any mount of a file system will do, as long as it can be reached.
        if (isWritable(mount) && held.root < 0) {
            held = {openRoot(mount), mount.target, deviceOf(mount), Stillness::None};
        }
    }
    std::string hidden;
    for (const auto& [number, held] : found) {
        if (held.root >= 0) {
            m_held.push_back(held);
        } else {
            hidden += held.target;
        }
    }
    if (!hidden.empty()) {
        throw Failure(ExitCode::Busy, "cannot freeze the source mounted at " + hidden + ": another mount hides it");
    }
}

void FrozenMounts::startWatchdog()
{
    std::vector<int> roots;
    for (const Held& held : m_held) {
        roots.push_back(held.root);
    }
    std::vector<Stillness> ways(roots.size(), Stillness::None);
    std::array<int, 2> ends{-1, -1};
    const int failed = ::pipe2(ends.data(), O_CLOEXEC);
    m_watchdog = failed == 0 ? ::fork() : -1;
    if (m_watchdog == 0) {
        ::close(ends[1]);
        guardLife(ends[0], roots, ways);
    }
    ::close(ends[0]);
    m_lifeline = ends[1];
    if (m_watchdog < 0) {
        throw Failure(ExitCode::Internal, "cannot start a process: " + errorText(errno));
    }
}

void FrozenMounts::holdAll()
{
    for (Held& held : m_held) {
        int error = holdIn(held, Stillness::Frozen);
        std::string reason = errorText(error);
        if (error == EOPNOTSUPP) {
            error = holdIn(held, Stillness::ReadOnly);
            reason += "; nor can it be made read-only: " + errorText(error);
        }
        if (error != 0) {
            throw Failure(ExitCode::Busy, "cannot freeze the mounted source at " + held.target + ": " + reason);
        }
    }
}

bool FrozenMounts::tellWatchdog(const Held& held, Stillness way) const
{
    const Step step{static_cast<std::size_t>(&held - m_held.data()), way};
    return ::write(m_lifeline, &step, sizeof step) == sizeof step;
}

int FrozenMounts::holdIn(Held& held, Stillness way)
{
    // Told before it happens: when this process is killed in between, there is only nothing to undo.
    if (!tellWatchdog(held, way)) {
        return EPIPE;
    }
    const int error = holdMount(held.root, way);
    if (error == 0) {
        held.way = way;
    } else {
        tellWatchdog(held, Stillness::None);
    }
    return error;
}

std::string FrozenMounts::releaseAll()
{
    std::string stuck;
    for (Held& held : m_held) {
        if (held.way != Stillness::None && !releaseMount(held.root, held.way)) {
            stuck = held.target;
        }
        // What somebody else freezes from now on is not the watchdog's.
        if (held.way != Stillness::None) {
            tellWatchdog(held, Stillness::None);
        }
        ::close(held.root);
    }
    m_held.clear();
    if (m_lifeline >= 0) {
        ::close(std::exchange(m_lifeline, -1));
        ::waitpid(m_watchdog, nullptr, 0);
    }
    return stuck;
}

void FrozenMounts::thaw()
{
    const std::string stuck = releaseAll();
    if (!stuck.empty()) {
        throw Failure(ExitCode::NotRemounted, "cannot make the source at " + stuck + " writable again");
    }
}

} // namespace kestro::clone
