// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/imagewriter.h"

#include "clone/alignedbuffer.h"
#include "clone/failure.h"
#include "clone/humansize.h"
#include "clone/streamhash.h"

#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace kestro::clone {

namespace {

/// Space is asked for in steps of this size: the file system then need not lengthen the file for each chunk, which
/// would let only one thread write at a time.
constexpr std::uint64_t allocationStep = 256ULL << 20U;

/// Writes bytes of several origins as one section through an aligned buffer.
class SectionWriter
{
public:
    SectionWriter(const File& image, std::uint64_t position)
        : m_image(image)
        , m_section{position, 0, 0}
        , m_buffer(1U << 20U)
    { }

    void write(std::span<const std::byte> bytes)
    {
        while (!bytes.empty()) {
            const std::size_t step = std::min(bytes.size(), m_buffer.size() - m_filled);
            std::memcpy(m_buffer.data() + m_filled, bytes.data(), step);
            bytes = bytes.subspan(step);
            m_filled += step;
            if (m_filled == m_buffer.size()) {
                flush();
            }
        }
    }

    Section finish()
    {
        const std::size_t padding = roundedUp(m_filled) - m_filled;
        std::memset(m_buffer.data() + m_filled, 0, padding);
        m_filled += padding;
        flush();
        m_section.hash = m_hash.value();
        return m_section;
    }

private:
    void flush()
    {
        const auto bytes = m_buffer.bytes().first(m_filled);
        m_hash.add(bytes);
        m_image.writeAt(bytes, m_section.position + m_section.size);
        m_section.size += bytes.size();
        m_filled = 0;
    }

    const File& m_image;
    Section m_section;
    AlignedBuffer m_buffer;
    std::size_t m_filled = 0;
    StreamHash m_hash;
};

/// The description padded with blanks, which JSON allows at its end.
std::string paddedJson(const Metadata& metadata)
{
    std::string json = toJson(metadata);
    json.resize(roundedUp(json.size()), ' ');
    return json;
}

} // namespace

static_assert(mostCollectedExtents <= mostExtents);

void refuseTooLarge(const ImageIndex& index, const Metadata& metadata)
{
    if (index.sectorSize != 512 && index.sectorSize != 4096) {
        throw Failure(ExitCode::Refused,
            "the source has sectors of " + std::to_string(index.sectorSize) + " bytes, an image only of 512 or 4096");
    }
    if (index.sourceSize % index.sectorSize != 0) {
        throw Failure(ExitCode::Refused, "the source ends within a sector: it has " + exactSize(index.sourceSize));
    }
    const std::uint64_t used = totalLength(index.extents);
    if (used > mostChunks * index.chunkSize || index.extents.size() > mostExtents
        || toJson(metadata).size() + mostHoles * largestHoleText > largestMetadata) {
        throw Failure(ExitCode::Refused,
            "the source is too large or too fragmented for an image: " + humanSize(used) + " in "
                + std::to_string(index.extents.size()) + " places, " + std::to_string(metadata.parts.size())
                + " partitions");
    }
}

// The table's room stands in front of the chunks, because it is filled while they are written.
ImageWriter::ImageWriter(const File& image, ImageHead head, std::uint64_t chunks)
    : m_file(image)
    , m_head(head)
    , m_table(image, head.root.fileSize, chunks)
    , m_end(head.root.fileSize + chunkTableSize(chunks))
    , m_allocated(head.root.fileSize)
{ }

std::uint64_t ImageWriter::reserve(std::uint64_t size)
{
    const std::lock_guard lock(m_mutex);
    const std::uint64_t position = m_end;
    m_end += size;
    if (m_allocates && m_end > m_allocated) {
        // A nearly full file system may still have room for what is really written.
        const std::uint64_t step = roundedUp(m_end - m_allocated, allocationStep);
        m_allocates = ::fallocate(m_file.fd(), 0, static_cast<off_t>(m_allocated), static_cast<off_t>(step)) == 0;
        m_allocated += step;
    }
    return position;
}

void ImageWriter::append(std::uint64_t number, EncodedChunk& chunk)
{
    if (chunk.record.codec != Codec::Zero) {
        chunk.record.position = reserve(chunk.stored.size());
        m_file.writeAt(chunk.stored, chunk.record.position);
    }
    m_table.put(number, chunk.record);
}

void ImageWriter::writeIndex(const ImageIndex& index, const Metadata& metadata)
{
    SectionWriter writer(m_file, m_end);
    writer.write(encodeIndexHeader(index, m_head.id));
    writer.write(std::as_bytes(std::span(index.extents)));
    RootRecord& root = m_head.root;
    root.index = writer.finish();
    const std::string json = paddedJson(metadata);
    root.metadata = writeSection(m_file, std::as_bytes(std::span(json)), root.index.position + root.index.size);
    root.fileSize = root.metadata.position + root.metadata.size;
    m_file.truncate(root.fileSize);
    root.chunks = m_table.finish();
}

void ImageWriter::commit()
{
    RootRecord root = m_head.root;
    root.complete = true;
    try {
        commitRoot(m_file, m_head, root);
        syncDirectoryOf(m_file.path());
    } catch (const Failure&) {
        withdraw();
        throw;
    }
}

// What failed is often the last step, when the complete root record stands in the file already.
void ImageWriter::withdraw() noexcept
{
    RootRecord begun;
    begun.custom = m_head.root.custom;
    begun.fileSize = begunSize();
    try {
        commitRoot(m_file, m_head, begun);
    } catch (const Failure&) {
        // Cut off, the image is unusable as well; it only has to be removed by hand then.
    }
}

std::uint64_t ImageWriter::begunSize() const
{
    const Section& custom = m_head.root.custom;
    return custom.size == 0 ? bodyPosition : custom.position + custom.size;
}

void ImageWriter::abandon() noexcept
{
    // The image is incomplete with or without its chunks; nothing depends on this.
    [[maybe_unused]] const int done = ::ftruncate(m_file.fd(), static_cast<off_t>(begunSize()));
}

} // namespace kestro::clone
