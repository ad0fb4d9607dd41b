// SPDX-License-Identifier: GPL-3.0-or-later
// Feeds a file to everything that reads images. The first input byte says which checksums are put right, so that the
// fuzzer gets behind them: hostile images come with correct ones.
#include "clone/resealed.h"

#include "clone/alignedbuffer.h"
#include "clone/chunkcodec.h"
#include "clone/failure.h"
#include "clone/imageinfo.h"
#include "clone/imagereader.h"

#include <algorithm>
#include <span>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

using namespace kestro::clone;

namespace {

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
    ChunkRecords records(image.file(), image.chunks());
    for (std::uint64_t chunk = 0; chunk < std::min<std::uint64_t>(layout.chunkCount(), 64); ++chunk) {
        const ChunkRecord record = records.at(chunk);
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
    ImageBytes image(input.begin() + 1, input.end());
    reseal(image, data[0]);
    File file(::memfd_create("image", MFD_CLOEXEC), "image");
    try {
        file.writeAt(image, 0);
        readEverything(std::move(file));
    } catch (const Failure&) {
        // Refusing an image is what most inputs ask for.
    }
    return 0;
}
