// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/verify.h"

#include "clone/alignedbuffer.h"
#include "clone/crew.h"
#include "clone/humansize.h"
#include "clone/unpacker.h"

#include <memory>

namespace kestro::clone {

namespace {

void verifyContents(const ImageReader& image, Progress& progress)
{
    const ImageIndex& index = image.index();
    const ChunkLayout layout(index.extents, index.chunkSize);
    runCrew(0, layout.chunkCount(), crewSize(index), [&]() -> ChunkTask {
        auto unpacker = std::make_shared<Unpacker>(image, layout);
        return [unpacker, &progress](std::uint64_t chunk) {
            (void)unpacker->unpack(chunk);
            progress.add(roundedUp(unpacker->record().storedSize));
        };
    });
}

} // namespace

void verifyChunks(const ImageReader& image, Progress& progress)
{
    const ImageIndex& index = image.index();
    const std::uint64_t count = ChunkLayout(index.extents, index.chunkSize).chunkCount();
    runCrew(0, count, crewSize(index), [&]() -> ChunkTask {
        auto buffer = std::make_shared<AlignedBuffer>(index.chunkSize);
        auto records = std::make_shared<ChunkRecords>(image.file(), image.chunks());
        return [&, buffer, records](std::uint64_t chunk) {
            progress.add(readStoredChunk(image.file(), records->at(chunk), *buffer).size());
        };
    });
}

void verifyImage(const std::string& path)
{
    watchSignals(WhenAlone::Stop);
    const ImageReader image(path);
    image.file().dropCache();
    Progress progress({{"checking", 1}}, WhenAlone::Stop);
    progress.nextPhase(image.chunks().storedBytes);
    verifyContents(image, progress);
    progress.finish("the image is complete and intact, " + humanSize(image.head().root.fileSize));
}

} // namespace kestro::clone
