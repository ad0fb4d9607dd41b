// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/freeze.h"

#include "clone/failure.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <set>
#include <utility>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kestro::clone {

namespace {

void thawAll(const std::vector<int>& folders)
{
    for (const int folder : folders) {
        ::ioctl(folder, FITHAW, 0);
    }
}

/// Waits for the end of the other process in a session of its own, so that nothing aimed at that one's group reaches
/// this one. Only async-signal-safe calls: the other process may have threads.
[[noreturn]] void guardLife(int lifeline, const std::vector<int>& folders)
{
    ::setsid();
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGQUIT}) {
        ::signal(signal, SIG_IGN);
    }
    // A reader of our standard output must see its end when the other process ends.
    ::close(STDIN_FILENO);
    ::close(STDOUT_FILENO);
    ::close(STDERR_FILENO);
    char byte = 0;
    while (::read(lifeline, &byte, 1) < 0 && errno == EINTR) { }
    thawAll(folders);
    ::_exit(0);
}

} // namespace

FrozenMounts::FrozenMounts(const std::vector<Mount>& mounts)
{
    std::set<dev_t> seen;
    std::vector<std::string> paths;
    for (const Mount& mount : mounts) {
        if (isWritable(mount) && seen.insert(mount.device).second) {
            m_folders.push_back(::open(mount.target.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
            paths.push_back(mount.target);
        }
    }
    if (m_folders.empty()) {
        return;
    }
    startWatchdog();
    for (std::size_t i = 0; i < m_folders.size(); ++i) {
        if (::ioctl(m_folders[i], FIFREEZE, 0) != 0) {
            const int error = errno;
            thaw();
            throw Failure(ExitCode::Busy, "cannot freeze the mounted source at " + paths[i] + ": " + errorText(error));
        }
    }
}

FrozenMounts::~FrozenMounts()
{
    thaw();
}

void FrozenMounts::startWatchdog()
{
    std::array<int, 2> ends{-1, -1};
    const int failed = ::pipe2(ends.data(), O_CLOEXEC);
    m_watchdog = failed == 0 ? ::fork() : -1;
    if (m_watchdog == 0) {
        ::close(ends[1]);
        guardLife(ends[0], m_folders);
    }
    ::close(ends[0]);
    m_lifeline = ends[1];
    if (m_watchdog < 0) {
        throw Failure(ExitCode::Internal, "cannot start a process: " + errorText(errno));
    }
}

void FrozenMounts::thaw()
{
    const auto folders = std::exchange(m_folders, {});
    if (folders.empty()) {
        return;
    }
    thawAll(folders);
    for (const int folder : folders) {
        ::close(folder);
    }
    ::close(m_lifeline);
    ::waitpid(m_watchdog, nullptr, 0);
}

} // namespace kestro::clone
