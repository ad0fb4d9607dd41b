// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/imageindex.h"

#include "clone/alignedbuffer.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace kestro::clone {

namespace {

constexpr std::string_view indexMagic{"KIMINDEX", 8};

struct IndexNumbers
{
    std::uint64_t sourceSize = 0;
    std::uint32_t chunkSize = 0;
    std::uint32_t sectorSize = 0;
    std::uint64_t extentCount = 0;
    std::uint64_t chunkCount = 0;
    std::uint64_t usedBytes = 0;
};
static_assert(sizeof(IndexNumbers) == 40);
static_assert(sizeof(Extent) == 16);

bool arePlausible(const IndexNumbers& numbers, std::uint64_t sectionSize)
{
    const std::uint64_t room = sectionSize - std::min<std::uint64_t>(sectionSize, indexHeaderSize);
    if (numbers.extentCount > std::min(mostExtents, room / sizeof(Extent)) || numbers.chunkCount > mostChunks) {
        return false;
    }
    const std::uint64_t payload = numbers.extentCount * sizeof(Extent);
    const bool chunk =
        numbers.chunkSize >= smallestChunk && numbers.chunkSize <= largestChunk && numbers.chunkSize % blockSize == 0;
    const bool sector =
        (numbers.sectorSize == 512 || numbers.sectorSize == 4096) && numbers.sourceSize % numbers.sectorSize == 0;
    return chunk && sector && roundedUp(payload + indexHeaderSize) == sectionSize
        && numbers.chunkCount == numbers.usedBytes / numbers.chunkSize + (numbers.usedBytes % numbers.chunkSize != 0)
        && numbers.usedBytes > 0 && numbers.usedBytes <= numbers.sourceSize;
}

bool isPlausible(const ChunkRecord& chunk, std::uint32_t contentSize, std::uint64_t fileSize)
{
    const std::uint64_t padded = roundedUp(chunk.storedSize);
    switch (chunk.codec) {
    case Codec::Zero:
        return chunk.position == 0 && chunk.storedSize == 0 && chunk.storedHash == 0;
    case Codec::Stored:
        if (chunk.storedSize != contentSize) {
            return false;
        }
        break;
    case Codec::Zstd:
        if (chunk.storedSize == 0 || chunk.storedSize > contentSize) {
            return false;
        }
        break;
    default:
        return false;
    }
    return chunk.position % blockSize == 0 && chunk.position >= bodyPosition && padded <= fileSize
        && chunk.position <= fileSize - padded;
}

} // namespace

IndexHeader encodeIndexHeader(const ImageIndex& index, const ImageId& id)
{
    const std::uint64_t used = totalLength(index.extents);
    const IndexNumbers numbers{index.sourceSize, index.chunkSize, index.sectorSize, index.extents.size(),
        used / index.chunkSize + (used % index.chunkSize != 0), used};
    IndexHeader header{};
    std::memcpy(header.data(), indexMagic.data(), indexMagic.size());
    std::memcpy(header.data() + 8, id.data(), id.size());
    std::memcpy(header.data() + 24, &numbers, sizeof numbers);
    return header;
}

std::optional<ImageIndex> decodeIndexHeader(
    std::span<const std::byte> header, const ImageId& id, std::uint64_t sectionSize)
{
    IndexNumbers numbers;
    if (header.size() < indexHeaderSize || std::memcmp(header.data(), indexMagic.data(), indexMagic.size()) != 0
        || std::memcmp(header.data() + 8, id.data(), id.size()) != 0) {
        return std::nullopt;
    }
    std::memcpy(&numbers, header.data() + 24, sizeof numbers);
    if (!arePlausible(numbers, sectionSize)) {
        return std::nullopt;
    }
    ImageIndex index{numbers.sourceSize, numbers.chunkSize, numbers.sectorSize, {}};
    index.extents.resize(numbers.extentCount);
    return index;
}

bool areExtentsValid(const ImageIndex& index)
{
    std::uint64_t previousEnd = 0;
    bool first = true;
    for (const Extent& extent : index.extents) {
        const bool inside =
            extent.length > 0 && extent.length <= index.sourceSize && extent.offset <= index.sourceSize - extent.length;
        if (!inside || extent.offset % blockSize != 0 || (!first && extent.offset <= previousEnd)
            || (extent.end() % blockSize != 0 && extent.end() != index.sourceSize)) {
            return false;
        }
        previousEnd = extent.end();
        first = false;
    }
    return true;
}

RecordCheck::RecordCheck(const ImageIndex& index, std::uint64_t fileSize)
    : m_chunkSize(index.chunkSize)
    , m_fileSize(fileSize)
    , m_left(totalLength(index.extents))
{ }

bool RecordCheck::add(const ChunkRecord& record)
{
    const auto content = static_cast<std::uint32_t>(std::min<std::uint64_t>(m_chunkSize, m_left));
    m_left -= content;
    m_stored += roundedUp(record.storedSize);
    return content > 0 && isPlausible(record, content, m_fileSize);
}

} // namespace kestro::clone
