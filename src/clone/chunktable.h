// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/alignedbuffer.h"
#include "clone/file.h"
#include "clone/imagehead.h"
#include "clone/imageindex.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <span>
#include <vector>

namespace kestro::clone {

/// The bytes that the table of so many chunks takes in the file.
[[nodiscard]] constexpr std::uint64_t chunkTableSize(std::uint64_t chunks)
{
    return roundedUp(chunks * sizeof(ChunkRecord));
}

/// A chunk table that has been checked. Its records stay in the file, because an image may have millions: what is known
/// here is how each page of them must hash.
struct ChunkTable
{
    Section section;
    /// Bytes that all chunks take in the file, with padding.
    std::uint64_t storedBytes = 0;
    std::vector<std::uint64_t> pageHashes;
};

/// Reads the whole table of an image and checks it. Throws InvalidImage.
[[nodiscard]] ChunkTable readChunkTable(const File& image, const ImageHead& head, const ImageIndex& index);

/// Hands out the records of a checked table; one for each thread. Cheap when chunks are asked for roughly in order.
class ChunkRecords
{
public:
    /// Keeps the references.
    ChunkRecords(const File& image, const ChunkTable& table);

    /// Valid until the next call. Throws InvalidImage when the file is no longer what was checked, and ReadError.
    [[nodiscard]] const ChunkRecord& at(std::uint64_t chunk);

private:
    void load(std::uint64_t page);

    const File& m_image;
    const ChunkTable& m_table;
    AlignedBuffer m_buffer;
    std::uint64_t m_loaded = ~std::uint64_t{0};
    ChunkRecord m_record;
};

/// Writes a chunk table at a place where room is left for it, each page as soon as its last record has come.
class ChunkTableWriter
{
public:
    /// Keeps the reference.
    ChunkTableWriter(const File& image, std::uint64_t position, std::uint64_t chunks);

    /// From any thread, in roughly the order of the chunks, each once.
    void put(std::uint64_t chunk, const ChunkRecord& record);

    /// After all records: makes the table durable, reads it back past the cache, and tells its hash. Throws Mismatch
    /// when it is not what was written.
    [[nodiscard]] Section finish();

private:
    struct Page
    {
        AlignedBuffer buffer;
        std::uint64_t missing = 0;
    };
    [[nodiscard]] std::uint64_t recordsIn(std::uint64_t page) const;

    const File& m_image;
    Section m_section;
    std::uint64_t m_chunks;
    std::mutex m_mutex;
    std::map<std::uint64_t, Page> m_open;
    std::vector<std::uint64_t> m_pageHashes;
};

} // namespace kestro::clone
