// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/FsTab.h"
#include "utils/blkid.h"
#include "utils/partitioncheckitem.h"

#include <QList>
#include <QStringList>

/// The partitions that a check would offer, before anything was checked or classified.
struct PartitionCheckCandidates
{
    QList<PartitionCheckItem> fileSystems; ///< with a file-system UUID; status 0
    QList<PartitionCheckItem> blanks;      ///< without one, so faulty: status -1; they come last in the offer
};

/// Chooses the partitions among the block devices, in their order.
///
/// Containers, loop devices, whole disks, the recovery partition and the blank partitions behind it on the same disk
/// are left out.
[[nodiscard]] PartitionCheckCandidates choosePartitionsToCheck(const QList<Utils::BlkIdInfo>& devices);

/// Says of each item whether the installed system's fstab lists it, and where it mounts those.
/// @param systemUuids the UUIDs that the system mounts, which may name more than the fstab at hand
void classifyPartitions(QList<PartitionCheckItem>& items, const QStringList& systemUuids, const FSTabInfoList& fstab);
