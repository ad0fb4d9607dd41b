// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/blockdevice.h"
#include "clone/extents.h"
#include "clone/file.h"

#include <string>
#include <vector>

namespace kestro::clone {

/// A partition of a disk.
struct Partition
{
    unsigned number = 0;
    Extent range;
    /// An MBR extended partition: holds only tables and other partitions.
    bool isExtended = false;
};

/// The partitions of a GPT or MBR disk, logical ones included; empty when it has no table. Ranges are cut at the size
/// of the disk.
[[nodiscard]] std::vector<Partition> partitionsOf(const BlockDevice& disk);

/// Where the tables of an MBR extended partition stand: one block of the disk's sector size for each logical
/// partition. The chain is followed as far as it stays inside the extended partition.
[[nodiscard]] ExtentList extendedTables(const File& disk, const Extent& extended, std::uint32_t sectorSize);

/// What lies outside all partitions: where boot code and tables may be. Of a long gap only the first and the last
/// stretch counts.
[[nodiscard]] ExtentList gapsOf(const std::vector<Partition>& partitions, std::uint64_t diskSize);

/// A device node for a partition: the kernel's own, or a read-only loop device that lives as long as this object.
class PartitionNode
{
public:
    PartitionNode(const BlockDevice& disk, const Extent& range);

    /// Empty when there is neither.
    [[nodiscard]] const std::string& path() const { return m_path; }

private:
    File m_loop;
    std::string m_path;
};

} // namespace kestro::clone
