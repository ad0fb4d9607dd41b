// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/imagereader.h"

#include "clone/failure.h"

#include <algorithm>

#include <fcntl.h>

namespace kestro::clone {

namespace {

ImageHead completeHead(const File& image)
{
    ImageHead head = readHead(image);
    if (!head.root.complete) {
        throwInvalidImage(image.path(), "it is incomplete");
    }
    return head;
}

bool areInside(const ExtentList& extents, std::uint64_t size)
{
    return std::all_of(extents.begin(), extents.end(),
        [size](const Extent& extent) { return extent.length <= size && extent.offset <= size - extent.length; });
}

Metadata readMetadata(const File& image, const ImageHead& head, const ImageIndex& index)
{
    const auto bytes = readSection(image, head.root.metadata);
    auto metadata = metadataFromJson({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    if (!metadata || !areInside(metadata->holes, index.sourceSize)) {
        throwInvalidImage(image.path(), "its description is damaged");
    }
    return std::move(*metadata);
}

} // namespace

ImageIndex readIndex(const File& image, const ImageHead& head)
{
    const Section& section = head.root.index;
    SectionReader reader(image, section);
    IndexHeader header{};
    reader.read(header);
    auto index = decodeIndexHeader(header, head.id, section.size);
    if (!index) {
        throwInvalidImage(image.path(), "its index is damaged");
    }
    reader.read(std::as_writable_bytes(std::span(index->extents)));
    if (!reader.finish()) {
        throwInvalidImage(image.path(), "its index is damaged");
    }
    if (!areExtentsValid(*index)) {
        throwInvalidImage(image.path(), "its list of used blocks is wrong");
    }
    if (encodeIndexHeader(*index, head.id) != header) {
        throwInvalidImage(image.path(), "its chunks do not cover its used blocks");
    }
    return std::move(*index);
}

ImageReader::ImageReader(const std::string& path)
    : ImageReader(openImage(path, O_RDONLY))
{ }

ImageReader::ImageReader(File image)
    : m_file(std::move(image))
    , m_head(completeHead(m_file))
    , m_index(readIndex(m_file, m_head))
    , m_chunks(readChunkTable(m_file, m_head, m_index))
    , m_metadata(readMetadata(m_file, m_head, m_index))
    , m_customFiles(readCustomFiles(m_file, m_head))
{ }

std::span<const std::byte> readStoredChunk(const File& image, const ChunkRecord& record, AlignedBuffer& buffer)
{
    if (record.codec == Codec::Zero) {
        return {};
    }
    const auto stored = buffer.bytes().first(roundedUp(record.storedSize));
    image.readAt(stored, record.position);
    if (hashOf(stored) != record.storedHash) {
        throwInvalidImage(image.path(), "it is damaged at byte " + std::to_string(record.position));
    }
    return stored;
}

} // namespace kestro::clone
