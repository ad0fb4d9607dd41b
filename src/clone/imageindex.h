// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/extents.h"
#include "clone/imageformat.h"

#include <optional>
#include <span>

namespace kestro::clone {

/// Which bytes of the source the image holds. Where their chunks stand is in the chunk table.
struct ImageIndex
{
    std::uint64_t sourceSize = 0;
    std::uint32_t chunkSize = 0;
    std::uint32_t sectorSize = 512;
    ExtentList extents;
};

/// The 64 bytes in front of the extents of a stored index.
inline constexpr std::size_t indexHeaderSize = 64;
using IndexHeader = std::array<std::byte, indexHeaderSize>;

/// What stands before the extents in the index section.
[[nodiscard]] IndexHeader encodeIndexHeader(const ImageIndex& index, const ImageId& id);

/// An index with its numbers and with its list sized, but not filled; none when the numbers cannot belong to a section
/// of this size.
[[nodiscard]] std::optional<ImageIndex> decodeIndexHeader(
    std::span<const std::byte> header, const ImageId& id, std::uint64_t sectionSize);

/// True when the extents of a filled index are in order, inside the source, and begin and end on blocks (the end of the
/// source apart), so that pieces of direct input and output are aligned in memory too.
[[nodiscard]] bool areExtentsValid(const ImageIndex& index);

/// Checks the records of a chunk table, in order, against the index and the size of the file.
class RecordCheck
{
public:
    RecordCheck(const ImageIndex& index, std::uint64_t fileSize);

    /// False when the next record cannot be right.
    [[nodiscard]] bool add(const ChunkRecord& record);

    /// Bytes that the records so far take in the file, with padding. More than the file has when chunks share bytes,
    /// which would make a small file a very long job.
    [[nodiscard]] std::uint64_t storedBytes() const { return m_stored; }

private:
    std::uint32_t m_chunkSize;
    std::uint64_t m_fileSize;
    /// Bytes of content that the records so far do not cover.
    std::uint64_t m_left;
    std::uint64_t m_stored = 0;
};

} // namespace kestro::clone
