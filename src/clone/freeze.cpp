// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/freeze.h"

#include "clone/failure.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <map>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestro::clone {

namespace {

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

FrozenMounts::FrozenMounts(const std::vector<Mount>& mounts, Watchdog::Patience patience)
{
    try {
        openRoots(mounts);
        if (any()) {
            startWatchdog(patience);
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

void FrozenMounts::openRoots(std::vector<Mount> mounts)
{
    std::stable_partition(mounts.begin(), mounts.end(), isWritable);
    std::map<dev_t, Held> found;
    for (const Mount& mount : mounts) {
        Held& held = found[mount.device];
        // Any mount of a file system will do, as long as it can be reached. What this mount may not write another may,
        // such as one of another name space.
        if (hasWritableFileSystem(mount) && held.root < 0) {
            held = {openRoot(mount), mount.target, deviceOf(mount), Stillness::None};
        }
    }
    std::string hidden;
    for (const auto& [number, held] : found) {
        if (held.root >= 0) {
            m_held.push_back(held);
        } else {
            hidden += (hidden.empty() ? "" : " and ") + held.target;
        }
    }
    if (!hidden.empty()) {
        throw Failure(ExitCode::Busy, "cannot freeze the source mounted at " + hidden + ": another mount hides it");
    }
}

void FrozenMounts::startWatchdog(Watchdog::Patience patience)
{
    std::vector<int> roots;
    for (const Held& held : m_held) {
        roots.push_back(held.root);
    }
    m_watchdog = std::make_unique<Watchdog>(roots, patience);
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

bool FrozenMounts::tellWatchdog(const Held& held, Stillness way)
{
    return m_watchdog->tell(static_cast<std::size_t>(&held - m_held.data()), way);
}

int FrozenMounts::holdIn(Held& held, Stillness way)
{
    // Told before it happens: when this process is killed in between, there is only nothing to undo.
    if (!tellWatchdog(held, way)) {
        return EPIPE;
    }
    int error = holdMount(held.root, way);
    if (error == 0 && m_watchdog->gaveUp()) {
        // It may have looked before there was anything to release.
        releaseMount(held.root, way);
        error = ETIMEDOUT;
    }
    if (error == 0) {
        held.way = way;
    } else {
        (void)tellWatchdog(held, Stillness::None);
    }
    return error;
}

void FrozenMounts::setPatience(Watchdog::Patience patience)
{
    if (m_watchdog) {
        m_watchdog->setPatience(patience);
    }
}

void FrozenMounts::beat()
{
    if (m_watchdog && m_watchdog->gaveUp()) {
        throwStalled();
    }
    if (m_watchdog) {
        m_watchdog->beat();
    }
}

std::string FrozenMounts::release(Held& held)
{
    if (held.way == Stillness::None) {
        return {};
    }
    const bool released = releaseMount(held.root, held.way);
    // What somebody else freezes from now on is not the watchdog's.
    (void)tellWatchdog(held, Stillness::None);
    return released ? "" : held.target;
}

std::string FrozenMounts::releaseAll()
{
    std::string stuck;
    const bool mine = m_watchdog && m_watchdog->takeOver();
    for (Held& held : m_held) {
        if (const std::string target = mine ? release(held) : ""; !target.empty()) {
            stuck = target;
        }
        ::close(held.root);
    }
    m_held.clear();
    m_watchdog.reset();
    return stuck;
}

void FrozenMounts::throwStalled() const
{
    const auto seconds = std::chrono::ceil<std::chrono::seconds>(m_watchdog->patience()).count();
    throw Failure(ExitCode::Stalled,
        "nothing went on for " + std::to_string(seconds) + " seconds while the source mounted at "
            + m_held.front().target + " stood still; it was set going again, and the backup is given up");
}

void FrozenMounts::thaw()
{
    if (m_watchdog && !m_watchdog->takeOver()) {
        throwStalled();
    }
    const std::string stuck = releaseAll();
    if (!stuck.empty()) {
        throw Failure(ExitCode::NotRemounted, "cannot make the source at " + stuck + " writable again");
    }
}

} // namespace kestro::clone
