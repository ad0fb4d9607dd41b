// SPDX-License-Identifier: GPL-3.0-or-later
#include "uuidmount.h"

#include "platform/udisks/VBlockDevice.h"
#include "platform/udisks/VBlockPartition.h"
#include "platform/udisks/VDiskManager.h"

#include <QFile>

std::unique_ptr<VBlockDevice> findBlockDevice(const QString& uuid)
{
    if (uuid.isEmpty()) {
        return nullptr;
    }
    const VDiskManager manager;
    for (const QString& path : manager.blockDevices({})) {
        std::unique_ptr<VBlockDevice> device = manager.createBlockDevice(path);
        if (device && device->idUUID() == uuid) {
            return device;
        }
    }
    return nullptr;
}

DeviceMount mountBlockDevice(VBlockDevice& device)
{
    const bool wasMounted = !device.mountPoints().isEmpty();
    device.setWatchChanges(true);
    const QString answer = device.mount({});
    QString mountPoint = answer.simplified();
    // An error text contains a blank, and so does the mount point of a label with one. One that ends in a wide blank
    // has lost it.
    if (mountPoint != answer || mountPoint.contains(u' ')) {
        const QByteArrayList mountPoints = device.mountPoints();
        mountPoint = mountPoints.isEmpty() ? QString() : QFile::decodeName(mountPoints.first());
    }
    return {mountPoint, !wasMounted && !mountPoint.isEmpty()};
}
