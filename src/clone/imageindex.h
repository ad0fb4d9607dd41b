// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/extents.h"
#include "clone/imageformat.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kestro::clone {

/// Which bytes of the source the image holds, and where their chunks stand in the file.
struct ImageIndex
{
    std::uint64_t sourceSize = 0;
    std::uint32_t chunkSize = 0;
    std::uint32_t sectorSize = 512;
    ExtentList extents;
    std::vector<ChunkRecord> chunks;
};

/// The 64 bytes in front of the extents and chunks of a stored index.
inline constexpr std::size_t indexHeaderSize = 64;
using IndexHeader = std::array<std::byte, indexHeaderSize>;

[[nodiscard]] IndexHeader encodeIndexHeader(const ImageIndex& index, const ImageId& id);

/// An index with its numbers and with its lists sized, but not filled; none when the numbers cannot belong to a section
/// of this size.
[[nodiscard]] std::optional<ImageIndex> decodeIndexHeader(
    std::span<const std::byte> header, const ImageId& id, std::uint64_t sectionSize);

/// Says what is wrong with a filled index of a file of the given size; empty when nothing is.
[[nodiscard]] std::string flawOf(const ImageIndex& index, std::uint64_t fileSize);

} // namespace kestro::clone
