// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

/// Which device an image may be written to.
namespace RestoreRules {

/// Whether an image is one of the installed system, by "system.kim" anywhere in its path.
[[nodiscard]] bool isSystemImage(const QString& imagePath);

/// Whether the disk that was found for a whole-disk image is right as it stands: it is the disk of the root device, or
/// no root device restricts it.
[[nodiscard]] bool isAccepted(const QString& rootDevice, const QString& disk);

/// Of several device nodes of one drive the last one that the root device lies on; empty when it lies on none.
[[nodiscard]] QString lastDiskOfRoot(const QString& rootDevice, const QStringList& disks);

/// Where a partition image would go.
struct PartitionTarget
{
    QString imageUuid; ///< the partition that was imaged
    QString device;    ///< its device node now
    QString rootUuid;  ///< the installed system's root partition
    QString rootDisk;  ///< the whole disk that holds it; empty when unknown
};

/// Whether a system image is aimed at another disk than the root partition's.
[[nodiscard]] bool isMisdirected(const PartitionTarget& target);

} // namespace RestoreRules
