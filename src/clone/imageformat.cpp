// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/imageformat.h"

#include "clone/alignedbuffer.h"
#include "clone/xxh3.h"

#include <bit>
#include <cstring>
#include <string_view>

// Numbers are copied as they lie in memory.
static_assert(std::endian::native == std::endian::little);

namespace kestro::clone {

namespace {

constexpr std::string_view imageMagic{"KESTROIM", 8};
constexpr std::string_view rootMagic{"KIMROOT\0", 8};
constexpr std::uint32_t formatVersion = 2;
constexpr std::string_view readme =
    "This is an image of a disk or a partition, written by kestro-clone. The file docs/image-format.md of Kestro "
    "Recovery describes every byte; docs/read-image.py reads it with nothing but Python and zstd.\n";

template <typename T>
void put(std::span<std::byte> block, std::size_t position, const T& value)
{
    std::memcpy(block.subspan(position, sizeof value).data(), &value, sizeof value);
}

template <typename T>
T get(std::span<const std::byte> block, std::size_t position)
{
    T value{};
    std::memcpy(&value, block.subspan(position, sizeof value).data(), sizeof value);
    return value;
}

void putText(std::span<std::byte> block, std::size_t position, std::string_view text)
{
    std::memcpy(block.subspan(position, text.size()).data(), text.data(), text.size());
}

bool hasText(std::span<const std::byte> block, std::string_view text)
{
    return block.size() >= text.size() && std::memcmp(block.data(), text.data(), text.size()) == 0;
}

/// The hash of all other bytes stands at the end.
void seal(std::span<std::byte> record)
{
    const std::size_t place = record.size() - sizeof(std::uint64_t);
    put(record, place, hashOf(record.first(place)));
}

bool isSealed(std::span<const std::byte> record)
{
    const std::size_t place = record.size() - sizeof(std::uint64_t);
    return get<std::uint64_t>(record, place) == hashOf(record.first(place));
}

void putSection(Block& block, std::size_t position, const Section& section)
{
    put(block, position, section.position);
    put(block, position + 8, section.size);
    put(block, position + 16, section.hash);
}

Section getSection(std::span<const std::byte> block, std::size_t position)
{
    return {get<std::uint64_t>(block, position), get<std::uint64_t>(block, position + 8),
        get<std::uint64_t>(block, position + 16)};
}

bool isPlausible(const Section& section, std::uint64_t fileSize, std::uint64_t limit)
{
    if (section.size == 0) {
        return true;
    }
    return section.position % blockSize == 0 && section.size % blockSize == 0 && section.position >= bodyPosition
        && section.size <= limit && section.size <= fileSize && section.position <= fileSize - section.size;
}

bool isPlausible(const RootRecord& root)
{
    const bool sections = isPlausible(root.index, root.fileSize, largestIndex)
        && isPlausible(root.chunks, root.fileSize, largestChunkTable)
        && isPlausible(root.metadata, root.fileSize, largestMetadata)
        && isPlausible(root.custom, root.fileSize, largestCustomSection);
    const bool needed = !root.complete || (root.index.size > 0 && root.metadata.size > 0);
    // A change begins where the file ends, and has the next number.
    const bool canChange = root.fileSize % blockSize == 0 && root.sequence < ~std::uint64_t{0};
    return root.fileSize >= bodyPosition && canChange && sections && needed;
}

} // namespace

bool isZero(std::span<const std::byte> bytes)
{
    return bytes.empty()
        || (bytes.front() == std::byte{0} && std::memcmp(bytes.data(), bytes.data() + 1, bytes.size() - 1) == 0);
}

std::uint64_t hashOf(std::span<const std::byte> bytes)
{
    return XXH3_64bits(bytes.data(), bytes.size());
}

Block encodeHeader(const ImageId& id)
{
    Block block{};
    putText(block, 0, imageMagic);
    put(block, 8, formatVersion);
    put(block, 12, static_cast<std::uint32_t>(blockSize));
    put(block, 16, id);
    put(block, 32, rootPosition);
    put(block, 40, rootPosition + rootSize);
    putText(block, 64, readme);
    seal(block);
    return block;
}

bool hasImageMagic(std::span<const std::byte> bytes)
{
    return hasText(bytes, imageMagic);
}

std::optional<ImageId> decodeHeader(std::span<const std::byte> bytes)
{
    if (bytes.size() < headerSize || !hasImageMagic(bytes) || !isSealed(bytes.first(headerSize))
        || get<std::uint32_t>(bytes, 8) != formatVersion) {
        return std::nullopt;
    }
    const auto id = get<ImageId>(bytes, 16);
    // The rest of a header of this version is fixed.
    const Block expected = encodeHeader(id);
    return std::memcmp(expected.data(), bytes.data(), expected.size()) == 0 ? std::optional(id) : std::nullopt;
}

Block encodeRoot(const RootRecord& root, const ImageId& id)
{
    Block block{};
    putText(block, 0, rootMagic);
    put(block, 8, id);
    put(block, 24, root.sequence);
    put(block, 32, static_cast<std::uint64_t>(root.complete ? 1 : 0));
    put(block, 40, root.fileSize);
    putSection(block, 48, root.index);
    putSection(block, 72, root.chunks);
    putSection(block, 96, root.metadata);
    putSection(block, 120, root.custom);
    seal(std::span(block).first(rootRecordSize));
    return block;
}

std::optional<RootRecord> decodeRoot(std::span<const std::byte> bytes, const ImageId& id)
{
    if (bytes.size() < rootSize || !hasText(bytes, rootMagic) || !isSealed(bytes.first(rootRecordSize))
        || get<ImageId>(bytes, 8) != id || !isZero(bytes.subspan(rootRecordSize, rootSize - rootRecordSize))) {
        return std::nullopt;
    }
    const auto flags = get<std::uint64_t>(bytes, 32);
    const RootRecord root{get<std::uint64_t>(bytes, 24), flags == 1, get<std::uint64_t>(bytes, 40),
        getSection(bytes, 48), getSection(bytes, 72), getSection(bytes, 96), getSection(bytes, 120)};
    return flags <= 1 && isPlausible(root) ? std::optional(root) : std::nullopt;
}

} // namespace kestro::clone
