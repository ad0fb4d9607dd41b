// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/source.h"

#include "clone/file.h"
#include "clone/partitions.h"
#include "clone/usedblocks.h"

#include <utility>

#include <fcntl.h>

namespace kestro::clone {

namespace {

using DevicesFrozen = const std::set<dev_t>&;

/// What is known of a whole disk so far.
struct DiskMap
{
    ExtentCollector extents;
    std::vector<ContentPart> parts;
    bool needsRecovery = false;
};

void append(ExtentCollector& all, const ExtentList& some, std::uint64_t offset)
{
    for (const Extent& extent : some) {
        all.add({offset + extent.offset, extent.length});
    }
}

/// What a partition holds: by its node, or as a part of its disk when the kernel has none to give.
UsedBlocks usedBlocksOfPart(const std::string& node, const std::string& type, const Extent& range, DevicesFrozen frozen)
{
    if (node.empty()) {
        return {{{0, range.length}}, range.length, "whole", false};
    }
    const BlockDevice device = blockDeviceAt(node);
    return usedBlocksOf(device, type, frozen.contains(device.number));
}

void addPartition(DiskMap& map, const BlockDevice& disk, const Partition& partition, DevicesFrozen frozen)
{
    const Extent& range = partition.range;
    if (range.length == 0) {
        return;
    }
    const PartitionNode node(disk, range);
    const bool readable = !node.path().empty();
    const Signature signature = readable ? probeSignature(node.path()) : probeSignature(disk.path, range);
    // Partition nodes have a cache of their own, apart from the disk's.
    if (readable) {
        forgetCachedBlocks(node.path());
    }
    const UsedBlocks used = usedBlocksOfPart(node.path(), signature.type, range, frozen);
    append(map.extents, used.extents, range.offset);
    map.parts.push_back(
        {partition.number, range, signature.type, signature.label, used.reader, totalLength(used.extents)});
    map.needsRecovery = map.needsRecovery || used.needsRecovery;
}

SourceMap mapDisk(const BlockDevice& disk, const std::string& table, DevicesFrozen frozen)
{
    DiskMap map;
    const auto partitions = partitionsOf(disk);
    const File device = File::open(disk.path, O_RDONLY);
    append(map.extents, gapsOf(partitions, disk.size), 0);
    for (const Partition& partition : partitions) {
        if (partition.isExtended) {
            append(map.extents, extendedTables(device, partition.range, disk.sectorSize), 0);
        } else {
            addPartition(map, disk, partition, frozen);
        }
    }
    append(map.extents, endsOf(disk.size), 0);
    return {bounded(map.extents.take(), disk.size), table, std::move(map.parts), map.needsRecovery};
}

/// Boot sectors of FAT, NTFS and exFAT look like a partition table without partitions, and a disk that was partitioned
/// anew may still bear the sign of the file system that was on it. An image of a partition with a table of its own must
/// fit a partition again, so it is none of a disk. What is not certain is left out of the signature:
/// the source is then imaged whole.
Signature trustedSignature(const BlockDevice& source)
{
    const Signature found = probeSignature(source.path);
    const bool hasPartitions = !found.partitionTable.empty() && !partitionsOf(source).empty();
    if (!hasPartitions) {
        return {found.type, found.label, ""};
    }
    const bool isKnownTable = found.partitionTable == "gpt" || found.partitionTable == "dos";
    const bool isDisk = isKnownTable && !source.isPartition;
    return {"", "", isDisk && found.type.empty() ? found.partitionTable : ""};
}

} // namespace

SourceMap mapSource(const BlockDevice& source, const std::set<dev_t>& frozen)
{
    forgetCachedBlocks(source.path);
    const Signature signature = trustedSignature(source);
    if (!signature.partitionTable.empty()) {
        return mapDisk(source, signature.partitionTable, frozen);
    }
    UsedBlocks used = usedBlocksOf(source, signature.type, frozen.contains(source.number));
    const std::uint64_t bytes = totalLength(used.extents);
    return {std::move(used.extents), "", {{0, {0, source.size}, signature.type, signature.label, used.reader, bytes}},
        used.needsRecovery};
}

} // namespace kestro::clone
