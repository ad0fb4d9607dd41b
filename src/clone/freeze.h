// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/mounttable.h"

#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

namespace kestro::clone {

/// Keeps the writable file systems among some mounts frozen while it lives (FIFREEZE, see ioctl_fs(2)), each once. A
/// process of its own thaws them when this one dies, however it dies.
class FrozenMounts
{
public:
    /// Throws Busy when one of them cannot be frozen; then none is.
    explicit FrozenMounts(const std::vector<Mount>& mounts);
    ~FrozenMounts();
    FrozenMounts(const FrozenMounts&) = delete;
    FrozenMounts& operator=(const FrozenMounts&) = delete;

    /// True when anything had to be frozen.
    [[nodiscard]] bool any() const { return !m_folders.empty(); }
    /// Ends the freeze early.
    void thaw();

private:
    void startWatchdog();

    /// Open folders of the file systems, as file descriptors.
    std::vector<int> m_folders;
    pid_t m_watchdog = -1;
    int m_lifeline = -1;
};

} // namespace kestro::clone
