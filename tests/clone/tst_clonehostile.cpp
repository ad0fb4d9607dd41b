// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/check.h"
#include "clone/imagesamples.h"
#include "clone/resealed.h"

#include "clone/imageformat.h"
#include "clone/imageindex.h"
#include "clone/imagereader.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <sys/resource.h>
#include <zstd.h>

using namespace kestro::clone;

namespace {

ImageBytes bytesOf(const std::string& path)
{
    const std::string content = contentOf(path, 64U << 20U).value_or("");
    const auto bytes = std::as_bytes(std::span(content));
    return {bytes.begin(), bytes.end()};
}

/// Where things stand in the sample.
struct Places
{
    std::size_t root;
    std::size_t index;
    std::size_t firstExtent;
    std::size_t records;
};

Places placesIn(const std::string& path)
{
    const ImageReader image(path);
    const RootRecord& root = image.head().root;
    return {rootPosition + image.head().slot * rootSize, root.index.position, root.index.position + indexHeaderSize,
        root.chunks.position};
}

ChunkRecord recordAt(const ImageBytes& image, std::size_t position)
{
    ChunkRecord record;
    std::memcpy(&record, image.data() + position, sizeof record);
    return record;
}

void putRecord(ImageBytes& image, std::size_t position, const ChunkRecord& record)
{
    std::memcpy(image.data() + position, &record, sizeof record);
}

/// A small frame that unpacks to 1 GiB of zeros.
std::vector<std::byte> bomb()
{
    const std::vector<std::byte> zeros(1U << 20U);
    std::vector<std::byte> packed(1U << 20U);
    ZSTD_CCtx* context = ZSTD_createCCtx();
    ZSTD_outBuffer out{packed.data(), packed.size(), 0};
    for (int i = 0; i < 1024; ++i) {
        ZSTD_inBuffer in{zeros.data(), zeros.size(), 0};
        ZSTD_compressStream2(context, &out, &in, i == 1023 ? ZSTD_e_end : ZSTD_e_continue);
    }
    ZSTD_freeCCtx(context);
    packed.resize(out.pos);
    return packed;
}

/// Puts the bomb behind the image, as a chunk that claims to be of the usual size.
void plantBomb(ImageBytes& image, const Places& at)
{
    std::vector<std::byte> stored = bomb();
    ChunkRecord record = recordAt(image, at.records + sizeof(ChunkRecord));
    record.position = image.size();
    record.storedSize = std::min<std::uint32_t>(static_cast<std::uint32_t>(stored.size()), smallestChunk);
    stored.resize(roundedUp(record.storedSize));
    record.storedHash = hashOf(stored);
    image.insert(image.end(), stored.begin(), stored.end());
    putRecord(image, at.records + sizeof(ChunkRecord), record);
    putNumber(image, at.root + 40, image.size());
}

using Spoil = std::function<void(ImageBytes&, const Places&)>;

const std::vector<std::pair<const char*, Spoil>>& hostileCases()
{
    static const std::vector<std::pair<const char*, Spoil>> cases{
        {"very many extents", [](ImageBytes& i, const Places& at) { putNumber(i, at.index + 40, 1ULL << 60U); }},
        {"very many chunks", [](ImageBytes& i, const Places& at) { putNumber(i, at.index + 48, 1ULL << 23U); }},
        {"more bytes and chunks than the extents have",
            [](ImageBytes& i, const Places& at) {
                putNumber(i, at.index + 48, 6);
                putNumber(i, at.index + 56, std::uint64_t{6} * smallestChunk);
            }},
        {"a byte more than the extents have",
            [](ImageBytes& i, const Places& at) { putNumber(i, at.index + 56, numberAt(i, at.index + 56) + 1); }},
        {"an extent behind the source",
            [](ImageBytes& i, const Places& at) { putNumber(i, at.firstExtent + 32, 1ULL << 40U); }},
        {"overlapping extents", [](ImageBytes& i, const Places& at) { putNumber(i, at.firstExtent + 16, 0); }},
        {"a table without room for its chunks", [](ImageBytes& i, const Places& at) { putNumber(i, at.root + 80, 0); }},
        {"a table in place of the index",
            [](ImageBytes& i, const Places& at) { putNumber(i, at.root + 72, at.index); }},
        {"chunks that share their bytes",
            [](ImageBytes& i, const Places& at) {
                const ChunkRecord stored = recordAt(i, at.records + 2 * sizeof(ChunkRecord));
                putRecord(i, at.records, stored);
                putRecord(i, at.records + sizeof(ChunkRecord), stored);
            }},
        {"a chunk far behind the file",
            [](ImageBytes& i, const Places& at) { putNumber(i, at.records + sizeof(ChunkRecord), 1ULL << 50U); }},
        {"a decompression bomb", plantBomb},
    };
    return cases;
}

void hostileImagesAreRefused(const std::string& path)
{
    const ImageBytes good = bytesOf(path);
    const Places at = placesIn(path);
    const std::string copy = path + ".hostile";
    const auto isGoodAfter = [&](const Spoil& spoil) {
        ImageBytes image = good;
        spoil(image, at);
        reseal(image, sealSections | sealRoots | sealHeader);
        std::ofstream(copy, std::ios::binary | std::ios::trunc)
            .write(reinterpret_cast<const char*>(image.data()), static_cast<std::streamsize>(image.size()));
        return isGoodImage(copy);
    };
    check(isGoodAfter([](ImageBytes&, const Places&) {}), "untouched, with hashes put right, it is good");
    for (const auto& [name, spoil] : hostileCases()) {
        check(!isGoodAfter(spoil), name);
    }
    check(!std::filesystem::is_empty(copy), "the last case was written");
}

/// Whatever an image says, reading it takes less than 256 MiB. A sanitizer needs memory of its own.
void memoryStayedBounded()
{
#ifndef __SANITIZE_ADDRESS__
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    check(usage.ru_maxrss < 256L * 1024, "peak memory in KiB: " + std::to_string(usage.ru_maxrss));
#endif
}

} // namespace

int main()
{
    std::string folder = (std::filesystem::temp_directory_path() / "kestro-hostile.XXXXXX").string();
    if (::mkdtemp(folder.data()) == nullptr) {
        return 1;
    }
    hostileImagesAreRefused(makeSampleImage(folder + "/sample.kim"));
    memoryStayedBounded();
    std::filesystem::remove_all(folder);
    return checkResult();
}
