// SPDX-License-Identifier: GPL-3.0-or-later
#include "devicetree.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace {

/// Each classified device once.
BlockDeviceList classifiedDevices(const DeviceClasses& classes)
{
    BlockDeviceList devices;
    QSet<const BlockDeviceInfo*> seen;
    for (const BlockDeviceList* kind : {&classes.disks, &classes.encryptedContainers, &classes.lvmPhysicalPartitions,
             &classes.partitions, &classes.logicalVolumes, &classes.openedFileSystems}) {
        for (const BlockDevicePtr& device : *kind) {
            if (!seen.contains(device.get())) {
                seen.insert(device.get());
                devices.append(device);
            }
        }
    }
    return devices;
}

/// Devices of different major numbers count as equal, deliberately: this is no strict weak order.
bool goesBefore(const BlockDevicePtr& a, const BlockDevicePtr& b)
{
    return a && b && a->major == b->major && a->minor < b->minor;
}

} // namespace

void linkDeviceTree(const DeviceClasses& classes)
{
    const BlockDeviceList devices = classifiedDevices(classes);
    unlinkDevices(devices);
    QHash<QString, BlockDevicePtr> byKname;
    byKname.reserve(devices.size());
    for (auto device = devices.crbegin(); device != devices.crend(); ++device) {
        byKname.insert((*device)->kname, *device);
    }
    for (const BlockDevicePtr& device : devices) {
        const BlockDevicePtr parent = device->pkname.isEmpty() ? BlockDevicePtr() : byKname.value(device->pkname);
        if (parent && parent != device) {
            device->parent = parent;
            parent->children.append(device);
        }
    }
    for (const BlockDevicePtr& device : devices) {
        std::stable_sort(device->children.begin(), device->children.end(), goesBefore);
    }
}

void unlinkDevices(const BlockDeviceList& devices)
{
    for (const BlockDevicePtr& device : devices) {
        device->parent.reset();
        device->children.clear();
    }
}
