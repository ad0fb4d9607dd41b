// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/unpacker.h"

#include <string>

namespace kestro::clone {

Unpacker::Unpacker(const ImageReader& image, const ChunkLayout& layout)
    : m_image(image)
    , m_layout(layout)
    , m_records(image.file(), image.chunks())
    , m_stored(image.index().chunkSize)
    , m_content(image.index().chunkSize)
{ }

std::span<std::byte> Unpacker::unpack(std::uint64_t chunk)
{
    const auto content = m_content.bytes().first(m_layout.contentSize(chunk));
    m_record = m_records.at(chunk);
    if (!m_decoder.decode(m_record, readStoredChunk(m_image.file(), m_record, m_stored), content)) {
        throwInvalidImage(m_image.file().path(), "chunk " + std::to_string(chunk) + " does not unpack");
    }
    return content;
}

} // namespace kestro::clone
