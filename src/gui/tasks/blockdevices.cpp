// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/blockdevices.h"

#include "platform/udisks/VBlockDevice.h"
#include "platform/udisks/VBlockPartition.h"
#include "platform/udisks/VDiskManager.h"

#include <QFile>

BlockDevices::Search BlockDevices::withUuid(const QString& uuid)
{
    // Most block devices report an empty UUID: searching for it would find a whole disk.
    if (uuid.isEmpty()) {
        return {};
    }
    const VDiskManager manager;
    for (const QString& path : manager.blockDevices({})) {
        std::unique_ptr<VBlockDevice> device = manager.createBlockDevice(path);
        if (!device) {
            return {nullptr, true};
        }
        if (device->idUUID() == uuid) {
            return {std::move(device), false};
        }
    }
    return {};
}

QString BlockDevices::driveOf(const VBlockDevice& device)
{
    return device.drive().split(u'/').constLast().simplified();
}

void BlockDevices::forEachOnDrive(const QString& drive, const std::function<void(VBlockDevice&)>& visit)
{
    if (drive.isEmpty()) {
        return;
    }
    const VDiskManager manager;
    for (const QString& path : manager.blockDevices({})) {
        const std::unique_ptr<VBlockDevice> device = manager.createBlockDevice(path);
        if (device && driveOf(*device) == drive) {
            visit(*device);
        }
    }
}

void BlockDevices::forEachPartition(
    const std::function<bool(const VBlockPartition& partition, const VBlockDevice& disk)>& visit)
{
    const VDiskManager manager;
    for (const QString& path : manager.blockDevices({})) {
        const std::unique_ptr<VBlockPartition> partition = manager.createBlockPartition(path);
        const std::unique_ptr<VBlockDevice> disk = partition ? manager.createBlockDevice(partition->table()) : nullptr;
        if (disk && !visit(*partition, *disk)) {
            return;
        }
    }
}

QString BlockDevices::mountPointOf(const VBlockDevice& device)
{
    const QByteArrayList mountPoints = device.mountPoints();
    return mountPoints.isEmpty() ? QString() : QFile::decodeName(mountPoints.constFirst());
}
