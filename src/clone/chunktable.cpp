// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/chunktable.h"

#include "clone/failure.h"
#include "clone/streamhash.h"

#include <algorithm>
#include <cstring>

namespace kestro::clone {

namespace {

constexpr std::uint64_t recordsOfPage = 1024;
constexpr std::uint64_t pageSize = recordsOfPage * sizeof(ChunkRecord);
static_assert(pageSize % blockSize == 0);

constexpr std::uint64_t pagesOf(std::uint64_t tableSize)
{
    return (tableSize + pageSize - 1) / pageSize;
}

/// The whole table is read in larger steps.
constexpr std::uint64_t pagesAtOnce = 32;

/// Reads as many pages as fit into the buffer, or what is left of the table.
std::span<const std::byte> readPages(
    const File& image, const Section& section, std::uint64_t page, AlignedBuffer& buffer)
{
    const std::uint64_t begin = page * pageSize;
    const auto bytes = buffer.bytes().first(std::min<std::uint64_t>(buffer.size(), section.size - begin));
    image.readAt(bytes, section.position + begin);
    return bytes;
}

/// The pages of a table, one after the other.
template <typename Take>
void forEachPage(const File& image, const Section& section, const Take& take)
{
    AlignedBuffer buffer(pagesAtOnce * pageSize);
    for (std::uint64_t page = 0; page < pagesOf(section.size); page += pagesAtOnce) {
        const auto bytes = readPages(image, section, page, buffer);
        for (std::uint64_t i = 0; i < pagesOf(bytes.size()); ++i) {
            take(page + i, bytes.subspan(i * pageSize, std::min<std::uint64_t>(pageSize, bytes.size() - i * pageSize)));
        }
    }
}

ChunkRecord recordIn(std::span<const std::byte> page, std::uint64_t number)
{
    ChunkRecord record;
    std::memcpy(&record, page.subspan(number * sizeof record, sizeof record).data(), sizeof record);
    return record;
}

[[noreturn]] void throwDamaged(const File& image)
{
    throwInvalidImage(image.path(), "its table of chunks is damaged");
}

} // namespace

ChunkTable readChunkTable(const File& image, const ImageHead& head, const ImageIndex& index)
{
    const Section& section = head.root.chunks;
    const std::uint64_t chunks = ChunkLayout(index.extents, index.chunkSize).chunkCount();
    if (section.size != chunkTableSize(chunks)) {
        throwDamaged(image);
    }
    ChunkTable table{section, 0, {}};
    RecordCheck check(index, head.root.fileSize);
    StreamHash hash;
    bool good = true;
    forEachPage(image, section, [&](std::uint64_t page, std::span<const std::byte> bytes) {
        const std::uint64_t records = std::min(recordsOfPage, chunks - page * recordsOfPage);
        for (std::uint64_t i = 0; i < records; ++i) {
            good = check.add(recordIn(bytes, i)) && good;
        }
        hash.add(bytes);
        table.pageHashes.push_back(hashOf(bytes));
    });
    if (section.size > 0 && hash.value() != section.hash) {
        throwDamaged(image);
    }
    if (!good || check.storedBytes() > head.root.fileSize) {
        throwInvalidImage(image.path(), good ? "its chunks overlap" : "a chunk of its table is wrong");
    }
    table.storedBytes = check.storedBytes();
    return table;
}

ChunkRecords::ChunkRecords(const File& image, const ChunkTable& table)
    : m_image(image)
    , m_table(table)
    , m_buffer(pageSize)
{ }

const ChunkRecord& ChunkRecords::at(std::uint64_t chunk)
{
    load(chunk / recordsOfPage);
    m_record = recordIn(m_buffer.bytes(), chunk % recordsOfPage);
    return m_record;
}

void ChunkRecords::load(std::uint64_t page)
{
    if (page == m_loaded) {
        return;
    }
    const auto bytes = readPages(m_image, m_table.section, page, m_buffer);
    if (hashOf(bytes) != m_table.pageHashes.at(page)) {
        throwDamaged(m_image);
    }
    m_loaded = page;
}

ChunkTableWriter::ChunkTableWriter(const File& image, std::uint64_t position, std::uint64_t chunks)
    : m_image(image)
    , m_section{position, chunkTableSize(chunks), 0}
    , m_chunks(chunks)
    , m_pageHashes(pagesOf(m_section.size))
{ }

std::uint64_t ChunkTableWriter::recordsIn(std::uint64_t page) const
{
    return std::min(recordsOfPage, m_chunks - page * recordsOfPage);
}

void ChunkTableWriter::put(std::uint64_t chunk, const ChunkRecord& record)
{
    const std::uint64_t number = chunk / recordsOfPage;
    const std::lock_guard lock(m_mutex);
    auto place = m_open.find(number);
    if (place == m_open.end()) {
        place =
            m_open.try_emplace(number, Page{AlignedBuffer(recordsIn(number) * sizeof record), recordsIn(number)}).first;
    }
    Page& page = place->second;
    std::memcpy(page.buffer.data() + chunk % recordsOfPage * sizeof record, &record, sizeof record);
    if (--page.missing == 0) {
        m_image.writeAt(page.buffer.bytes(), m_section.position + number * pageSize);
        m_pageHashes[number] = hashOf(page.buffer.bytes());
        m_open.erase(place);
    }
}

Section ChunkTableWriter::finish()
{
    StreamHash hash;
    m_image.sync();
    m_image.dropCache();
    forEachPage(m_image, m_section, [&](std::uint64_t page, std::span<const std::byte> bytes) {
        if (hashOf(bytes) != m_pageHashes[page]) {
            throwMismatch(m_image.path());
        }
        hash.add(bytes);
    });
    m_section.hash = m_section.size == 0 ? 0 : hash.value();
    return m_section;
}

} // namespace kestro::clone
