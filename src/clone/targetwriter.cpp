// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/targetwriter.h"

#include "clone/alignedbuffer.h"
#include "clone/crew.h"
#include "clone/failure.h"
#include "clone/guards.h"
#include "clone/partitions.h"
#include "clone/piecesio.h"
#include "clone/process.h"
#include "clone/unpacker.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <memory>
#include <thread>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>

namespace kestro::clone {

namespace {

/// Superblocks and partition tables of all kinds begin in here.
constexpr std::uint64_t beginningSize = 1ULL << 20U;

/// What one thread needs to write chunks.
struct Writing
{
    Unpacker unpacker;
    PiecesIo io;
};

/// What one thread needs to read chunks back.
struct Reading
{
    ChunkRecords records;
    AlignedBuffer content;
    PiecesIo io;
};

/// The pieces before (or from) a place of the device. Content stands in the order of the pieces, so that what comes
/// before is a prefix of it.
ExtentList piecesBefore(const ExtentList& pieces, std::uint64_t place)
{
    ExtentList result;
    for (const Extent& piece : pieces) {
        if (piece.offset < place) {
            result.push_back({piece.offset, std::min(piece.length, place - piece.offset)});
        }
    }
    return result;
}

ExtentList piecesFrom(const ExtentList& pieces, std::uint64_t place)
{
    ExtentList result;
    for (const Extent& piece : pieces) {
        if (piece.end() > place) {
            const std::uint64_t begin = std::max(piece.offset, place);
            result.push_back({begin, piece.end() - begin});
        }
    }
    return result;
}

/// Lets the kernel write zeros, which many devices do by themselves. It promises that the range then reads as zeros,
/// which discarding does not. False when it cannot do it everywhere.
bool zeroOut(const File& device, const ExtentList& pieces)
{
    return std::all_of(pieces.begin(), pieces.end(), [&](const Extent& piece) {
        std::array<std::uint64_t, 2> range{piece.offset, piece.length};
        return ::ioctl(device.fd(), BLKZEROOUT, range.data()) == 0;
    });
}

/// Tells the kernel to read the partition table; 0, or the error. Whoever looks at a partition for a moment, as udev
/// does, stands in the way.
int rereadPartitions(const File& device)
{
    constexpr int tries = 20;
    int error = EBUSY;
    for (int i = 0; i < tries && error == EBUSY; ++i) {
        if (i > 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        error = ::ioctl(device.fd(), BLKRRPART, 0) == 0 ? 0 : errno;
    }
    return error;
}

/// Devices that have no partitions of their own accord, such as loop devices, may have been given some: those are taken
/// away and the new ones given. False when the kernel does not have all of these then, whatever the tool says.
bool replacePartitions(const BlockDevice& disk)
{
    if (partitionNodesOf(disk).empty()) {
        return true;
    }
    (void)runQuietly({"partx", "-d", disk.path});
    (void)runQuietly({"partx", "-a", disk.path});
    const auto partitions = partitionsOf(disk);
    return std::all_of(partitions.begin(), partitions.end(), [&](const Partition& partition) {
        return partition.isExtended || !partitionNodeAt(disk, partition.range.offset, partition.range.length).empty();
    });
}

} // namespace

TargetWriter::TargetWriter(const ImageReader& image, const BlockDevice& target, Progress& progress)
    : m_image(image)
    , m_target(target)
    , m_progress(progress)
    , m_layout(image.index().extents, image.index().chunkSize)
    , m_device(File::openDirect(target.path, O_RDWR | O_EXCL))
{
    refuseAnotherDevice(m_device, target);
}

void TargetWriter::run()
{
    const std::uint64_t bytes = totalLength(m_image.index().extents);
    m_progress.nextPhase(bytes);
    wipeBeginning();
    writeChunks();
    settle();
    m_progress.nextPhase(bytes);
    const std::uint64_t first = beginningChunks();
    checkChunks(first, m_layout.chunkCount());
    try {
        writeBeginning(first);
        settle();
        checkChunks(0, first);
    } catch (...) {
        wipeBeginningAgain();
        throw;
    }
    readPartitionsAgain();
}

void TargetWriter::wipeBeginning()
{
    const AlignedBuffer zeros(std::min(beginningSize, m_target.size));
    m_device.writeAt(zeros.bytes().first(std::min(beginningSize, m_target.size)), 0);
    m_device.sync();
}

void TargetWriter::wipeBeginningAgain() noexcept
{
    try {
        wipeBeginning();
    } catch (const std::exception&) {
        // The failure that led here is the one to be reported.
    }
}

void TargetWriter::writeChunks()
{
    runCrew(0, m_layout.chunkCount(), crewSize(m_image.index()), [this]() -> ChunkTask {
        auto own = std::make_shared<Writing>(Writing{{m_image, m_layout}, {}});
        return [this, own](std::uint64_t chunk) {
            const auto content = own->unpacker.unpack(chunk);
            const auto pieces = piecesFrom(m_layout.pieces(chunk), beginningSize);
            if (own->unpacker.record().codec != Codec::Zero || !zeroOut(m_device, pieces)) {
                own->io.write(m_device, pieces, content.subspan(content.size() - totalLength(pieces)));
            }
            m_progress.add(content.size());
        };
    });
}

std::uint64_t TargetWriter::beginningChunks() const
{
    std::uint64_t count = 0;
    while (count < m_layout.chunkCount() && m_layout.pieces(count).front().offset < beginningSize) {
        ++count;
    }
    return count;
}

void TargetWriter::writeBeginning(std::uint64_t chunkCount)
{
    Writing own{{m_image, m_layout}, {}};
    for (std::uint64_t chunk = 0; chunk < chunkCount; ++chunk) {
        own.io.write(m_device, piecesBefore(m_layout.pieces(chunk), beginningSize), own.unpacker.unpack(chunk));
    }
}

void TargetWriter::checkChunks(std::uint64_t first, std::uint64_t last)
{
    const std::uint32_t chunkSize = m_image.index().chunkSize;
    runCrew(first, last, crewSize(m_image.index()), [this, chunkSize]() -> ChunkTask {
        auto own = std::make_shared<Reading>(Reading{{m_image.file(), m_image.chunks()}, AlignedBuffer(chunkSize), {}});
        return [this, own](std::uint64_t chunk) {
            const auto bytes = own->content.bytes().first(m_layout.contentSize(chunk));
            own->io.read(m_device, m_layout.pieces(chunk), bytes);
            if (hashOf(bytes) != own->records.at(chunk).contentHash) {
                throwMismatch(m_target.path, " at byte " + std::to_string(m_layout.pieces(chunk).front().offset));
            }
            m_progress.add(bytes.size());
        };
    });
}

void TargetWriter::settle()
{
    m_device.sync();
    ::ioctl(m_device.fd(), BLKFLSBUF, 0);
    // Partitions have caches of their own, which know nothing of what was written through the disk.
    for (const std::string& node : partitionNodesOf(m_target)) {
        const File partition(::open(node.c_str(), O_RDONLY | O_CLOEXEC), node);
        ::ioctl(partition.fd(), BLKFLSBUF, 0);
    }
}

void TargetWriter::readPartitionsAgain()
{
    if (m_image.metadata().partitionTable.empty()) {
        return;
    }
    const int error = rereadPartitions(m_device);
    if (error != 0 && !replacePartitions(m_target)) {
        throw Failure(ExitCode::NotRemounted,
            m_target.path + " is restored, but the kernel still uses its old partition table: " + errorText(error));
    }
}

} // namespace kestro::clone
