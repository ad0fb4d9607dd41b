// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/check.h"
#include "clone/imagesamples.h"

#include "clone/chunkcodec.h"
#include "clone/customcommands.h"
#include "clone/failure.h"
#include "clone/file.h"
#include "clone/imagereader.h"
#include "clone/imagewriter.h"
#include "clone/newimage.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

using namespace kestro::clone;

namespace {

bool isLong()
{
    const char* value = std::getenv("KESTRO_LONG");
    return value != nullptr && std::string(value) == "1";
}

/// Of the parts of an image, so many are its head and its sections; the others are chunks.
constexpr std::size_t structures = 5;

/// The parts of an image that count, as ranges of the file.
std::vector<Extent> countingParts(const std::string& path)
{
    const ImageReader image(path);
    std::vector<Extent> parts{{0, bodyPosition}};
    const RootRecord& root = image.head().root;
    for (const Section& section : {root.index, root.chunks, root.metadata, root.custom}) {
        parts.push_back({section.position, section.size});
    }
    ChunkRecords records(image.file(), image.chunks());
    const std::uint64_t count = ChunkLayout(image.index().extents, image.index().chunkSize).chunkCount();
    for (std::uint64_t number = 0; number < count; ++number) {
        const ChunkRecord chunk = records.at(number);
        if (chunk.storedSize > 0) {
            parts.push_back({chunk.position, roundedUp(chunk.storedSize)});
        }
    }
    return parts;
}

/// Changes one bit, asks, and changes it back.
bool isGoodWithFlippedBit(const std::string& path, std::uint64_t bit)
{
    const int fd = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
    unsigned char byte = 0;
    bool written = ::pread(fd, &byte, 1, static_cast<off_t>(bit / 8)) == 1;
    const auto flipped = static_cast<unsigned char>(byte ^ (1U << (bit % 8)));
    written = written && ::pwrite(fd, &flipped, 1, static_cast<off_t>(bit / 8)) == 1;
    const bool good = isGoodImage(path);
    written = written && ::pwrite(fd, &byte, 1, static_cast<off_t>(bit / 8)) == 1;
    ::close(fd);
    check(written, "the bit could be changed");
    return good;
}

void oneFlippedBitShows(const std::string& path)
{
    const auto parts = countingParts(path);
    const std::size_t step = isLong() ? 8 : 8 * 37;
    std::set<std::uint64_t> bits;
    // The header, the roots and the sections byte by byte, the chunks at random places.
    for (std::size_t part = 0; part < structures; ++part) {
        for (std::uint64_t bit = 0; bit < parts[part].length * 8; bit += step) {
            bits.insert(parts[part].offset * 8 + bit + bit / 8 % 8);
        }
    }
    std::mt19937_64 random(7); // NOLINT: the same places in every run
    for (int i = 0; i < (isLong() ? 2000 : 200); ++i) {
        const Extent& part = parts[structures + random() % (parts.size() - structures)];
        bits.insert(part.offset * 8 + random() % (part.length * 8));
    }
    for (const std::uint64_t bit : bits) {
        check(!isGoodWithFlippedBit(path, bit), "a flipped bit at byte " + std::to_string(bit / 8));
    }
    check(isGoodImage(path), "the image is as it was");
}

void everyTruncationShows(const std::string& path)
{
    const std::string copy = path + ".cut";
    for (const Extent& part : countingParts(path)) {
        for (const std::uint64_t size : {part.offset, part.offset + 1, part.end() - 1, part.end()}) {
            std::filesystem::copy_file(path, copy, std::filesystem::copy_options::overwrite_existing);
            const bool whole = size >= std::filesystem::file_size(path);
            std::filesystem::resize_file(copy, size);
            check(isGoodImage(copy) == whole, "cut at " + std::to_string(size));
        }
    }
    std::filesystem::remove(copy);
}

/// An older record that says "complete" must not come back into force when the newer one is damaged.
void olderRootsStayOutOfForce(const std::string& path)
{
    const ImageReader image(path);
    check(image.head().root.complete && image.head().root.sequence == 4, "begun, named, completed, one file added");
    check(!isGoodWithFlippedBit(path, (rootPosition + image.head().slot * rootSize + 100) * 8), "the newest root");
}

std::string contentOfFile(const std::string& path)
{
    return contentOf(path, 64U << 20U).value_or("");
}

/// An image as a power cut left it: the custom files it has then, or -1 when it is not good.
int filesAfterPowerCut(const std::string& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
    return isGoodImage(path) ? static_cast<int>(ImageReader(path).customFiles().size()) : -1;
}

/// The power fails while a file is added to a finished image. What goes behind the image is durable before the root
/// record is written, and of the root's block every sector is the old one or the new one.
void powerCutsLeaveTheOldFilesOrTheNew(const std::string& path)
{
    const std::string copy = path + ".cut";
    std::filesystem::copy_file(path, copy, std::filesystem::copy_options::overwrite_existing);
    const std::string before = contentOfFile(copy);
    const std::size_t root = rootPosition + (1 - ImageReader(copy).head().slot) * rootSize;
    std::ofstream(path + ".third") << "third";
    writeCustomFile("kim://" + copy + "/third", path + ".third");
    const std::string after = contentOfFile(copy);
    check(after.size() > before.size() && after.substr(root, rootSize) != before.substr(root, rootSize), "added");
    for (const std::size_t size : {before.size() + 1, before.size() + 512, after.size() - 1, after.size()}) {
        const std::string torn = before + after.substr(before.size(), size - before.size());
        check(filesAfterPowerCut(copy, torn) == 2, "the new file is there to byte " + std::to_string(size));
    }
    constexpr std::size_t sector = 512;
    for (unsigned written = 0; written < 1U << (rootSize / sector); ++written) {
        std::string torn = before + after.substr(before.size());
        for (std::size_t i = 0; i < rootSize / sector; ++i) {
            const std::size_t place = root + i * sector;
            torn.replace(place, sector, (written >> i & 1U) != 0 ? after : before, place, sector);
        }
        const int files = filesAfterPowerCut(copy, torn);
        check(files == ((written & 1U) != 0 ? 3 : 2), "sectors " + std::to_string(written) + " of the root");
    }
    check(filesAfterPowerCut(copy, before + std::string(12345, 'x')) == 2, "anything behind the image");
    writeCustomFile("kim://" + copy + "/third", path + ".third");
    check(ImageReader(copy).customFiles().size() == 3, "the second try works");
    std::filesystem::remove(copy);
}

ImageState stateOf(const std::string& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
    return imageStateAt(path);
}

/// What stands there when of a head, which nothing follows, only some sectors were written.
ImageState stateOfTornHead(const std::string& torn, const std::string& head)
{
    if (torn == head) {
        return ImageState::Incomplete;
    }
    // Deliberate: without the magic nobody can tell whose bytes these are, so they are refused and not overwritten.
    const bool isUnknown = torn[0] == '\0' && torn.find_first_not_of('\0') != std::string::npos;
    return isUnknown ? ImageState::Foreign : ImageState::Missing;
}

/// The power fails while an image is begun: the next run begins it again, unless the magic was not written.
void powerCutsAtTheBeginning(const std::string& path)
{
    const std::string copy = path + ".begun";
    {
        const NewImage begun(copy);
    }
    const std::string head = contentOfFile(copy);
    check(head.size() == bodyPosition && imageStateAt(copy) == ImageState::Incomplete, "an image that was begun");
    std::mt19937 random(3); // NOLINT: the same numbers in every run
    constexpr std::size_t sector = 512;
    for (int round = 0; round < 300; ++round) {
        std::string torn = head;
        for (std::size_t place = 0; place < torn.size(); place += sector) {
            torn.replace(place, sector, random() % 2 == 0 ? head.substr(place, sector) : std::string(sector, '\0'));
        }
        const ImageState state = stateOf(copy, torn);
        check(state == stateOfTornHead(torn, head), "torn head " + std::to_string(round));
        if (state == ImageState::Missing) {
            const NewImage again(copy);
        }
    }
    check(stateOf(copy, std::string(head.size(), '\0')) == ImageState::Missing, "a head of zeros");
    check(stateOf(copy, std::string(4096, '\0')) == ImageState::Missing, "a few zeros");
    check(stateOf(copy, head + "half a custom file") == ImageState::Incomplete, "begun, with something behind it");
    check(stateOf(copy, std::string(bodyPosition + 1, '\0')) == ImageState::Foreign, "more zeros than a head has");
    check(stateOf(copy, "text") == ImageState::Foreign, "somebody's text");
    const std::string damaged = std::string(1, 'X') + contentOfFile(path).substr(1);
    check(stateOf(copy, damaged) == ImageState::Foreign, "a complete image with a damaged magic");
    const std::string rootless = contentOfFile(path).replace(rootPosition, 2 * rootSize, 2 * rootSize, '\0');
    check(stateOf(copy, rootless) == ImageState::Damaged, "a complete image without its roots");
    std::filesystem::remove(copy);
}

void customFilesAreLimited(const std::string& path)
{
    const std::string full = path + ".full";
    CustomFiles files;
    while (files.size() < mostCustomFiles) {
        files[std::to_string(files.size())] = {};
    }
    (void)writeFreshHead(openLockedImage(full, O_RDWR | O_CREAT), files);
    std::ofstream(full + ".record") << "record";
    writeCustomFile("kim://" + full + "/0", full + ".record");
    try {
        writeCustomFile("kim://" + full + "/another", full + ".record");
        check(false, "another custom file than the most is refused");
    } catch (const Failure& failure) {
        check(failure.code() == ExitCode::Refused, failure.what());
    }
}

/// The index goes through a buffer of 1 MiB, which so many extents fill to the last byte.
constexpr std::size_t fillingExtents = ((1U << 20U) - indexHeaderSize) / sizeof(Extent);

void indexesOfAnySizeAreWritten(const std::string& path)
{
    const std::string scattered = path + ".scattered";
    for (const std::size_t count : {fillingExtents - 1, fillingExtents, fillingExtents + 1}) {
        ExtentList extents(count);
        for (std::size_t i = 0; i < count; ++i) {
            extents[i] = {2 * i * blockSize, blockSize};
        }
        const ImageIndex index{2 * count * blockSize, smallestChunk, 512, extents};
        const ChunkLayout layout(index.extents, index.chunkSize);
        {
            const NewImage image(scattered);
            ImageWriter writer(image.file(), image.head(), layout.chunkCount());
            AlignedBuffer zeros(smallestChunk);
            ChunkEncoder encoder(smallestChunk);
            for (std::uint64_t chunk = 0; chunk < layout.chunkCount(); ++chunk) {
                EncodedChunk encoded = encoder.encode(zeros, layout.contentSize(chunk));
                writer.append(chunk, encoded);
            }
            writer.writeIndex(index, {});
            writer.commit();
        }
        check(isGoodImage(scattered) && ImageReader(scattered).index().extents.size() == count,
            "an image of " + std::to_string(count) + " extents");
        std::filesystem::remove(scattered);
    }
}

} // namespace

int main()
{
    std::string folder = (std::filesystem::temp_directory_path() / "kestro-image.XXXXXX").string();
    if (::mkdtemp(folder.data()) == nullptr) {
        return 1;
    }
    const std::string path = makeSampleImage(folder + "/sample.kim");
    check(isGoodImage(path), "the sample is good");
    check(ImageReader(path).customFiles().size() == 2, "both custom files");
    olderRootsStayOutOfForce(path);
    oneFlippedBitShows(path);
    everyTruncationShows(path);
    powerCutsLeaveTheOldFilesOrTheNew(path);
    powerCutsAtTheBeginning(path);
    customFilesAreLimited(path);
    indexesOfAnySizeAreWritten(path);
    std::filesystem::remove_all(folder);
    return checkResult();
}
