// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include <sys/types.h>

namespace kestro::clone {

/// A block device as the kernel describes it.
struct BlockDevice
{
    std::string path;
    dev_t number = 0;
    /// In bytes.
    std::uint64_t size = 0;
    /// The logical sector size, in bytes.
    std::uint32_t sectorSize = 512;
    bool isPartition = false;
    /// The maker's name of the disk; empty when the kernel knows none.
    std::string model;
};

/// True when the path is a block device, links followed.
[[nodiscard]] bool isBlockDevice(const std::string& path);

/// Opens the device for a moment. Throws as File::open, Refused for what is no block device, and Internal when /sys
/// does not describe it.
[[nodiscard]] BlockDevice blockDeviceAt(const std::string& path);

/// The device itself and everything that it is made of: the disk of a partition, what lies below a device-mapper or
/// RAID device, and so on.
[[nodiscard]] std::set<dev_t> foundationsOf(dev_t device);

/// True when the first device is, or is built on, the second one.
[[nodiscard]] bool liesOn(dev_t device, dev_t other);

/// The kernel's nodes of the device-mapper, RAID and like devices that the device itself, not a partition of it, is a
/// part of.
[[nodiscard]] std::vector<std::string> nodesBuiltOn(const BlockDevice& device);

/// The file that a loop device stands for; empty for any other device.
[[nodiscard]] std::string loopFileOf(dev_t device);

/// The kernel's node of the partition of this disk that begins at this byte; empty when it knows none.
[[nodiscard]] std::string partitionNodeAt(const BlockDevice& disk, std::uint64_t offset, std::uint64_t length);

/// The node of the disk that a partition is on; empty for what is no partition.
[[nodiscard]] std::string diskNodeOf(const BlockDevice& partition);

/// The kernel's nodes of all partitions of this disk.
[[nodiscard]] std::vector<std::string> partitionNodesOf(const BlockDevice& disk);

/// Makes the kernel forget what it has cached of the device.
void forgetCachedBlocks(const std::string& path);

} // namespace kestro::clone
