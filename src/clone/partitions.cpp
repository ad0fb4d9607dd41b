// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/partitions.h"

#include "clone/alignedbuffer.h"
#include "clone/blkidprobe.h"
#include "clone/failure.h"
#include "clone/loopdevice.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <set>

#include <fcntl.h>

namespace kestro::clone {

namespace {

/// libblkid counts in units of 512 bytes whatever the sector size is.
constexpr std::uint64_t blkidUnit = 512;
/// Boot loaders embed themselves within the first MiB or two of a gap; partition tables of a RAID or a forgotten GPT
/// stand at its end.
constexpr std::uint64_t gapStretch = 4ULL << 20U;

Extent cutAt(std::uint64_t begin, std::uint64_t length, std::uint64_t size)
{
    begin = std::min(begin, size);
    return {begin, std::min(length, size - begin)};
}

/// One of the two entries of an extended table that count: start and length in sectors at 446 + 16 * entry + 8.
Extent tableEntry(std::span<const std::byte> table, std::size_t entry, std::uint32_t sectorSize)
{
    std::array<std::uint32_t, 2> numbers{};
    std::memcpy(numbers.data(), table.subspan(446 + 16 * entry + 8, sizeof numbers).data(), sizeof numbers);
    return {std::uint64_t{numbers[0]} * sectorSize, std::uint64_t{numbers[1]} * sectorSize};
}

bool isTable(std::span<const std::byte> sector)
{
    return sector[510] == std::byte{0x55} && sector[511] == std::byte{0xaa};
}

} // namespace

std::vector<Partition> partitionsOf(const BlockDevice& disk)
{
    const Probe probe(blkid_new_probe_from_filename(disk.path.c_str()));
    blkid_partlist list = probe ? blkid_probe_get_partitions(probe.get()) : nullptr;
    std::vector<Partition> partitions;
    for (int i = 0; list != nullptr && i < blkid_partlist_numof_partitions(list); ++i) {
        blkid_partition entry = blkid_partlist_get_partition(list, i);
        const auto begin = static_cast<std::uint64_t>(blkid_partition_get_start(entry)) * blkidUnit;
        const auto length = static_cast<std::uint64_t>(blkid_partition_get_size(entry)) * blkidUnit;
        partitions.push_back({static_cast<unsigned>(blkid_partition_get_partno(entry)), cutAt(begin, length, disk.size),
            blkid_partition_is_extended(entry) != 0});
    }
    return partitions;
}

ExtentList extendedTables(const File& disk, const Extent& extended, std::uint32_t sectorSize)
{
    AlignedBuffer sector(blockSize);
    std::set<std::uint64_t> seen;
    ExtentList tables;
    std::uint64_t position = extended.offset;
    while (position + sectorSize <= extended.end() && seen.insert(position).second) {
        disk.readAt(sector.bytes().first(sectorSize), position);
        if (!isTable(sector.bytes())) {
            break;
        }
        tables.push_back({position, sectorSize});
        const Extent next = tableEntry(sector.bytes(), 1, sectorSize);
        if (next.length == 0) {
            break;
        }
        position = extended.offset + next.offset;
    }
    return tables;
}

ExtentList gapsOf(const std::vector<Partition>& partitions, std::uint64_t diskSize)
{
    ExtentList taken;
    for (const Partition& partition : partitions) {
        if (!partition.isExtended) {
            taken.push_back(partition.range);
        }
    }
    ExtentList gaps;
    std::uint64_t end = 0;
    taken.push_back({diskSize, 0});
    std::sort(taken.begin(), taken.end(), [](const Extent& a, const Extent& b) { return a.offset < b.offset; });
    for (const Extent& extent : taken) {
        if (extent.offset > end) {
            const std::uint64_t stretch = std::min(extent.offset - end, gapStretch);
            gaps.push_back({end, stretch});
            gaps.push_back({extent.offset - stretch, stretch});
        }
        end = std::max(end, extent.end());
    }
    return inOrder(std::move(gaps), diskSize);
}

PartitionNode::PartitionNode(const BlockDevice& disk, const Extent& range)
    : m_path(partitionNodeAt(disk, range.offset, range.length))
{
    if (!m_path.empty()) {
        return;
    }
    m_loop = readOnlyLoop(disk, range);
    m_path = m_loop.path();
}

} // namespace kestro::clone
