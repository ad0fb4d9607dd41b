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

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <memory>
#include <utility>

#include <fcntl.h>

namespace kestro::clone {

namespace {

/// The chunks that the threads work on are kept in memory, so they are small as long as the table of the chunks stays
/// small enough to be read in no time.
struct ChunkSizeRow
{
    std::uint32_t size;
    std::uint64_t mostChunks;
};
constexpr std::array chunkSizes{
    ChunkSizeRow{2U << 20U, 1ULL << 18U},
    ChunkSizeRow{4U << 20U, 1ULL << 21U},
};

std::uint32_t chunkSizeFor(std::uint64_t usedBytes)
{
    const auto row = std::find_if(chunkSizes.begin(), chunkSizes.end(),
        [usedBytes](const ChunkSizeRow& candidate) { return usedBytes <= candidate.mostChunks * candidate.size; });
    return row == chunkSizes.end() ? largestChunk : row->size;
}

/// How long a mounted source may stand still although nothing goes on: while other programs find out what is in use,
/// which they do in silence, and while it is read.
constexpr auto mappingPatience = std::chrono::minutes(10);
constexpr auto readingPatience = std::chrono::minutes(2);

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
    DeviceLocks locks;
    File file;
};

Source lockedSource(const BlockDevice& device)
{
    if (device.size == 0) {
        throw Failure(ExitCode::Refused, device.path + " has no size: no medium, or it does not answer");
    }
    DeviceLocks locks = lockAgainstOtherRuns(device);
    File file = File::openDirect(device.path, O_RDONLY);
    refuseAnotherDevice(file, device);
    return {device, std::move(locks), std::move(file)};
}

/// What was mounted since the standstill began may have been changed under the reader's hands.
void refuseNewMounts(const BlockDevice& device, const FrozenMounts& frozen)
{
    const auto mounts = mountsOf(device);
    // A frozen file system counts as writable; one that is held read-only does so only when somebody undid that.
    const auto still = frozen.devices();
    if (std::any_of(mounts.begin(), mounts.end(),
            [&](const Mount& mount) { return hasWritableFileSystem(mount) && !still.contains(deviceOf(mount)); })) {
        throw Failure(ExitCode::Busy, device.path + " was mounted for writing while it was being read");
    }
}

/// Keeps everybody from mounting a source that is not mounted while it is read. Not to be had before its used blocks
/// are known, because some readers of them, such as F2FS's, insist on having the device for themselves.
File claimed(const BlockDevice& device, const FrozenMounts& frozen)
{
    File claim(::open(device.path.c_str(), O_RDONLY | O_EXCL | O_CLOEXEC), device.path);
    refuseNewMounts(device, frozen);
    if (!claim.isOpen()) {
        refuseUnknownUser(device);
    }
    return claim;
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
    FrozenMounts& frozen;
    Progress& progress;
};

void writeChunks(const Source& source, const ImageIndex& index, const ChunkLayout& layout, Destination& destination,
    Reading& reading)
{
    const std::uint32_t chunkSize = index.chunkSize;
    const auto beat = [&reading] { reading.frozen.beat(); };
    runCrew(0, layout.chunkCount(), crewSize(index, chunkSize), [&]() -> ChunkTask {
        auto content = std::make_shared<AlignedBuffer>(chunkSize);
        auto encoder = std::make_shared<ChunkEncoder>(chunkSize);
        auto reader = std::make_shared<SourceReader>(source.file, reading.readErrors, reading.holes, beat);
        return [&, content, encoder, reader](std::uint64_t chunk) {
            const std::uint32_t size = layout.contentSize(chunk);
            reader->read(layout.pieces(chunk), content->bytes().first(size));
            EncodedChunk encoded = encoder->encode(*content, size);
            destination.writer.append(chunk, encoded);
            destination.readBack.add(encoded.record);
            reading.frozen.beat();
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

/// Reads back what was written after the chunks, past the cache, before it may count as complete.
void checkSections(const File& image, const RootRecord& root)
{
    image.dropCache();
    for (const Section& section : {root.index, root.metadata, root.custom}) {
        if (section.size > 0 && !SectionReader(image, section).finish()) {
            throwMismatch(image.path());
        }
    }
}

/// Opens the finished image as every later user will. Until that has worked, an older one stays in force.
ImageReader opened(const File& image)
{
    image.dropCache();
    try {
        return ImageReader(image.path());
    } catch (const Failure& failure) {
        if (failure.code() == ExitCode::InvalidImage) {
            throwMismatch(image.path());
        }
        throw;
    }
}

std::string holesSentence(const ExtentList& holes, const std::string& image)
{
    return image + " is complete but for " + std::to_string(holes.size()) + " unreadable places with "
        + exactSize(totalLength(holes)) + ", kept as zeros";
}

ExtentList makeImage(const Source& source, NewImage& image, ReadErrors readErrors, Progress& progress)
{
    FrozenMounts frozen(mountsOf(source.device), mappingPatience);
    Reading reading{readErrors, {}, frozen, progress};
    SourceMap map = mapSource(source.device, frozen.devices());
    const File claim = claimed(source.device, frozen);
    Metadata metadata = describe(source, map, frozen.any());
    const std::uint32_t chunkSize = chunkSizeFor(totalLength(map.extents));
    const ImageIndex index{source.device.size, chunkSize, source.device.sectorSize, std::move(map.extents)};
    refuseTooLarge(index, metadata);
    const ChunkLayout layout(index.extents, chunkSize);
    Destination destination{{image.file(), image.head(), layout.chunkCount()}, {image.file(), chunkSize}};
    try {
        progress.nextPhase(totalLength(index.extents));
        frozen.setPatience(readingPatience);
        writeChunks(source, index, layout, destination, reading);
        // One partition that is mounted keeps the others from being claimed.
        refuseNewMounts(source.device, frozen);
        frozen.thaw();
        progress.nextPhase(1);
        metadata.holes = reading.holes.inDeviceOrder(source.device.size);
        destination.readBack.finish();
        destination.writer.writeIndex(index, metadata);
        checkSections(image.file(), destination.writer.head().root);
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
    const ImageReader finished = opened(target.file());
    target.takePlace();
    if (!holes.empty()) {
        throw Failure(ExitCode::Holes, holesSentence(holes, image));
    }
    progress.finish("backed up " + humanSize(totalLength(finished.index().extents)) + " as "
        + humanSize(finished.head().root.fileSize)
        + (finished.metadata().needsRecovery ? ", a file system whole because it needs recovery" : ""));
}

} // namespace kestro::clone
