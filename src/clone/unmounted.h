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
    /// Mounts again what mountAgain did not, as far as that works.
    ~UnmountedTarget();
    UnmountedTarget(const UnmountedTarget&) = delete;
    UnmountedTarget& operator=(const UnmountedTarget&) = delete;

    /// Mounts everything at its old place with its old options, in the old order. Throws NotRemounted.
    void mountAgain();

private:
    /// What has been unmounted, first mount first.
    std::vector<Mount> m_mounts;
};

} // namespace kestro::clone
