// SPDX-License-Identifier: GPL-3.0-or-later
// make_large_image FILE TIB: an image of a source of that size, used all over in as many places as an image can list,
// full of zeros. For cases of the command line.
#include "clone/failure.h"
#include "clone/imagewriter.h"
#include "clone/newimage.h"

#include <cstdio>
#include <cstdlib>
#include <string>

using namespace kestro::clone;

namespace {

/// Equal parts of the source, with a block between each two.
ExtentList scattered(std::uint64_t size)
{
    ExtentList extents;
    const std::uint64_t step = size / mostExtents / blockSize * blockSize;
    for (std::uint64_t i = 0; i < mostExtents; ++i) {
        extents.push_back({i * step, step - blockSize});
    }
    return extents;
}

void make(const std::string& path, std::uint64_t size)
{
    const ImageIndex index{size, largestChunk, 512, scattered(size)};
    const ChunkLayout layout(index.extents, index.chunkSize);
    const NewImage image(path);
    ImageWriter writer(image.file(), image.head(), layout.chunkCount());
    AlignedBuffer zeros(largestChunk);
    ChunkEncoder encoder(largestChunk);
    EncodedChunk chunk = encoder.encode(zeros, largestChunk);
    for (std::uint64_t number = 0; number < layout.chunkCount(); ++number) {
        const std::uint32_t content = layout.contentSize(number);
        chunk = content == largestChunk ? chunk : encoder.encode(zeros, content);
        writer.append(number, chunk);
    }
    writer.writeIndex(index, {});
    writer.commit();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        return 2;
    }
    try {
        make(argv[1], std::strtoull(argv[2], nullptr, 10) << 40U);
        return 0;
    } catch (const Failure& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
