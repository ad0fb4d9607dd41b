// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/blockdeviceinfo.h"

/// The devices of one list by kind, each kind in the order of the list. A device can be of several kinds.
struct DeviceClasses
{
    BlockDeviceList disks;
    BlockDeviceList encryptedContainers;   ///< LUKS partitions, and opened LUKS mappings that are LVM physical volumes
    BlockDeviceList lvmPhysicalPartitions; ///< partitions that are LVM physical volumes
    BlockDeviceList partitions;            ///< all partitions
    BlockDeviceList logicalVolumes;        ///< LVM logical volumes
    BlockDeviceList openedFileSystems;     ///< opened LUKS mappings that are no LVM physical volume
};

/// Sorts a freshly loaded list into its kinds. Devices of other types (loop, rom, …) are of none.
[[nodiscard]] DeviceClasses classifyDevices(const BlockDeviceList& devices);
