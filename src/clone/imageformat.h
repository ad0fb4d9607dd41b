// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

/// The fixed parts of an image file, byte for byte as docs/image-format.md tells. Pure: nothing here reads or writes.
namespace kestro::clone {

/// Random bytes that tell an image's own records from those of another that lay at the same place before.
using ImageId = std::array<std::byte, 16>;

inline constexpr std::uint64_t headerSize = 4096;
inline constexpr std::uint64_t rootSize = 4096;
/// The part of a root's block that holds the record and its hash; the rest is zeros. A sector of the smallest size:
/// what a power cut leaves of it is the old one or the new one.
inline constexpr std::uint64_t rootRecordSize = 512;
/// Where the header and the two root records stand, and where the rest of the file begins.
inline constexpr std::uint64_t rootPosition = headerSize;
inline constexpr std::uint64_t bodyPosition = headerSize + 2 * rootSize;

/// Limits that every image keeps; a reader believes no number beyond them.
inline constexpr std::uint32_t smallestChunk = 64U << 10U;
inline constexpr std::uint32_t largestChunk = 8U << 20U;
inline constexpr std::uint64_t mostExtents = 1ULL << 18U;
inline constexpr std::uint64_t mostChunks = 1ULL << 23U;
inline constexpr std::uint64_t largestIndex = (4ULL << 20U) + 4096;
inline constexpr std::uint64_t largestChunkTable = 256ULL << 20U;
inline constexpr std::uint64_t largestMetadata = 1ULL << 20U;
inline constexpr std::uint64_t largestCustomSection = 16ULL << 20U;

/// XXH3 with 64 bits and seed 0, the hash of the whole format.
[[nodiscard]] std::uint64_t hashOf(std::span<const std::byte> bytes);

/// True when every byte is 0.
[[nodiscard]] bool isZero(std::span<const std::byte> bytes);

/// A part of the file: position and size are multiples of blockSize; a size of 0 means that there is none.
struct Section
{
    std::uint64_t position = 0;
    std::uint64_t size = 0;
    std::uint64_t hash = 0;
};

/// What one root record says about the file.
struct RootRecord
{
    std::uint64_t sequence = 0;
    bool complete = false;
    /// The file is at least this long; bytes behind it belong to an unfinished change and are ignored.
    std::uint64_t fileSize = bodyPosition;
    Section index;
    Section chunks;
    Section metadata;
    Section custom;
};

/// The first block of an image, or one with a root record in its first sector.
using Block = std::array<std::byte, headerSize>;

/// With its checksum; the rest of the block is zeros.
[[nodiscard]] Block encodeHeader(const ImageId& id);
/// True when the bytes begin as an image does, whatever follows.
[[nodiscard]] bool hasImageMagic(std::span<const std::byte> bytes);
/// The identifier in an intact header of this version; none otherwise.
[[nodiscard]] std::optional<ImageId> decodeHeader(std::span<const std::byte> bytes);

/// With its checksum, which depends on the identifier; the rest of the block is zeros.
[[nodiscard]] Block encodeRoot(const RootRecord& root, const ImageId& id);
/// An intact root record of the image with this identifier; none otherwise. Sections are inside fileSize, aligned and
/// within the limits.
[[nodiscard]] std::optional<RootRecord> decodeRoot(std::span<const std::byte> bytes, const ImageId& id);

/// How the bytes of a chunk are kept.
enum class Codec : std::uint32_t { Zero = 0, Stored = 1, Zstd = 2 };

/// One entry of the chunk table.
struct ChunkRecord
{
    std::uint64_t position = 0;
    /// Bytes without the padding to a multiple of blockSize.
    std::uint32_t storedSize = 0;
    Codec codec = Codec::Zero;
    std::uint64_t contentHash = 0;
    /// Of the stored bytes with their padding; 0 for a chunk of zeros, which keeps none.
    std::uint64_t storedHash = 0;
};
static_assert(sizeof(ChunkRecord) == 32);

} // namespace kestro::clone
