// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/imagesamples.h"

#include "clone/chunkcodec.h"
#include "clone/customcommands.h"
#include "clone/failure.h"
#include "clone/imagereader.h"
#include "clone/imagewriter.h"
#include "clone/newimage.h"
#include "clone/unpacker.h"

#include <algorithm>
#include <fstream>
#include <random>

using namespace kestro::clone;

namespace {

constexpr std::uint32_t chunkSize = smallestChunk;

void fillChunk(AlignedBuffer& content, std::uint64_t chunk)
{
    std::mt19937 random(static_cast<unsigned>(chunk)); // NOLINT: the same bytes in every run
    const unsigned mask = chunk % 3 == 0 ? 0U : (chunk % 3 == 1 ? 3U : 255U);
    std::generate(
        content.bytes().begin(), content.bytes().end(), [&] { return static_cast<std::byte>(random() & mask); });
}

} // namespace

std::string makeSampleImage(const std::string& path)
{
    const std::string record = path + ".record";
    std::ofstream(record) << "UUID=1\nVersion=1.1\n";
    writeCustomFile("kim://" + path + "/DiskInfo", record);
    {
        NewImage image(path);
        const ImageIndex index{
            64U << 20U, chunkSize, 512, {{0, 4096}, {1U << 20U, std::uint64_t{3} * chunkSize}, {32U << 20U, 8192}}};
        const ChunkLayout layout(index.extents, chunkSize);
        ImageWriter writer(image.file(), image.head(), layout.chunkCount());
        ChunkEncoder encoder(chunkSize);
        for (std::uint64_t chunk = 0; chunk < layout.chunkCount(); ++chunk) {
            AlignedBuffer content(chunkSize);
            fillChunk(content, chunk);
            EncodedChunk encoded = encoder.encode(content, layout.contentSize(chunk));
            writer.append(chunk, encoded);
        }
        Metadata metadata;
        metadata.tool = "sample";
        metadata.parts = {{0, {0, 64U << 20U}, "ext4", "label", "libext2fs", 1}};
        writer.writeIndex(index, metadata);
        writer.commit();
    }
    writeCustomFile("kim://" + path + "/later", record);
    std::remove(record.c_str());
    return path;
}

bool isGoodImage(const std::string& path)
{
    try {
        const ImageReader image(path);
        const ChunkLayout layout(image.index().extents, image.index().chunkSize);
        Unpacker unpacker(image, layout);
        for (std::uint64_t chunk = 0; chunk < layout.chunkCount(); ++chunk) {
            (void)unpacker.unpack(chunk);
        }
        return true;
    } catch (const Failure&) {
        return false;
    }
}
