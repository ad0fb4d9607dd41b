// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

/// A place where a file system is mounted.
struct MountedPartition
{
    QString mountPoint; ///< absolute path
    QString uuid;       ///< of the file system; never empty
};

/// The mounted file systems that UDisks2 knows and that have a UUID; empty without a daemon.
[[nodiscard]] QList<MountedPartition> mountedPartitions();

/// The UUID of the partition that holds @p directory: that of the deepest mount point above it (or at it); empty when
/// there is none.
/// @param directory absolute path
[[nodiscard]] QString partitionUuidOf(const QString& directory, const QList<MountedPartition>& partitions);
