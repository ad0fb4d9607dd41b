// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/chunkcodec.h"
#include "clone/chunktable.h"
#include "clone/customfiles.h"
#include "clone/file.h"
#include "clone/imagehead.h"
#include "clone/imageindex.h"
#include "clone/metadata.h"

#include <mutex>

namespace kestro::clone {

/// Throws Refused for a source that no image can hold, before anything of it is read: the description has no holes yet.
void refuseTooLarge(const ImageIndex& index, const Metadata& metadata);

/// Writes the body of an image that has a fresh head. Until commit the image is incomplete.
class ImageWriter
{
public:
    /// An image of so many chunks; keeps the reference.
    ImageWriter(const File& image, ImageHead head, std::uint64_t chunks);

    /// Writes a chunk at the end, fills in its position and puts it into the table. May be called by several threads at
    /// once, roughly in the order of the chunks.
    void append(std::uint64_t number, EncodedChunk& chunk);

    /// After all chunks: writes index and description behind them, cuts the file to its size, makes all of it durable,
    /// and reads the table of the chunks back. Throws Mismatch too.
    void writeIndex(const ImageIndex& index, const Metadata& metadata);

    /// The head as it will be; with the sections that writeIndex wrote.
    [[nodiscard]] const ImageHead& head() const { return m_head; }

    /// Declares the image complete, durably. Only after everything written has been checked. When it throws the image
    /// is incomplete again, if that can still be written.
    void commit();

    /// Gives back the space of an image that will never be complete; its custom files stay. Never throws.
    void abandon() noexcept;

private:
    [[nodiscard]] std::uint64_t reserve(std::uint64_t size);
    void withdraw() noexcept;
    /// Of the image that holds its custom files only.
    [[nodiscard]] std::uint64_t begunSize() const;

    const File& m_file;
    ImageHead m_head;
    ChunkTableWriter m_table;
    std::mutex m_mutex;
    std::uint64_t m_end = 0;
    std::uint64_t m_allocated = 0;
    bool m_allocates = true;
};

} // namespace kestro::clone
