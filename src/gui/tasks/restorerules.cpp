// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/restorerules.h"

using namespace Qt::StringLiterals;

bool RestoreRules::isSystemImage(const QString& imagePath)
{
    // Deliberate: the whole path counts, not only the file name.
    return imagePath.contains("system.kim"_L1);
}

// Deliberate, here and below: device nodes are compared as text, so "/dev/sda" counts as the disk of "/dev/sdaa1".
bool RestoreRules::isAccepted(const QString& rootDevice, const QString& disk)
{
    return !disk.isEmpty() && (rootDevice.isEmpty() || rootDevice.startsWith(disk));
}

QString RestoreRules::lastDiskOfRoot(const QString& rootDevice, const QStringList& disks)
{
    QString last;
    for (const QString& disk : disks) {
        if (!disk.isEmpty() && rootDevice.startsWith(disk)) {
            last = disk;
        }
    }
    return last;
}

bool RestoreRules::isMisdirected(const PartitionTarget& target)
{
    return target.imageUuid != target.rootUuid && !target.rootDisk.isEmpty()
        && !target.device.startsWith(target.rootDisk);
}
