// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/usedext.h"

#include <algorithm>
#include <memory>
#include <vector>

#include <ext2fs/ext2fs.h>

namespace kestro::clone {

namespace {

struct Close
{
    void operator()(ext2_filsys fileSystem) const { ext2fs_free(fileSystem); }
};
using FileSystem = std::unique_ptr<struct_ext2_filsys, Close>;

FileSystem openFileSystem(const std::string& device)
{
    constexpr int flags = EXT2_FLAG_64BITS | EXT2_FLAG_SOFTSUPP_FEATURES;
    ext2_filsys opened = nullptr;
    const errcode_t error = ext2fs_open(device.c_str(), flags, 0, 0, unix_io_manager, &opened);
    return FileSystem(error == 0 ? opened : nullptr);
}

/// Adds blocks of the file system to a list of bytes.
class BlockCollector
{
public:
    explicit BlockCollector(std::uint64_t blockBytes)
        : m_blockBytes(blockBytes)
    { }

    void add(blk64_t first, blk64_t count) { m_used.add({first * m_blockBytes, count * m_blockBytes}); }
    ExtentList take() { return m_used.take(); }

private:
    std::uint64_t m_blockBytes;
    ExtentCollector m_used;
};

/// What a group without a bitmap holds: its copy of the superblock and of the descriptors, if it has one, and its own
/// tables, wherever they are.
void addTables(ext2_filsys fileSystem, dgrp_t group, BlockCollector& used)
{
    blk64_t super = 0;
    blk64_t descriptors = 0;
    blk64_t oneDescriptor = 0;
    ext2fs_super_and_bgd_loc2(fileSystem, group, &super, &descriptors, &oneDescriptor, nullptr);
    if (super != 0) {
        used.add(super, 1);
    }
    if (descriptors != 0) {
        used.add(descriptors, fileSystem->desc_blocks + fileSystem->super->s_reserved_gdt_blocks);
    }
    if (oneDescriptor != 0) {
        used.add(oneDescriptor, 1);
    }
    used.add(ext2fs_block_bitmap_loc(fileSystem, group), 1);
    used.add(ext2fs_inode_bitmap_loc(fileSystem, group), 1);
    used.add(ext2fs_inode_table_loc(fileSystem, group), fileSystem->inode_blocks_per_group);
}

/// Adds the runs of set bits of a group's bitmap; each bit stands for a cluster of blocks.
void addSetBits(ext2_filsys fileSystem, dgrp_t group, const std::vector<char>& bitmap, BlockCollector& used)
{
    const blk64_t first = ext2fs_group_first_block2(fileSystem, group);
    const blk64_t end = ext2fs_group_last_block2(fileSystem, group) + 1;
    const blk64_t cluster = blk64_t{1} << static_cast<unsigned>(fileSystem->cluster_ratio_bits);
    for (blk64_t block = first; block < end; block += cluster) {
        const std::size_t bit = (block - first) / cluster;
        if ((static_cast<unsigned char>(bitmap[bit / 8]) >> bit % 8 & 1U) != 0) {
            used.add(block, std::min(cluster, end - block));
        }
    }
}

bool hasBitmap(ext2_filsys fileSystem, dgrp_t group)
{
    return ext2fs_has_group_desc_csum(fileSystem) == 0
        || ext2fs_bg_flags_test(fileSystem, group, EXT2_BG_BLOCK_UNINIT) == 0
        || ext2fs_group_desc_csum_verify(fileSystem, group) == 0;
}

/// Adds what a group uses; false when its bitmap cannot be read or its checksum is wrong.
bool addGroup(ext2_filsys fileSystem, dgrp_t group, std::vector<char>& bitmap, BlockCollector& used)
{
    if (!hasBitmap(fileSystem, group)) {
        addTables(fileSystem, group, used);
        return true;
    }
    const auto bytes = static_cast<int>(EXT2_CLUSTERS_PER_GROUP(fileSystem->super) / 8);
    const blk64_t place = ext2fs_block_bitmap_loc(fileSystem, group);
    if (place == 0 || io_channel_read_blk64(fileSystem->io, place, 1, bitmap.data()) != 0
        || ext2fs_block_bitmap_csum_verify(fileSystem, group, bitmap.data(), bytes) == 0) {
        return false;
    }
    addSetBits(fileSystem, group, bitmap, used);
    return true;
}

} // namespace

std::optional<UsedBlocks> usedBlocksOfExt(const std::string& device, const std::string& /*type*/)
{
    const FileSystem fileSystem = openFileSystem(device);
    if (!fileSystem || EXT2_CLUSTERS_PER_GROUP(fileSystem->super) / 8 > fileSystem->blocksize) {
        return std::nullopt;
    }
    // Group by group: the library's own bitmap of the whole file system would take 32 MiB for each TiB.
    BlockCollector used(fileSystem->blocksize);
    std::vector<char> bitmap(fileSystem->blocksize);
    for (dgrp_t group = 0; group < fileSystem->group_desc_count; ++group) {
        if (!addGroup(fileSystem.get(), group, bitmap, used)) {
            return std::nullopt;
        }
    }
    const std::uint64_t end = ext2fs_blocks_count(fileSystem->super) * fileSystem->blocksize;
    return UsedBlocks{used.take(), end, "libext2fs", false};
}

} // namespace kestro::clone
