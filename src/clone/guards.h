// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/blockdevice.h"
#include "clone/file.h"
#include "clone/mounttable.h"

#include <string>
#include <vector>

namespace kestro::clone {

/// Keeps other runs away from a device for as long as it lives.
using DeviceLocks = std::vector<File>;

/// Locks a device against every other run. A run on a disk and one on a partition of it exclude each other; runs on two
/// partitions of a disk do not. Throws Busy, and Refused for another device.
[[nodiscard]] DeviceLocks lockAgainstOtherRuns(const BlockDevice& device);

/// Throws Refused when the file is not this device: a link may lead elsewhere by the time it is opened again.
void refuseAnotherDevice(const File& opened, const BlockDevice& device);

/// Throws Overlap when the image is, or would be, on the device, or on something that is built on it.
void refuseImageOn(const BlockDevice& device, const std::string& image);

/// Throws Refused when the image would be made in the folder of the devices: a mistyped device.
void refuseImageAmongDevices(const std::string& image);

/// The mounts of a device and of everything that is built on it, in the order in which they were made.
[[nodiscard]] std::vector<Mount> mountsOf(const BlockDevice& device);

/// Throws Busy when the kernel swaps to the device or to something that is built on it.
void refuseSwapOn(const BlockDevice& device);

/// Throws Busy when somebody keeps the device, a partition of it, or a device that is built on it for himself although
/// no mount or swap space there is known: a further device of a mounted btrfs, or a mount of another name space. It
/// cannot be frozen, and would be changed while it is read. Waits a moment for those who only look.
void refuseUnknownUser(const BlockDevice& device);

/// Throws TooSmall, with both sizes.
void refuseSmallTarget(const BlockDevice& target, std::uint64_t needed);

} // namespace kestro::clone
