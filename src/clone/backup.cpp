// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/backup.h"

#include "clone/blockdevice.h"
#include "clone/crew.h"
#include "clone/failure.h"
#include "clone/freeze.h"
#include "clone/guards.h"
#include "clone/humansize.h"
#include "clone/imagereader.h"
#include "clone/imagewriter.h"
#include "clone/newimage.h"
#include "clone/progress.h"
#include "clone/readback.h"
#include "clone/source.h"
#include "clone/version.h"

#include <array>
#include <ctime>
#include <memory>

#include <fcntl.h>

namespace kestro::clone {

namespace {

constexpr std::uint32_t smallestChunk = 2U << 20U;
constexpr std::uint32_t largestChunk = 16U << 20U;
/// The record of each chunk is kept in memory until the end, here and in every later run that reads the image.
constexpr std::uint64_t comfortableCount = 1ULL << 18U;

std::uint32_t chunkSizeFor(std::uint64_t usedBytes)
{
    std::uint32_t size = smallestChunk;
    while (size < largestChunk && usedBytes / size >= comfortableCount) {
        size *= 2;
    }
    return size;
}

std::string utcNow()
{
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    std::array<char, 32> text{};
    ::gmtime_r(&now, &parts);
    std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    return text.data();
}

/// The source as one run sees it.
struct Source
{
    BlockDevice device;
    /// Open, and locked against a second run.
    File file;
};

Source lockedSource(const BlockDevice& device)
{
    // Not for itself alone: readers of used blocks, such as F2FS's, insist on that for themselves.
    Source source{device, File::openDirect(device.path, O_RDONLY)};
    source.file.lockExclusively();
    return source;
}

/// Where chunks go: into the image, and then to be read back.
struct Destination
{
    ImageWriter writer;
    ReadBack readBack;
};

/// What a run reports while it reads.
struct Reading
{
    ReadErrors readErrors;
    HoleList holes;
    Progress& progress;
};

void writeChunks(const Source& source, ImageIndex& index, Destination& destination, Reading& reading)
{
    const std::uint32_t chunkSize = index.chunkSize;
    const ChunkLayout layout(index.extents, chunkSize);
    index.chunks.resize(layout.chunkCount());
    runCrew(0, layout.chunkCount(), crewSize(chunkSize), [&]() -> ChunkTask {
        auto content = std::make_shared<AlignedBuffer>(chunkSize);
        auto encoder = std::make_shared<ChunkEncoder>(chunkSize);
        auto reader = std::make_shared<SourceReader>(source.file, reading.readErrors, reading.holes);
        return [&, content, encoder, reader](std::uint64_t chunk) {
            const std::uint32_t size = layout.contentSize(chunk);
            reader->read(layout.pieces(chunk), content->bytes().first(size));
            EncodedChunk encoded = encoder->encode(*content, size);
            destination.writer.append(encoded);
            destination.readBack.add(encoded.record);
            index.chunks[chunk] = encoded.record;
            reading.progress.add(size);
        };
    });
}

Metadata describe(const Source& source, const SourceMap& map, bool frozen)
{
    Metadata metadata;
    metadata.tool = std::string("kestro-clone ") + programVersion;
    metadata.created = utcNow();
    metadata.device = source.device.path;
    metadata.model = source.device.model;
    metadata.partitionTable = map.partitionTable;
    metadata.parts = map.parts;
    metadata.frozen = frozen;
    metadata.needsRecovery = map.needsRecovery;
    return metadata;
}

/// Reads back what was written, past the cache, before it may count as complete.
void checkWritten(const File& image, Destination& destination, const ImageIndex& index)
{
    destination.readBack.finish();
    image.dropCache();
    const ImageIndex readBack = readIndex(image, destination.writer.head());
    if (readBack.chunks.size() != index.chunks.size() || readBack.extents != index.extents) {
        throw Failure(ExitCode::Mismatch, image.path() + " does not hold what was written to it");
    }
}

std::string holesSentence(const ExtentList& holes, const std::string& image)
{
    return image + " is complete but for " + std::to_string(holes.size()) + " unreadable places with "
        + exactSize(totalLength(holes)) + ", kept as zeros";
}

ExtentList makeImage(const Source& source, NewImage& image, ReadErrors readErrors, Progress& progress)
{
    Reading reading{readErrors, {}, progress};
    FrozenMounts frozen(mountsOf(source.device));
    SourceMap map = mapSource(source.device);
    Metadata metadata = describe(source, map, frozen.any());
    const std::uint32_t chunkSize = chunkSizeFor(totalLength(map.extents));
    ImageIndex index{source.device.size, chunkSize, source.device.sectorSize, std::move(map.extents), {}};
    Destination destination{{image.file(), image.head()}, {image.file(), chunkSize}};
    try {
        progress.nextPhase(totalLength(index.extents));
        writeChunks(source, index, destination, reading);
        frozen.thaw();
        progress.nextPhase(1);
        metadata.holes = reading.holes.inDeviceOrder(source.device.size);
        destination.writer.writeIndex(index, metadata);
        checkWritten(image.file(), destination, index);
        // A small image is done before the next line of progress would have noticed.
        progress.stopWithoutReader();
        throwIfInterrupted();
        destination.writer.commit();
    } catch (...) {
        destination.writer.abandon();
        throw;
    }
    return metadata.holes;
}

} // namespace

void backUp(const std::string& device, const std::string& image, ReadErrors readErrors)
{
    watchSignals(WhenAlone::Stop);
    const Source source = lockedSource(blockDeviceAt(device));
    refuseImageOn(source.device, image);
    NewImage target(image);
    Progress progress({{"reading, writing and reading back", 95}, {"finishing", 5}}, WhenAlone::Stop);
    const ExtentList holes = makeImage(source, target, readErrors, progress);
    target.takePlace();
    // Opened as every later user will.
    const ImageReader finished(image);
    if (!holes.empty()) {
        throw Failure(ExitCode::Holes, holesSentence(holes, image));
    }
    progress.finish("backed up " + humanSize(totalLength(finished.index().extents)) + " as "
        + humanSize(finished.head().root.fileSize));
}

} // namespace kestro::clone
