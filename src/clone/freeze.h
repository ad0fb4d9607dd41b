// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/mounttable.h"
#include "clone/stillmount.h"
#include "clone/watchdog.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

#include <sys/types.h>

namespace kestro::clone {

/// Keeps the writable file systems among some mounts at a standstill while it lives, each once: frozen, or read-only
/// where the file system cannot be frozen. A process of its own sets them going again when this one dies, however it
/// dies, or gives no sign of life for too long.
class FrozenMounts
{
public:
    /// Throws Busy when one of them cannot be held; then none is, and what somebody else froze stays frozen.
    /// @param patience how long this process may give no sign of life
    FrozenMounts(const std::vector<Mount>& mounts, Watchdog::Patience patience);
    ~FrozenMounts();
    FrozenMounts(const FrozenMounts&) = delete;
    FrozenMounts& operator=(const FrozenMounts&) = delete;

    /// True when anything had to be held.
    [[nodiscard]] bool any() const { return !m_held.empty(); }
    /// The devices of the file systems that are frozen; without those that are read-only.
    [[nodiscard]] std::set<dev_t> devices() const;
    /// The run may give no sign of life so long from now on.
    void setPatience(Watchdog::Patience patience);
    /// Gives a sign of life; from any thread. Throws Stalled when the standstill has been ended for want of one.
    void beat();
    /// Ends the standstill early. Throws NotRemounted when one of them stays read-only, and Stalled when the standstill
    /// had ended before: what was read is worth nothing then.
    void thaw();

private:
    struct Held
    {
        /// An open folder: the root of the mount.
        int root = -1;
        std::string target;
        dev_t device = 0;
        Stillness way = Stillness::None;
    };
    void openRoots(std::vector<Mount> mounts);
    void startWatchdog(Watchdog::Patience patience);
    void holdAll();
    [[nodiscard]] int holdIn(Held& held, Stillness way);
    [[nodiscard]] bool tellWatchdog(const Held& held, Stillness way);
    std::string release(Held& held);
    std::string releaseAll();
    [[noreturn]] void throwStalled() const;

    std::vector<Held> m_held;
    std::unique_ptr<Watchdog> m_watchdog;
};

} // namespace kestro::clone
