// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/restore.h"

#include "clone/blockdevice.h"
#include "clone/failure.h"
#include "clone/guards.h"
#include "clone/humansize.h"
#include "clone/imagereader.h"
#include "clone/interruption.h"
#include "clone/metadata.h"
#include "clone/process.h"
#include "clone/progress.h"
#include "clone/targetwriter.h"
#include "clone/unmounted.h"
#include "clone/verify.h"

#include <fcntl.h>
#include <unistd.h>

namespace kestro::clone {

namespace {

void refuseHoles(const ImageReader& image, ReadErrors readErrors)
{
    const ExtentList& holes = image.metadata().holes;
    if (!holes.empty() && readErrors == ReadErrors::Fail) {
        throw Failure(ExitCode::Holes,
            image.file().path() + " has " + std::to_string(holes.size())
                + " places that could not be read when it was made; --rescue restores it with zeros there");
    }
}

/// Not for a source of which nothing is known: it may have been a disk.
bool isOfOneFileSystem(const Metadata& metadata)
{
    return metadata.partitionTable.empty() && metadata.parts.size() == 1 && !metadata.parts.front().type.empty();
}

void refuseUnfitTarget(const ImageReader& image, const BlockDevice& target)
{
    refuseSmallTarget(target, image.index().sourceSize);
    const bool wholeDisk = !image.metadata().partitionTable.empty();
    const std::uint32_t needed = image.index().sectorSize;
    if (target.sectorSize > needed || (wholeDisk && target.sectorSize != needed)) {
        throw Failure(ExitCode::Refused,
            "sector sizes differ: the image's source has " + std::to_string(needed) + " bytes, " + target.path + " has "
                + std::to_string(target.sectorSize));
    }
    if (wholeDisk && target.isPartition) {
        throw Failure(ExitCode::Refused, "the image is of a whole disk, but " + target.path + " is a partition");
    }
    if (isOfOneFileSystem(image.metadata()) && !partitionNodesOf(target).empty()) {
        throw Failure(ExitCode::Refused, "the image is of one file system, but " + target.path + " has partitions");
    }
    refuseImageOn(target, image.file().path());
    refuseSwapOn(target);
}

/// Whoever looks for the partitions next asks udev's database. What udev does with a disk that was written begins when
/// it is neither open nor locked any more.
void letOthersSee(DeviceLocks& locks)
{
    locks.clear();
    (void)runQuietly({"udevadm", "settle", "--timeout=10"});
}

/// Read through the page cache, emptied of the image first: the check then reads the medium, and what the check has
/// read need not come from a slow medium a second time, as far as memory is free.
File lockedImage(const std::string& path)
{
    (void)openImage(path, O_RDONLY);
    File file = File::open(path, O_RDONLY);
    // Nothing is written to it, and some network file systems lock exclusively only what is open for writing.
    file.lockShared();
    if (!file.isAt(path)) {
        throw Failure(ExitCode::Busy, path + " was replaced by another run");
    }
    // Only so that all of the cache can be emptied: file systems that cannot be written to know no such call.
    (void)::fsync(file.fd());
    file.dropCache();
    return file;
}

} // namespace

void restore(const std::string& image, const std::string& device, ReadErrors readErrors)
{
    watchSignals(WhenAlone::GoOn);
    File file = lockedImage(image);
    const ImageReader reader(std::move(file));
    const BlockDevice target = blockDeviceAt(device);
    DeviceLocks locks = lockAgainstOtherRuns(target);
    refuseHoles(reader, readErrors);
    refuseUnfitTarget(reader, target);
    Progress progress({{"checking the image", 15}, {"writing", 55}, {"reading back", 30}}, WhenAlone::GoOn);
    progress.nextPhase(reader.chunks().storedBytes);
    verifyChunks(reader, progress);

    UnmountedTarget unmounted(target);
    {
        TargetWriter writer(reader, target, progress);
        // The last chance to leave the target as it was.
        throwIfInterrupted();
        unmounted.keep();
        writer.run();
    }
    letOthersSee(locks);
    unmounted.mountAgain();
    progress.finish("restored " + humanSize(totalLength(reader.index().extents)));
}

} // namespace kestro::clone
