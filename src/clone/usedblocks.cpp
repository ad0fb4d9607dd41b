// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/usedblocks.h"

#include "clone/alignedbuffer.h"
#include "clone/blkidprobe.h"
#include "clone/failure.h"
#include "clone/file.h"
#include "clone/loopdevice.h"
#include "clone/mounttable.h"
#include "clone/recovery.h"
#include "clone/usedext.h"
#include "clone/usedpartclone.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <fcntl.h>

namespace kestro::clone {

namespace {

/// Boot code, RAID and container headers and backup superblocks stand at the ends of a device, whatever the file
/// system's own map says.
constexpr std::uint64_t alwaysUsed = 1ULL << 20U;
/// A file system may be smaller than its device and yet keep a backup of its first sector right behind its last block.
constexpr std::uint64_t alwaysUsedBehind = 16ULL << 20U;

std::string valueOf(const Probe& probe, const char* name)
{
    const char* data = nullptr;
    return blkid_probe_lookup_value(probe.get(), name, &data, nullptr) == 0 && data != nullptr ? data : "";
}

UsedBlocks everything(std::uint64_t size)
{
    return {{{0, size}}, size, "whole", false};
}

using Reader = std::optional<UsedBlocks> (*)(const std::string& device, const std::string& type);

struct ReaderRow
{
    std::string_view type;
    Reader read;
};

// Debian builds partclone without the readers for JFS, NILFS2 and ReiserFS. Minix can be read, but not all of its
// versions tell whether they were left in order.
constexpr std::array readers{
    ReaderRow{"btrfs", usedBlocksByPartclone},
    ReaderRow{"exfat", usedBlocksByPartclone},
    ReaderRow{"ext2", usedBlocksOfExt},
    ReaderRow{"ext3", usedBlocksOfExt},
    ReaderRow{"ext4", usedBlocksOfExt},
    ReaderRow{"f2fs", usedBlocksByPartclone},
    ReaderRow{"hfsplus", usedBlocksByPartclone},
    ReaderRow{"ntfs", usedBlocksByPartclone},
    ReaderRow{"vfat", usedBlocksByPartclone},
    ReaderRow{"xfs", usedBlocksByPartclone},
};

bool isMounted(const BlockDevice& device)
{
    const auto mounts = currentMounts();
    return std::any_of(
        mounts.begin(), mounts.end(), [&](const Mount& mount) { return deviceOf(mount) == device.number; });
}

/// Readers refuse what is mounted, and those of F2FS open it for writing: both see a read-only device above it.
File nodeForReaders(const BlockDevice& device, const std::string& type)
{
    return type == "f2fs" || isMounted(device) ? readOnlyLoop(device, {}) : File();
}

UsedBlocks mapOf(const BlockDevice& device, const std::string& type, bool frozen)
{
    // What was swapped out belongs to a system that no longer runs: only the header counts.
    if (type == "swap") {
        return {{}, device.size, "swap", false};
    }
    const auto row = std::find_if(readers.begin(), readers.end(), [&](const ReaderRow& r) { return r.type == type; });
    if (row == readers.end()) {
        return everything(device.size);
    }
    const File node = nodeForReaders(device, type);
    const std::string& path = node.isOpen() ? node.path() : device.path;
    const auto dirty = needsRecovery(path, type, frozen);
    UsedBlocks used = everything(device.size);
    if (!dirty.value_or(true)) {
        used = row->read(path, type).value_or(used);
    }
    used.needsRecovery = dirty.value_or(false);
    return used;
}

} // namespace

Signature probeSignature(const std::string& device, const Extent& range)
{
    const File file = File::open(device, O_RDONLY);
    const Probe probe(blkid_new_probe());
    if (!probe
        || blkid_probe_set_device(
               probe.get(), file.fd(), static_cast<blkid_loff_t>(range.offset), static_cast<blkid_loff_t>(range.length))
            != 0) {
        throw Failure(ExitCode::ReadError, "cannot probe " + device);
    }
    blkid_probe_enable_superblocks(probe.get(), 1);
    blkid_probe_set_superblocks_flags(probe.get(), BLKID_SUBLKS_TYPE | BLKID_SUBLKS_LABEL);
    blkid_probe_enable_partitions(probe.get(), 1);
    // An ambivalent result (-2) is as good as none: such a device is imaged whole.
    if (blkid_do_safeprobe(probe.get()) != 0) {
        return {};
    }
    return {valueOf(probe, "TYPE"), valueOf(probe, "LABEL"), valueOf(probe, "PTTYPE")};
}

ExtentList endsOf(std::uint64_t size)
{
    const std::uint64_t stretch = std::min(size, alwaysUsed);
    return {{0, stretch}, {size - stretch, stretch}};
}

ExtentList bounded(ExtentList extents, std::uint64_t size)
{
    return limitedTo(alignedOutward(std::move(extents), blockSize, size), mostCollectedExtents);
}

UsedBlocks usedBlocksOf(const BlockDevice& device, const std::string& type, bool frozen)
{
    UsedBlocks used = mapOf(device, type, frozen);
    const ExtentList ends = endsOf(device.size);
    used.extents.insert(used.extents.end(), ends.begin(), ends.end());
    used.extents.push_back({std::min(used.end, device.size), alwaysUsedBehind});
    used.extents = bounded(std::move(used.extents), device.size);
    return used;
}

} // namespace kestro::clone
