// SPDX-License-Identifier: GPL-3.0-or-later
// Task: finding, mounting and unmounting partitions by UUID, and disks by drive.
#include "gui/tasks/Task.h"

#include "gui/tasks/blockdevices.h"
#include "platform/udisks/VBlockDevice.h"
#include "platform/udisks/VBlockPartition.h"

#include <QDebug>

QString Task::mountDeviceFromUUID(const QString& uuid) const
{
    const BlockDevices::Search search = BlockDevices::withUuid(uuid);
    if (search.isCutShort) {
        qDebug() << "device is null";
    }
    if (!search.device) {
        return {};
    }
    search.device->setWatchChanges(true);
    const QVariantMap options = mountOptionsOf(m_fstabByUuid, uuid);
    if (!options.isEmpty()) {
        qInfo() << "btrfs, mount uuid: " << uuid << ", with compress=zstd";
    }
    // The answer does not matter: a partition that is mounted already gives an error text, and its mount point holds.
    search.device->mount(options);
    return BlockDevices::mountPointOf(*search.device);
}

void Task::unmountDeviceFromUUID(const QString& uuid)
{
    const BlockDevices::Search search = BlockDevices::withUuid(uuid);
    if (search.isCutShort) {
        qDebug() << "device is null";
    }
    if (search.device) {
        search.device->unmount({});
    }
}

QString Task::devicePathFromUUID(const QString& uuid) const
{
    const BlockDevices::Search search = BlockDevices::withUuid(uuid);
    return search.device ? search.device->device() : QString();
}

QPair<QString, QString> Task::diskFromUUID(const QString& uuid) const
{
    QPair<QString, QString> result;
    if (uuid.isEmpty()) {
        return result;
    }
    BlockDevices::forEachPartition([&](const VBlockPartition& partition, const VBlockDevice& disk) {
        if (partition.idUUID() != uuid) {
            return true;
        }
        result = {BlockDevices::driveOf(disk), disk.device()};
        return false;
    });
    return result;
}

QString Task::diskDeviceFromDrive(const QString& drive) const
{
    return getDevicePathsFromDrive(drive).value(0);
}

QStringList Task::getDevicePathsFromDrive(const QString& drive) const
{
    QStringList devices;
    if (drive.isEmpty()) {
        return devices;
    }
    BlockDevices::forEachPartition([&](const VBlockPartition&, const VBlockDevice& disk) {
        if (BlockDevices::driveOf(disk) == drive) {
            devices.append(disk.device());
        }
        return true;
    });
    return devices;
}
