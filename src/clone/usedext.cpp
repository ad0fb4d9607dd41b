// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/usedext.h"

#include <memory>

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

/// The runs of set bits of the block bitmap, in bytes.
ExtentList usedRuns(ext2_filsys fileSystem)
{
    ExtentList runs;
    const blk64_t last = ext2fs_blocks_count(fileSystem->super) - 1;
    blk64_t block = fileSystem->super->s_first_data_block;
    blk64_t begin = 0;
    while (block <= last && ext2fs_find_first_set_block_bitmap2(fileSystem->block_map, block, last, &begin) == 0) {
        blk64_t end = 0;
        if (ext2fs_find_first_zero_block_bitmap2(fileSystem->block_map, begin, last, &end) != 0) {
            end = last + 1;
        }
        runs.push_back({begin * fileSystem->blocksize, (end - begin) * fileSystem->blocksize});
        block = end;
    }
    return runs;
}

} // namespace

std::optional<UsedBlocks> usedBlocksOfExt(const std::string& device)
{
    const FileSystem fileSystem = openFileSystem(device);
    if (!fileSystem || ext2fs_read_block_bitmap(fileSystem.get()) != 0) {
        return std::nullopt;
    }
    UsedBlocks used{usedRuns(fileSystem.get()), "libext2fs", false};
    used.needsRecovery = ext2fs_has_feature_journal_needs_recovery(fileSystem->super) != 0;
    return used;
}

} // namespace kestro::clone
