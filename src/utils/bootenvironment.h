// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/FsTab.h"
#include "utils/kernelcommandline.h"

/// Which environment is running; the numbers are those that travel between threads.
enum class BootEnvironment : int {
    Unknown = -1,
    InstalledSystem = 0, ///< the root is "/" in the fstab
    OtherRoot = 1,       ///< the root is elsewhere in the fstab or not in it, or a squashfs medium of that layout
    LiveSystem = 2,      ///< a generic live system
    RecoveryLive = 3,    ///< the live system of the recovery partition
};

/// The environment that a command line describes.
/// @param fstab the installed system's; not looked at for a live system
[[nodiscard]] BootEnvironment bootEnvironment(const CmdLineInfo& info, const FSTabInfoList& fstab);

/// Whether the command line boots a live system, of whatever kind.
[[nodiscard]] bool isLiveBoot(const CmdLineInfo& info);
