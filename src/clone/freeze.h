// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/mounttable.h"
#include "clone/stillmount.h"

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include <sys/types.h>

namespace kestro::clone {

/// Keeps the writable file systems among some mounts at a standstill while it lives, each once: frozen, or read-only
/// where the file system cannot be frozen. A process of its own sets them going again when this one dies, however it
/// dies.
class FrozenMounts
{
public:
    /// Throws Busy when one of them cannot be held; then none is, and what somebody else froze stays frozen.
    explicit FrozenMounts(const std::vector<Mount>& mounts);
    ~FrozenMounts();
    FrozenMounts(const FrozenMounts&) = delete;
    FrozenMounts& operator=(const FrozenMounts&) = delete;

    /// True when anything had to be held.
    [[nodiscard]] bool any() const { return !m_held.empty(); }
    /// The devices of the file systems that are frozen; without those that are read-only.
    [[nodiscard]] std::set<dev_t> devices() const;
    /// Ends the standstill early. Throws NotRemounted when one of them stays read-only.
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
    void openRoots(const std::vector<Mount>& mounts);
    void startWatchdog();
    void holdAll();
    [[nodiscard]] int holdIn(Held& held, Stillness way);
    bool tellWatchdog(const Held& held, Stillness way) const;
    std::string releaseAll();

    std::vector<Held> m_held;
    pid_t m_watchdog = -1;
    int m_lifeline = -1;
};

} // namespace kestro::clone
