// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/check.h"

#include "clone/chunktable.h"
#include "clone/failure.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <thread>

#include <fcntl.h>
#include <sys/resource.h>

using namespace kestro::clone;

namespace {

constexpr std::uint64_t place = 4096;
constexpr std::uint64_t farEnd = 1ULL << 50U;

ChunkRecord recordOf(std::uint64_t chunk)
{
    return {(chunk + 3) * smallestChunk, smallestChunk, Codec::Stored, chunk, ~chunk};
}

/// A file for tables, and what a reader is told of one.
struct Scene
{
    File file;
    ImageIndex index;
    ImageHead head;
};

Scene sceneOf(std::uint64_t chunks)
{
    std::string path = (std::filesystem::temp_directory_path() / "kestro-table.XXXXXX").string();
    Scene scene{File(::mkostemp(path.data(), O_CLOEXEC), path), {chunks * smallestChunk, smallestChunk, 512, {}}, {}};
    std::filesystem::remove(path);
    scene.index.extents = {{0, chunks * smallestChunk}};
    scene.head.root.fileSize = farEnd;
    return scene;
}

/// Several threads put the records, each the next one.
void putAll(ChunkTableWriter& writer, std::uint64_t chunks)
{
    std::atomic<std::uint64_t> next{0};
    const auto putNext = [&] {
        for (std::uint64_t chunk = 0; (chunk = next.fetch_add(1)) < chunks;) {
            writer.put(chunk, recordOf(chunk));
        }
    };
    const std::array<std::jthread, 4> threads{
        std::jthread(putNext), std::jthread(putNext), std::jthread(putNext), std::jthread(putNext)};
}

void flipByte(const File& file, std::uint64_t position)
{
    std::byte byte{};
    file.readAt({&byte, 1}, position);
    byte ^= std::byte{1};
    file.writeAt({&byte, 1}, position);
}

std::optional<ExitCode> failureOf(const std::function<void()>& step)
{
    try {
        step();
        return std::nullopt;
    } catch (const Failure& failure) {
        return failure.code();
    }
}

void everyRecordComesBack(std::uint64_t chunks)
{
    Scene scene = sceneOf(chunks);
    ChunkTableWriter writer(scene.file, place, chunks);
    putAll(writer, chunks);
    scene.head.root.chunks = writer.finish();
    const ChunkTable table = readChunkTable(scene.file, scene.head, scene.index);
    ChunkRecords records(scene.file, table);
    std::uint64_t wrong = 0;
    for (std::uint64_t chunk = 0; chunk < chunks; ++chunk) {
        const ChunkRecord record = records.at(chunk);
        wrong += record.position != recordOf(chunk).position || record.storedHash != ~chunk ? 1 : 0;
    }
    check(wrong == 0 && table.storedBytes == chunks * smallestChunk, std::to_string(chunks) + " records");
}

/// A table for tens of TiB may not take more memory than one for a few GiB.
void manyRecordsTakeLittleMemory()
{
    everyRecordComesBack((1U << 20U) + 5);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    check(usage.ru_maxrss < 16L * 1024, "peak memory in KiB: " + std::to_string(usage.ru_maxrss));
#endif
}

void damageShows()
{
    constexpr std::uint64_t chunks = 5000;
    Scene scene = sceneOf(chunks);
    ChunkTableWriter writer(scene.file, place, chunks);
    putAll(writer, chunks);
    scene.head.root.chunks = writer.finish();
    const ChunkTable table = readChunkTable(scene.file, scene.head, scene.index);
    flipByte(scene.file, place + 4000 * sizeof(ChunkRecord));
    check(failureOf([&] { (void)readChunkTable(scene.file, scene.head, scene.index); }) == ExitCode::InvalidImage,
        "a table that is damaged");
    ChunkRecords records(scene.file, table);
    check(failureOf([&] { (void)records.at(0); }) == std::nullopt, "a page apart from the damage");
    check(failureOf([&] { (void)records.at(4000); }) == ExitCode::InvalidImage, "damage after the check");
    check(failureOf([&] { (void)writer.finish(); }) == ExitCode::Mismatch, "what was written is not there");
}

} // namespace

int main()
{
    manyRecordsTakeLittleMemory();
    for (const std::uint64_t chunks : {1U, 1023U, 1024U, 1025U, 2048U}) {
        everyRecordComesBack(chunks);
    }
    damageShows();
    return checkResult();
}
