// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/mountedpartition.h"

#include "platform/udisks/VBlockDevice.h"
#include "platform/udisks/VDiskManager.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace {

QString withSlash(const QString& path)
{
    return path.endsWith(u'/') ? path : path + u'/';
}

} // namespace

QList<MountedPartition> mountedPartitions()
{
    QList<MountedPartition> partitions;
    const VDiskManager manager;
    const QStringList paths = manager.blockDevices();
    for (const QString& path : paths) {
        const auto device = manager.createBlockDevice(path);
        if (!device || device->idUUID().isEmpty()) {
            continue;
        }
        const QByteArrayList mountPoints = device->mountPoints();
        for (const QByteArray& mountPoint : mountPoints) {
            partitions.append({QFile::decodeName(mountPoint), device->idUUID()});
        }
    }
    return partitions;
}

QString partitionUuidOf(const QString& directory, const QList<MountedPartition>& partitions)
{
    MountedPartition deepest;
    for (const MountedPartition& partition : partitions) {
        if (withSlash(directory).startsWith(withSlash(partition.mountPoint))
            && partition.mountPoint.size() > deepest.mountPoint.size()) {
            deepest = partition;
        }
    }
    return deepest.uuid;
}
