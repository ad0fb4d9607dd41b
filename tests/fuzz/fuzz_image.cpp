// SPDX-License-Identifier: GPL-3.0-or-later
// Feeds a file to everything that reads images. The first input byte says which checksums are put right, so that the
// fuzzer gets behind them: hostile images come with correct ones.
#include "clone/alignedbuffer.h"
#include "clone/chunkcodec.h"
#include "clone/failure.h"
#include "clone/imageinfo.h"
#include "clone/imagereader.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

using namespace kestro::clone;

namespace {

using Bytes = std::vector<std::byte>;

std::uint64_t numberAt(const Bytes& image, std::size_t position)
{
    std::uint64_t value = 0;
    std::memcpy(&value, image.data() + position, sizeof value);
    return value;
}

void putNumber(Bytes& image, std::size_t position, std::uint64_t value)
{
    std::memcpy(image.data() + position, &value, sizeof value);
}

void sealBlock(Bytes& image, std::size_t position)
{
    putNumber(image, position + headerSize - 8, hashOf(std::span(image).subspan(position, headerSize - 8)));
}

/// Puts the hash of a section right that a root record names, when it lies inside the file.
void sealSection(Bytes& image, std::size_t entry)
{
    const std::uint64_t position = numberAt(image, entry);
    const std::uint64_t size = numberAt(image, entry + 8);
    if (size <= image.size() && position <= image.size() - size) {
        putNumber(image, entry + 16, hashOf(std::span(image).subspan(position, size)));
    }
}

void repair(Bytes& image, unsigned what)
{
    if (image.size() < bodyPosition) {
        return;
    }
    for (const std::size_t root : {rootPosition, rootPosition + rootSize}) {
        for (const std::size_t entry : {48U, 72U, 96U}) {
            if ((what & 1U) != 0) {
                sealSection(image, root + entry);
            }
        }
        if ((what & 2U) != 0) {
            sealBlock(image, root);
        }
    }
    if ((what & 4U) != 0) {
        sealBlock(image, 0);
    }
}

void readEverything(File file)
{
    const ImageReader image(std::move(file));
    (void)describeImage(image);
    (void)describeImageAsJson(image);
    const ImageIndex& index = image.index();
    const ChunkLayout layout(index.extents, index.chunkSize);
    AlignedBuffer stored(index.chunkSize);
    AlignedBuffer content(index.chunkSize);
    const ChunkDecoder decoder;
    for (std::uint64_t chunk = 0; chunk < std::min<std::uint64_t>(layout.chunkCount(), 64); ++chunk) {
        ChunkRecord record = index.chunks[chunk];
        if (record.codec == Codec::Zstd || record.codec == Codec::Stored) {
            const auto bytes = stored.bytes().first(roundedUp(record.storedSize));
            image.file().readAt(bytes, record.position);
            (void)decoder.decode(record, bytes, content.bytes().first(layout.contentSize(chunk)));
        }
        (void)layout.pieces(chunk);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    const auto input = std::as_bytes(std::span(data, size));
    Bytes image(input.begin() + 1, input.end());
    repair(image, data[0]);
    File file(::memfd_create("image", MFD_CLOEXEC), "image");
    try {
        file.writeAt(image, 0);
        readEverything(std::move(file));
    } catch (const Failure&) {
        // Refusing an image is what most inputs ask for.
    }
    return 0;
}
