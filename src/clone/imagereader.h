// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/alignedbuffer.h"
#include "clone/chunktable.h"
#include "clone/extents.h"
#include "clone/file.h"
#include "clone/imagehead.h"
#include "clone/imageindex.h"
#include "clone/metadata.h"

#include <span>
#include <string>

namespace kestro::clone {

/// A complete image, opened for reading; all of it but the chunks has been checked.
class ImageReader
{
public:
    /// Throws InvalidImage for everything that is not a complete, intact image, and what opening throws.
    explicit ImageReader(const std::string& path);
    /// Takes an open image over.
    explicit ImageReader(File image);

    [[nodiscard]] const File& file() const { return m_file; }
    [[nodiscard]] const ImageHead& head() const { return m_head; }
    [[nodiscard]] const ImageIndex& index() const { return m_index; }
    [[nodiscard]] const ChunkTable& chunks() const { return m_chunks; }
    [[nodiscard]] const Metadata& metadata() const { return m_metadata; }
    [[nodiscard]] const CustomFiles& customFiles() const { return m_customFiles; }

private:
    File m_file;
    ImageHead m_head;
    ImageIndex m_index;
    ChunkTable m_chunks;
    Metadata m_metadata;
    CustomFiles m_customFiles;
};

/// The index of an image whose root names it. Throws InvalidImage.
[[nodiscard]] ImageIndex readIndex(const File& image, const ImageHead& head);

/// Reads the stored bytes that a record names and checks their hash; the buffer holds at least chunkSize bytes. Throws
/// InvalidImage or ReadError. May be called by several threads at once.
[[nodiscard]] std::span<const std::byte> readStoredChunk(
    const File& image, const ChunkRecord& record, AlignedBuffer& buffer);

} // namespace kestro::clone
