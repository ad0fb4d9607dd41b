// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/blockdevice.h"
#include "clone/mounttable.h"

#include <vector>

namespace kestro::clone {

/// Keeps everything on a device unmounted. When it cannot unmount something it mounts the rest again and throws Busy.
class UnmountedTarget
{
public:
    explicit UnmountedTarget(const BlockDevice& target);
    /// Mounts everything again, as far as that works, unless keep was called.
    ~UnmountedTarget();
    UnmountedTarget(const UnmountedTarget&) = delete;
    UnmountedTarget& operator=(const UnmountedTarget&) = delete;

    /// From now on the device is written: until that has come to its end nothing may be mounted.
    void keep() { m_keep = true; }

    /// Mounts everything at its old place with its old options, in the old order. A file system of another kind than
    /// before gets those options only that are not peculiar to the old one. Throws NotRemounted.
    void mountAgain();

private:
    /// What has been unmounted, first mount first.
    std::vector<Mount> m_mounts;
    bool m_keep = false;
};

} // namespace kestro::clone
