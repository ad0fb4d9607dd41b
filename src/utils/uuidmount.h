// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <memory>

class VBlockDevice;

/// The first block device whose file system or container carries the UUID, or null. An empty UUID, which most devices
/// have, names none.
[[nodiscard]] std::unique_ptr<VBlockDevice> findBlockDevice(const QString& uuid);

/// Where a device is mounted, and since when.
struct DeviceMount
{
    QString mountPoint;        ///< empty when it could not be mounted
    bool isMountedNow = false; ///< mounted by this call, not before
};

/// Mounts the device where the daemon chooses, unless it is mounted already.
[[nodiscard]] DeviceMount mountBlockDevice(VBlockDevice& device);
