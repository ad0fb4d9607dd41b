// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/usedblocks.h"

#include "clone/alignedbuffer.h"
#include "clone/failure.h"
#include "clone/file.h"
#include "clone/usedext.h"
#include "clone/usedpartclone.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>

#include <blkid/blkid.h>
#include <fcntl.h>

namespace kestro::clone {

namespace {

/// Boot code, RAID and container headers and backup superblocks stand at the ends of a device, whatever the file
/// system's own map says.
constexpr std::uint64_t alwaysUsed = 1ULL << 20U;
/// More ranges than this are joined, so that the list stays within 16 MiB.
constexpr std::size_t mostExtents = 1U << 20U;

struct FreeProbe
{
    void operator()(blkid_probe probe) const { blkid_free_probe(probe); }
};
using Probe = std::unique_ptr<std::remove_pointer_t<blkid_probe>, FreeProbe>;

std::string valueOf(const Probe& probe, const char* name)
{
    const char* data = nullptr;
    return blkid_probe_lookup_value(probe.get(), name, &data, nullptr) == 0 && data != nullptr ? data : "";
}

UsedBlocks everything(std::uint64_t size)
{
    return {{{0, size}}, "whole", false};
}

/// A swap area is used up to its header; what was swapped out belongs to a system that no longer runs.
std::optional<UsedBlocks> usedBlocksOfSwap(const std::string&)
{
    return UsedBlocks{{}, "swap", false};
}

using Reader = std::optional<UsedBlocks> (*)(const std::string& device);

struct ReaderRow
{
    std::string_view type;
    Reader read;
};

constexpr std::array readers{
    ReaderRow{"ext2", usedBlocksOfExt},
    ReaderRow{"ext3", usedBlocksOfExt},
    ReaderRow{"ext4", usedBlocksOfExt},
    ReaderRow{"swap", usedBlocksOfSwap},
};

std::optional<UsedBlocks> readUsedBlocks(const std::string& device, const std::string& type)
{
    const auto row = std::find_if(readers.begin(), readers.end(), [&](const ReaderRow& r) { return r.type == type; });
    return row == readers.end() ? usedBlocksByPartclone(device, type) : row->read(device);
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
    return limitedTo(alignedOutward(std::move(extents), blockSize, size), mostExtents);
}

UsedBlocks usedBlocksOf(const std::string& device, std::uint64_t size, const std::string& type)
{
    UsedBlocks used = readUsedBlocks(device, type).value_or(everything(size));
    const ExtentList ends = endsOf(size);
    used.extents.insert(used.extents.end(), ends.begin(), ends.end());
    used.extents = bounded(std::move(used.extents), size);
    return used;
}

} // namespace kestro::clone
