// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/alignedbuffer.h"
#include "clone/chunkcodec.h"
#include "clone/imagereader.h"

#include <cstdint>
#include <span>

namespace kestro::clone {

/// Reads chunks of an image and unpacks them; one for each thread.
class Unpacker
{
public:
    /// Keeps the references.
    Unpacker(const ImageReader& image, const ChunkLayout& layout);

    /// The content of a chunk, both its hashes checked; valid until the next call. Throws InvalidImage or ReadError.
    [[nodiscard]] std::span<std::byte> unpack(std::uint64_t chunk);

    /// The record of the chunk that was unpacked last.
    [[nodiscard]] const ChunkRecord& record() const { return m_record; }

private:
    const ImageReader& m_image;
    const ChunkLayout& m_layout;
    ChunkRecords m_records;
    AlignedBuffer m_stored;
    AlignedBuffer m_content;
    ChunkDecoder m_decoder;
    ChunkRecord m_record;
};

} // namespace kestro::clone
