// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/verify.h"

#include "clone/alignedbuffer.h"
#include "clone/chunkcodec.h"
#include "clone/crew.h"
#include "clone/humansize.h"
#include "clone/imagereader.h"

#include <memory>
#include <numeric>

namespace kestro::clone {

namespace {

void verifyContents(const ImageReader& image, Progress& progress)
{
    const ImageIndex& index = image.index();
    const ChunkLayout layout(index.extents, index.chunkSize);
    runCrew(0, index.chunks.size(), crewSize(index), [&]() -> ChunkTask {
        auto stored = std::make_shared<AlignedBuffer>(index.chunkSize);
        auto content = std::make_shared<AlignedBuffer>(index.chunkSize);
        auto decoder = std::make_shared<ChunkDecoder>();
        return [&, stored, content, decoder](std::uint64_t chunk) {
            const auto bytes = image.readStored(chunk, *stored);
            const auto target = content->bytes().first(layout.contentSize(chunk));
            if (!decoder->decode(index.chunks[chunk], bytes, target)) {
                throwInvalidImage(image.file().path(), "chunk " + std::to_string(chunk) + " does not unpack");
            }
            progress.add(bytes.size());
        };
    });
}

} // namespace

std::uint64_t storedBytesOf(const ImageIndex& index)
{
    return std::accumulate(index.chunks.begin(), index.chunks.end(), std::uint64_t{0},
        [](std::uint64_t sum, const ChunkRecord& chunk) { return sum + roundedUp(chunk.storedSize); });
}

void verifyChunks(const File& image, const ImageIndex& index, Progress& progress)
{
    runCrew(0, index.chunks.size(), crewSize(index), [&]() -> ChunkTask {
        auto buffer = std::make_shared<AlignedBuffer>(index.chunkSize);
        return [&, buffer](
                   std::uint64_t chunk) { progress.add(readStoredChunk(image, index.chunks[chunk], *buffer).size()); };
    });
}

void verifyImage(const std::string& path)
{
    watchSignals(WhenAlone::Stop);
    const ImageReader image(path);
    image.file().dropCache();
    Progress progress({{"checking", 1}}, WhenAlone::Stop);
    progress.nextPhase(storedBytesOf(image.index()));
    verifyContents(image, progress);
    progress.finish("the image is complete and intact, " + humanSize(image.head().root.fileSize));
}

} // namespace kestro::clone
