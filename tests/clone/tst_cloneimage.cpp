// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/check.h"
#include "clone/imagesamples.h"

#include "clone/failure.h"
#include "clone/file.h"
#include "clone/imagereader.h"

#include <cstdlib>
#include <filesystem>
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

/// The parts of an image that count, as ranges of the file.
std::vector<Extent> countingParts(const std::string& path)
{
    const ImageReader image(path);
    std::vector<Extent> parts{{0, bodyPosition}};
    for (const Section& section : {image.head().root.index, image.head().root.metadata, image.head().root.custom}) {
        parts.push_back({section.position, section.size});
    }
    for (const ChunkRecord& chunk : image.index().chunks) {
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
    for (std::size_t part = 0; part < 4; ++part) {
        for (std::uint64_t bit = 0; bit < parts[part].length * 8; bit += step) {
            bits.insert(parts[part].offset * 8 + bit + bit / 8 % 8);
        }
    }
    std::mt19937_64 random(7); // NOLINT: the same places in every run
    for (int i = 0; i < (isLong() ? 2000 : 200); ++i) {
        const Extent& part = parts[4 + random() % (parts.size() - 4)];
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
    check(image.head().root.complete && image.head().root.sequence == 3, "begun, completed, one file added");
    check(!isGoodWithFlippedBit(path, (rootPosition + image.head().slot * rootSize + 100) * 8), "the newest root");
}

void unfinishedChangesDoNotCount(const std::string& path)
{
    const std::string copy = path + ".longer";
    std::filesystem::copy_file(path, copy, std::filesystem::copy_options::overwrite_existing);
    std::filesystem::resize_file(copy, std::filesystem::file_size(path) + 12345);
    check(isGoodImage(copy), "bytes of an interrupted change behind the image");
    std::filesystem::remove(copy);
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
    unfinishedChangesDoNotCount(path);
    std::filesystem::remove_all(folder);
    return checkResult();
}
