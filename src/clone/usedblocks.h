// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/blockdevice.h"
#include "clone/extents.h"

#include <optional>
#include <string>

namespace kestro::clone {

/// Which bytes of a file system are in use.
struct UsedBlocks
{
    ExtentList extents;
    /// Where the reader's map ends; nothing is known of what lies behind.
    std::uint64_t end = 0;
    /// Who said so; goes into the image's description.
    std::string reader;
    /// The journal may hold changes that the file system itself does not have yet; then everything is used.
    bool needsRecovery = false;
};

/// What libblkid finds on a device.
struct Signature
{
    /// "ext4", "crypto_LUKS", …; empty when it knows nothing or the signs contradict each other.
    std::string type;
    std::string label;
    /// "gpt" or "dos" on a whole disk; empty otherwise.
    std::string partitionTable;
};

/// Probes a range of a device, or all of it when the length is 0.
[[nodiscard]] Signature probeSignature(const std::string& device, const Extent& range = {});

/// The used bytes of the file system on a device, relative to its start. Everything is used when the file system has
/// no reader, its reader does not trust it, or it may need recovery. The beginning and the end of the device and the
/// first 16 MiB behind the end of the file system always count as used.
/// @param frozen the file system is mounted for writing and stands still
[[nodiscard]] UsedBlocks usedBlocksOf(const BlockDevice& device, const std::string& type, bool frozen);

/// The first and the last stretch of a device, which every image holds.
[[nodiscard]] ExtentList endsOf(std::uint64_t size);

/// Ranges widened to blocks, in order, and joined as far as needed to keep the list in a bounded size.
[[nodiscard]] ExtentList bounded(ExtentList extents, std::uint64_t size);

} // namespace kestro::clone
