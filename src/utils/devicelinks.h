// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The absolute, cleaned path that a symbolic link names, whether or not that exists; empty for what is no link.
[[nodiscard]] QString linkTarget(const QString& path);

/// The name of the first link in the directory (such as "/dev/disk/by-uuid") that leads to the target; empty when none
/// does.
[[nodiscard]] QString linkNameOf(const QString& directory, const QString& target);

/// A device given by path that turned out to be a link.
struct LinkedDevice
{
    QString target; ///< where the link leads; empty for a path that is no link
    QString uuid;   ///< of the file system there; empty when no by-uuid link leads to the same target
};

/// Follows a link such as "/dev/mapper/vg-root" to its device and finds that device in "/dev/disk/by-uuid".
[[nodiscard]] LinkedDevice resolveDeviceLink(const QString& path);
