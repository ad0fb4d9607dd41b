// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/check.h"

#include "clone/alignedbuffer.h"
#include "clone/chunkcodec.h"
#include "clone/customfiles.h"
#include "clone/extents.h"
#include "clone/failure.h"
#include "clone/imageformat.h"
#include "clone/imageindex.h"
#include "clone/metadata.h"
#include "clone/sourcereader.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <functional>
#include <random>

using namespace kestro::clone;

namespace {

constexpr std::uint64_t mib = 1U << 20U;

/// Names of faults, each with what puts it into a good thing.
template <class Thing>
using Faults = std::vector<std::pair<const char*, std::function<void(Thing&)>>>;

template <class Thing>
void eachFaultShows(const Thing& good, const Faults<Thing>& faults, const std::function<bool(const Thing&)>& isGood)
{
    check(isGood(good), "nothing is wrong yet");
    for (const auto& [name, spoil] : faults) {
        Thing spoiled = good;
        spoil(spoiled);
        check(!isGood(spoiled), name);
    }
}

RootRecord completeRoot()
{
    return {7, true, 20 * mib, {16 * mib, 8192, 1}, {18 * mib, 4096, 4}, {17 * mib, 4096, 2}, {12288, 4096, 3}};
}

void everyBitOfHeaderAndRootCounts()
{
    const ImageId id{std::byte{1}, std::byte{2}};
    const Block header = encodeHeader(id);
    const Block root = encodeRoot(completeRoot(), id);
    check(decodeHeader(header) == id, "an intact header is read");
    check(decodeRoot(root, id).has_value() && decodeRoot(root, id)->fileSize == 20 * mib, "an intact root is read");
    check(!decodeRoot(root, ImageId{}).has_value(), "the root of another image is refused");
    for (std::size_t bit = 0; bit < headerSize * 8; ++bit) {
        Block flippedHeader = header;
        Block flippedRoot = root;
        flippedHeader[bit / 8] ^= std::byte{1} << (bit % 8);
        flippedRoot[bit / 8] ^= std::byte{1} << (bit % 8);
        check(!decodeHeader(flippedHeader).has_value(), "header bit " + std::to_string(bit));
        check(!decodeRoot(flippedRoot, id).has_value(), "root bit " + std::to_string(bit));
    }
}

void rootsWithWrongNumbersAreRefused()
{
    const Faults<RootRecord> faults{
        {"index behind the end", [](RootRecord& r) { r.index.position = 20 * mib; }},
        {"index wraps around", [](RootRecord& r) { r.index.position = ~std::uint64_t{4095}; }},
        {"index larger than the file", [](RootRecord& r) { r.index.size = 24 * mib; }},
        {"index in the head", [](RootRecord& r) { r.index.position = 4096; }},
        {"index not aligned", [](RootRecord& r) { r.index.position += 512; }},
        {"complete without index", [](RootRecord& r) { r.index.size = 0; }},
        {"table of chunks beyond the limit",
            [](RootRecord& r) { r.fileSize = 1024 * mib, r.chunks.size = largestChunkTable + 4096; }},
        {"table of chunks not aligned", [](RootRecord& r) { r.chunks.position += 512; }},
        {"complete without description", [](RootRecord& r) { r.metadata.size = 0; }},
        {"index beyond the limit", [](RootRecord& r) { r.fileSize = 1024 * mib, r.index.size = largestIndex + 4096; }},
        {"custom beyond the limit", [](RootRecord& r) { r.fileSize = 1024 * mib, r.custom.size = 17 * mib; }},
        {"file that ends within a block", [](RootRecord& r) { r.fileSize += 512; }},
        {"no sequence number is left", [](RootRecord& r) { r.sequence = ~0ULL; }},
        {"file shorter than a head",
            [](RootRecord& r) {
                r = {1, false, 4096, {}, {}, {}, {}};
            }},
    };
    eachFaultShows<RootRecord>(completeRoot(), faults,
        [](const RootRecord& root) { return decodeRoot(encodeRoot(root, {}), {}).has_value(); });
}

ImageIndex goodIndex()
{
    return {10 * mib + 512, 1 << 20, 512, {{0, mib}, {4 * mib, 2 * mib}, {10 * mib, 512}}};
}

void extentsWithWrongNumbersAreRefused()
{
    const Faults<ImageIndex> faults{
        {"extent behind the end", [](ImageIndex& i) { i.extents[2].length = 1024; }},
        {"extent wraps around",
            [](ImageIndex& i) {
                i.extents[2] = {~std::uint64_t{4095}, 8192};
            }},
        {"empty extent", [](ImageIndex& i) { i.extents[1].length = 0; }},
        {"extents overlap", [](ImageIndex& i) { i.extents[1].offset = mib / 2; }},
        {"extents touch", [](ImageIndex& i) { i.extents[1].offset = mib; }},
        {"extents out of order", [](ImageIndex& i) { std::swap(i.extents[0], i.extents[1]); }},
        {"extent not aligned", [](ImageIndex& i) { i.extents[1].offset += 512; }},
        {"end not aligned", [](ImageIndex& i) { i.extents[1].length -= 512; }},
    };
    eachFaultShows<ImageIndex>(goodIndex(), faults, areExtentsValid);
}

using Records = std::vector<ChunkRecord>;

bool areRecordsGood(const Records& records)
{
    RecordCheck table(goodIndex(), 8 * mib);
    return std::all_of(records.begin(), records.end(), [&](const ChunkRecord& record) { return table.add(record); });
}

void recordsWithWrongNumbersAreRefused()
{
    const Records good{{}, {12288, 5000, Codec::Zstd, 1, 2}, {20480, 1 << 20, Codec::Stored, 1, 2},
        {mib * 2, 512, Codec::Stored, 1, 2}};
    const Faults<Records> faults{
        {"a chunk too many", [](Records& r) { r.push_back({}); }},
        {"chunk in the head", [](Records& r) { r[1].position = 4096; }},
        {"chunk behind the end", [](Records& r) { r[1].position = 8 * mib; }},
        {"chunk wraps around", [](Records& r) { r[1].position = ~std::uint64_t{4095}; }},
        {"chunk not aligned", [](Records& r) { r[1].position += 8; }},
        {"packed larger than content", [](Records& r) { r[1].storedSize = (1 << 20) + 1; }},
        {"packed empty", [](Records& r) { r[1].storedSize = 0; }},
        {"stored with another size", [](Records& r) { r[3].storedSize = 1024; }},
        {"unknown codec", [](Records& r) { r[1].codec = static_cast<Codec>(3); }},
        {"zeros with bytes", [](Records& r) { r[0].storedSize = 1; }},
    };
    eachFaultShows<Records>(good, faults, areRecordsGood);
}

void indexHeadersWithWrongCountsAreRefused()
{
    const ImageIndex index = goodIndex();
    const IndexHeader good = encodeIndexHeader(index, {});
    check(decodeIndexHeader(good, {}, 4096).has_value(), "a good index header");
    check(!decodeIndexHeader(good, {}, 8192).has_value(), "a section of another size");
    check(!decodeIndexHeader(good, {std::byte{1}}, 4096).has_value(), "another image's index");
    check(!decodeIndexHeader(encodeIndexHeader({0, 1 << 20, 512, {}}, {}), {}, 4096).has_value(), "no source");
    check(!decodeIndexHeader(encodeIndexHeader({mib, 1 << 20, 512, {}}, {}), {}, 4096).has_value(), "nothing of it");
    // Position and value of 64-bit numbers: counts, used bytes, chunk and sector size together.
    const std::vector<std::pair<std::size_t, std::uint64_t>> cases{{24, 0}, {32, 0}, {32, 1ULL << 20U},
        {32, (512ULL << 32U) | 4096}, {32, (512ULL << 32U) | (32 * mib)}, {40, ~0ULL}, {40, 1ULL << 60U}, {48, ~0ULL},
        {48, 0}, {56, ~0ULL}, {56, 0}, {24, 10 * mib + 513}};
    for (const auto& [position, value] : cases) {
        IndexHeader header = good;
        std::memcpy(header.data() + position, &value, sizeof value);
        check(!decodeIndexHeader(header, {}, 4096).has_value(), "number at " + std::to_string(position));
    }
}

void customFilesSurviveAndDamageShows()
{
    CustomFiles files{{"DiskInfo", {std::byte{'U'}}}, {"empty", {}}};
    const auto section = encodeCustomFiles(files);
    check(section.size() == 4096 && decodeCustomFiles(section) == files, "custom files come back");
    check(encodeCustomFiles({}).empty() && decodeCustomFiles({})->empty(), "no custom files take no room");
    while (files.size() < mostCustomFiles) {
        files[std::to_string(files.size())] = {};
    }
    check(decodeCustomFiles(encodeCustomFiles(files)) == files, "as many as an image may have");
    files["one too many"] = {};
    check(!decodeCustomFiles(encodeCustomFiles(files)).has_value(), "one too many");
    for (std::size_t size = 0; size < 8 + 4 + 8; ++size) {
        check(size == 0 || !decodeCustomFiles(std::span(section).first(size)).has_value(),
            "cut at " + std::to_string(size));
    }
    for (const std::size_t position : {8U, 12U, 16U}) {
        auto damaged = section;
        damaged[position + 3] = std::byte{0x7f};
        check(!decodeCustomFiles(damaged).has_value(), "a huge count at " + std::to_string(position));
    }
}

void chunksComeBack()
{
    constexpr std::uint32_t size = 256U << 10U;
    std::mt19937 random(1); // NOLINT: the same numbers in every run
    ChunkEncoder encoder(size);
    const ChunkDecoder decoder;
    for (const auto& [codec, length] : {std::pair{Codec::Zero, size}, {Codec::Stored, size}, {Codec::Zstd, size},
             {Codec::Stored, 512U}, {Codec::Zstd, 4608U}}) {
        AlignedBuffer content(size);
        if (codec != Codec::Zero) {
            const unsigned mask = codec == Codec::Zstd ? 3U : 255U;
            std::generate_n(content.data(), length, [&] { return static_cast<std::byte>(random() & mask); });
        }
        const std::vector<std::byte> original(content.data(), content.data() + length);
        EncodedChunk chunk = encoder.encode(content, length);
        const std::string name = "codec " + std::to_string(static_cast<int>(codec)) + " of " + std::to_string(length);
        check(chunk.record.codec == codec && chunk.stored.size() % blockSize == 0, name);
        std::vector<std::byte> back(length, std::byte{0xa5});
        check(decoder.decode(chunk.record, chunk.stored, back) && back == original, name + " comes back");
        std::vector<std::byte> other(length - 512 + (length == 512 ? 1 : 0));
        check(!decoder.decode(chunk.record, chunk.stored, other), name + " does not fit elsewhere");
        chunk.record.contentHash ^= 1;
        check(!decoder.decode(chunk.record, chunk.stored, back), name + " with another hash");
    }
}

void extentsAreKeptInOrder()
{
    const ExtentList mixed{{100, 50}, {0, 10}, {10, 5}, {140, 100}, {990, 100}, {2000, 5}, {7, 0}};
    check(inOrder(mixed, 1000) == ExtentList{{0, 15}, {100, 140}, {990, 10}}, "sorted, joined, cut");
    check(alignedOutward({{5000, 10}, {9000, 100}}, 4096, 9050) == ExtentList{{4096, 4954}}, "widened to blocks");
    const ExtentList gaps{{0, 10}, {20, 10}, {100, 10}, {111, 10}, {500, 10}};
    check(limitedTo(gaps, 5) == gaps, "few extents stay");
    check(limitedTo(gaps, 3) == ExtentList{{0, 30}, {100, 21}, {500, 10}}, "the smallest gaps are filled");
    check(limitedTo(gaps, 1) == ExtentList{{0, 510}}, "one is left");
    check(alignedOutward({{0, 10}, {~0ULL - 5, 5}}, 4096, 9050) == ExtentList{{0, 4096}}, "far behind the device");
    const ExtentList uneven{{0, 96}, {1000, 32}, {2000, 200}};
    const ChunkLayout layout(uneven, 64);
    check(layout.chunkCount() == 6 && layout.contentSize(5) == 8, "chunks of equal size");
    check(layout.pieces(0) == ExtentList{{0, 64}}, "first chunk");
    check(layout.pieces(1) == ExtentList{{64, 32}, {1000, 32}}, "a chunk across a gap");
    check(layout.pieces(2) == ExtentList{{2000, 64}} && layout.pieces(5) == ExtentList{{2192, 8}}, "last chunks");
    check(ChunkLayout({}, 64).chunkCount() == 0, "nothing is no chunk");
}

void extentsAreCollectedInBoundedMemory()
{
    ExtentCollector few(4);
    for (const Extent& extent : ExtentList{{50, 5}, {0, 10}, {10, 5}, {100, 1}}) {
        few.add(extent);
    }
    check(few.take() == ExtentList{{0, 15}, {50, 5}, {100, 1}}, "few are kept as they are, in order");
    check(few.take().empty(), "and given away once");
    ExtentCollector many(4);
    for (std::uint64_t i = 0; i < 1000; ++i) {
        many.add({i * 100 + i / 250 * 1000000, 10});
    }
    const ExtentList left = many.take();
    check(left.size() == 4 && left[1] == Extent{1025000, 24910}, "the large gaps stay");
}

void holesAreBounded()
{
    constexpr std::uint64_t count = 3 * mostHoles;
    HoleList holes;
    for (std::uint64_t i = 0; i < count; ++i) {
        holes.add({i * 8192, 4096});
    }
    holes.add({(count - 1) * 8192 + 4096, 512});
    const ExtentList listed = holes.inDeviceOrder(1ULL << 40U);
    check(listed.size() <= mostHoles, "very many are joined");
    check(listed.front().offset == 0 && listed.back().end() == (count - 1) * 8192 + 4608, "and none of them is lost");
    HoleList few;
    few.add({8192, 4096});
    few.add({12288, 512});
    few.add({0, 512});
    check(few.inDeviceOrder(1U << 20U) == ExtentList{{0, 512}, {8192, 4608}}, "few are kept as they are");
}

void metadataComesBack()
{
    Metadata metadata{"tool", "now", "/dev/x", "model", "gpt", {{1, {512, 4096}, "ext4", "a\"\xff", "libext2fs", 99}},
        {{4096, 512}}, true, true};
    const auto back = metadataFromJson(toJson(metadata) + "   ");
    check(back && back->parts.size() == 1 && back->parts[0].range == Extent{512, 4096} && back->holes == metadata.holes
            && back->frozen && back->partitionTable == "gpt",
        "the description comes back");
    const std::string deep = std::string(100000, '[') + std::string(100000, ']');
    for (const std::string& text :
        {std::string(), std::string("{}"), std::string("[]"), std::string("{\"tool\":1}"), deep}) {
        check(!metadataFromJson(text).has_value(), "no description: " + text.substr(0, 20));
    }
    check(metadataFromJson(toJson(metadata) + " ")->parts[0].label.starts_with("a\""), "a quote in a string");
}

/// A description may cost as little time and memory as its size suggests, whatever stands in it.
void hostileMetadataIsCheap()
{
    std::string text = toJson(Metadata{});
    text.resize(text.rfind('}'));
    text += ", \"z\": [0";
    while (text.size() < largestMetadata - 32) {
        text += ",{\"\":0}";
    }
    text += "]}";
    const std::clock_t begin = std::clock();
    check(metadataFromJson(text).has_value(), "unknown keys are ignored");
    check(std::clock() - begin < 5 * CLOCKS_PER_SEC, "the time that many small values take");
    check(!metadataFromJson(text + std::string(largestMetadata - text.size() + 1, ' ')).has_value(), "too large");
}

} // namespace

int main()
{
    everyBitOfHeaderAndRootCounts();
    rootsWithWrongNumbersAreRefused();
    extentsWithWrongNumbersAreRefused();
    recordsWithWrongNumbersAreRefused();
    indexHeadersWithWrongCountsAreRefused();
    customFilesSurviveAndDamageShows();
    chunksComeBack();
    extentsAreKeptInOrder();
    extentsAreCollectedInBoundedMemory();
    holesAreBounded();
    metadataComesBack();
    hostileMetadataIsCheap();
    return checkResult();
}
