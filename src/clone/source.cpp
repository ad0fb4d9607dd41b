// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/source.h"

#include "clone/file.h"
#include "clone/partitions.h"
#include "clone/usedblocks.h"

#include <utility>

#include <fcntl.h>

namespace kestro::clone {

namespace {

void append(ExtentList& all, const ExtentList& some, std::uint64_t offset)
{
    for (const Extent& extent : some) {
        all.push_back({offset + extent.offset, extent.length});
    }
}

void addPartition(SourceMap& map, const BlockDevice& disk, const Partition& partition)
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
    const UsedBlocks used = usedBlocksOf(node.path(), range.length, readable ? signature.type : "");
    append(map.extents, used.extents, range.offset);
    map.parts.push_back(
        {partition.number, range, signature.type, signature.label, used.reader, totalLength(used.extents)});
    map.needsRecovery = map.needsRecovery || used.needsRecovery;
}

SourceMap mapDisk(const BlockDevice& disk, const std::string& table)
{
    SourceMap map{{}, table, {}, false};
    const auto partitions = partitionsOf(disk);
    const File device = File::open(disk.path, O_RDONLY);
    map.extents = gapsOf(partitions, disk.size);
    for (const Partition& partition : partitions) {
        if (partition.isExtended) {
            append(map.extents, extendedTables(device, partition.range, disk.sectorSize), 0);
        } else {
            addPartition(map, disk, partition);
        }
    }
    append(map.extents, endsOf(disk.size), 0);
    map.extents = bounded(std::move(map.extents), disk.size);
    return map;
}

/// Boot sectors of FAT, NTFS and exFAT look like a partition table without partitions, and a disk that was partitioned
/// anew may still bear the sign of the file system that was on it. What is not certain is left out of the signature:
/// the source is then imaged whole.
Signature trustedSignature(const BlockDevice& source)
{
    const Signature found = probeSignature(source.path);
    const bool hasPartitions = !found.partitionTable.empty() && !partitionsOf(source).empty();
    if (!hasPartitions) {
        return {found.type, found.label, ""};
    }
    const bool isKnownTable = found.partitionTable == "gpt" || found.partitionTable == "dos";
    return {"", "", isKnownTable && found.type.empty() ? found.partitionTable : ""};
}

} // namespace

SourceMap mapSource(const BlockDevice& source)
{
    forgetCachedBlocks(source.path);
    const Signature signature = trustedSignature(source);
    if (!signature.partitionTable.empty()) {
        return mapDisk(source, signature.partitionTable);
    }
    UsedBlocks used = usedBlocksOf(source.path, source.size, signature.type);
    const std::uint64_t bytes = totalLength(used.extents);
    return {std::move(used.extents), "", {{0, {0, source.size}, signature.type, signature.label, used.reader, bytes}},
        used.needsRecovery};
}

} // namespace kestro::clone
