// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>
#include <memory>

class VBlockDevice;
class VBlockPartition;
class VDiskManager;

/// Look-ups in the list of block devices that tasks share.
namespace BlockDevices {

/// The outcome of a search.
struct Search
{
    std::unique_ptr<VBlockDevice> device; ///< null when none matches
    bool isCutShort = false;              ///< a listed device could not be made, which ends the search
};

/// The first device with that file-system UUID; an empty UUID matches none.
[[nodiscard]] Search withUuid(const QString& uuid);

/// The identifier of a device's drive: the last part of the drive's object path; empty when the device has none.
[[nodiscard]] QString driveOf(const VBlockDevice& device);

/// Calls @p visit for every device whose drive's object path ends in @p drive; for none when that is empty.
void forEachOnDrive(const QString& drive, const std::function<void(VBlockDevice&)>& visit);

/// Calls @p visit with every partition and its whole disk until it returns false. Partitions whose disk is not there
/// are left out.
void forEachPartition(const std::function<bool(const VBlockPartition& partition, const VBlockDevice& disk)>& visit);

/// The first mount point of a device; empty when it is not mounted.
[[nodiscard]] QString mountPointOf(const VBlockDevice& device);

} // namespace BlockDevices
