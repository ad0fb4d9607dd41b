// SPDX-License-Identifier: GPL-3.0-or-later
#include "deviceclasses.h"

using namespace Qt::StringLiterals;

namespace {

using Rule = bool (*)(const BlockDeviceInfo&);

bool isDisk(const BlockDeviceInfo& device)
{
    return device.type == "disk"_L1;
}

bool isPartition(const BlockDeviceInfo& device)
{
    return device.type == "part"_L1;
}

bool isLvmPhysicalVolume(const BlockDeviceInfo& device)
{
    return device.fsType == "lvm2"_L1;
}

bool isOpenedMapping(const BlockDeviceInfo& device)
{
    return device.type == "crypt"_L1;
}

constexpr struct
{
    BlockDeviceList DeviceClasses::*kind;
    Rule belongs;
} kinds[] = {
    {&DeviceClasses::disks, isDisk},
    {&DeviceClasses::encryptedContainers,
        [](const BlockDeviceInfo& device) {
            return (isPartition(device) && device.fsType == "luks"_L1)
                || (isOpenedMapping(device) && isLvmPhysicalVolume(device));
        }},
    {&DeviceClasses::lvmPhysicalPartitions,
        [](const BlockDeviceInfo& device) { return isPartition(device) && isLvmPhysicalVolume(device); }},
    {&DeviceClasses::partitions, isPartition},
    {&DeviceClasses::logicalVolumes, [](const BlockDeviceInfo& device) { return device.type == "lvm"_L1; }},
    {&DeviceClasses::openedFileSystems,
        [](const BlockDeviceInfo& device) { return isOpenedMapping(device) && !isLvmPhysicalVolume(device); }},
};

} // namespace

DeviceClasses classifyDevices(const BlockDeviceList& devices)
{
    DeviceClasses classes;
    for (const BlockDevicePtr& device : devices) {
        for (const auto& kind : kinds) {
            if (kind.belongs(*device)) {
                (classes.*kind.kind).append(device);
            }
        }
    }
    return classes;
}
