// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/imagehead.h"

#include "clone/alignedbuffer.h"
#include "clone/failure.h"
#include "clone/streamhash.h"

#include <algorithm>
#include <cstring>
#include <cerrno>
#include <random>

#include <fcntl.h>
#include <sys/stat.h>

namespace kestro::clone {

namespace {

constexpr std::size_t readerBuffer = 1U << 20U;

ImageId randomId()
{
    std::random_device device;
    ImageId id{};
    for (std::byte& byte : id) {
        byte = static_cast<std::byte>(device() & 0xffU);
    }
    return id;
}

std::uint64_t slotPosition(unsigned slot)
{
    return rootPosition + slot * rootSize;
}

void writeBlock(const File& image, const Block& block, std::uint64_t position)
{
    AlignedBuffer buffer(block.size());
    std::copy(block.begin(), block.end(), buffer.data());
    image.writeAt(buffer.bytes(), position);
}

} // namespace

void throwInvalidImage(const std::string& path, const std::string& reason)
{
    throw Failure(ExitCode::InvalidImage, "invalid file: " + path + " is not a usable image: " + reason);
}

File openImage(const std::string& path, int flags)
{
    struct stat status
    {
    };
    const bool exists = ::stat(path.c_str(), &status) == 0 || (errno != ENOENT && errno != ENOTDIR);
    if (!exists && (flags & O_CREAT) == 0) {
        throwInvalidImage(path, "there is no such file");
    }
    File image = File::openDirect(path, flags | O_NONBLOCK);
    if (::fstat(image.fd(), &status) != 0 || !S_ISREG(status.st_mode)) {
        throwInvalidImage(path, "it is not a regular file");
    }
    return image;
}

File openLockedImage(const std::string& path, int flags)
{
    constexpr int tries = 10;
    for (int i = 0; i < tries; ++i) {
        File image = openImage(path, flags);
        image.lockExclusively();
        if (image.isAt(path)) {
            return image;
        }
    }
    throw Failure(ExitCode::Busy, path + " is replaced by other runs again and again");
}

ImageHead readHead(const File& image)
{
    const std::uint64_t size = image.size();
    AlignedBuffer buffer(bodyPosition);
    if (size < bodyPosition) {
        throwInvalidImage(image.path(), size == 0 ? "it is empty" : "it is too short");
    }
    image.readAt(buffer.bytes(), 0);
    const auto id = decodeHeader(buffer.bytes().first(headerSize));
    if (!id) {
        throwInvalidImage(image.path(),
            hasImageMagic(buffer.bytes()) ? "its header is damaged or newer than this program"
                                          : "it is something else");
    }
    const auto first = decodeRoot(buffer.bytes().subspan(rootPosition, rootSize), *id);
    const auto second = decodeRoot(buffer.bytes().subspan(rootPosition + rootSize, rootSize), *id);
    if (!first || !second || first->sequence == second->sequence) {
        throwInvalidImage(image.path(), "a root record is damaged");
    }
    const unsigned slot = second->sequence > first->sequence ? 1 : 0;
    const RootRecord& root = slot == 1 ? *second : *first;
    if (size < root.fileSize) {
        throwInvalidImage(image.path(), "it is cut off");
    }
    return {*id, root, slot};
}

ImageHead writeFreshHead(const File& image, const CustomFiles& files)
{
    ImageHead head{randomId(), {}, 0};
    head.root.sequence = 1;
    AlignedBuffer buffer(bodyPosition);
    const auto put = [&buffer](const Block& block, std::uint64_t position) {
        std::copy(block.begin(), block.end(), buffer.bytes().subspan(position).begin());
    };
    put(encodeHeader(head.id), 0);
    put(encodeRoot(head.root, head.id), slotPosition(0));
    put(encodeRoot(RootRecord{}, head.id), slotPosition(1));
    image.truncate(0);
    // The header first: roots that no header says whose they are would be taken for somebody else's file.
    image.writeAt(buffer.bytes().first(headerSize), 0);
    image.sync();
    image.writeAt(buffer.bytes().subspan(rootPosition), rootPosition);
    image.sync();
    if (!files.empty()) {
        RootRecord root = head.root;
        root.custom = writeSection(image, encodeCustomFiles(files), bodyPosition);
        root.fileSize = bodyPosition + root.custom.size;
        commitRoot(image, head, root);
    }
    return head;
}

void commitRoot(const File& image, ImageHead& head, const RootRecord& root)
{
    image.sync();
    RootRecord next = root;
    next.sequence = head.root.sequence + 1;
    writeBlock(image, encodeRoot(next, head.id), slotPosition(1 - head.slot));
    image.sync();
    head.root = next;
    head.slot = 1 - head.slot;
}

Section writeSection(const File& image, std::span<const std::byte> bytes, std::uint64_t position)
{
    if (bytes.empty()) {
        return {};
    }
    AlignedBuffer buffer(bytes.size());
    std::copy(bytes.begin(), bytes.end(), buffer.data());
    image.writeAt(buffer.bytes(), position);
    return {position, buffer.size(), hashOf(buffer.bytes())};
}

CustomFiles readCustomFiles(const File& image, const ImageHead& head)
{
    const auto files = decodeCustomFiles(readSection(image, head.root.custom));
    if (!files) {
        throwInvalidImage(image.path(), "its custom files are damaged");
    }
    return *files;
}

ImageState imageStateAt(const std::string& path)
{
    struct stat status
    {
    };
    if (::stat(path.c_str(), &status) != 0) {
        if (errno == ENOENT) {
            return ImageState::Missing;
        }
        throw Failure(
            errno == EACCES ? ExitCode::Denied : ExitCode::Refused, "cannot look at " + path + ": " + errorText(errno));
    }
    if (!S_ISREG(status.st_mode)) {
        throw Failure(ExitCode::Refused, path + " is not a regular file");
    }
    if (status.st_size == 0) {
        return ImageState::Missing;
    }
    const File image = File::open(path, O_RDONLY);
    std::array<std::byte, bodyPosition> bytes{};
    const auto beginning = std::span(bytes).first(std::min<std::uint64_t>(image.size(), bytes.size()));
    image.readAt(beginning, 0);
    const bool hasBody = image.size() > bodyPosition;
    if (!hasImageMagic(beginning)) {
        return hasBody || !isZero(beginning) ? ImageState::Foreign : ImageState::Missing;
    }
    try {
        return readHead(image).root.complete ? ImageState::Complete : ImageState::Incomplete;
    } catch (const Failure& failure) {
        if (failure.code() != ExitCode::InvalidImage) {
            throw;
        }
        // What a power cut left of a head behind which there is nothing.
        return hasBody ? ImageState::Damaged : ImageState::Missing;
    }
}

struct SectionReader::State
{
    const File& image;
    Section section;
    AlignedBuffer buffer;
    std::uint64_t fetched = 0;
    std::span<const std::byte> ready;
    StreamHash hash;
};

SectionReader::SectionReader(const File& image, const Section& section)
    : m_state(new State{image, section, AlignedBuffer(std::min<std::uint64_t>(section.size, readerBuffer)), 0, {}, {}})
{ }

SectionReader::~SectionReader() = default;

void SectionReader::read(std::span<std::byte> target)
{
    State& state = *m_state;
    while (!target.empty()) {
        if (state.ready.empty()) {
            const auto size = std::min<std::uint64_t>(state.buffer.size(), state.section.size - state.fetched);
            if (size == 0) {
                throwInvalidImage(state.image.path(), "a part of it is too short");
            }
            const auto bytes = state.buffer.bytes().first(size);
            state.image.readAt(bytes, state.section.position + state.fetched);
            state.hash.add(bytes);
            state.fetched += size;
            state.ready = bytes;
        }
        const std::size_t step = std::min(target.size(), state.ready.size());
        std::memcpy(target.data(), state.ready.data(), step);
        target = target.subspan(step);
        state.ready = state.ready.subspan(step);
    }
}

bool SectionReader::finish()
{
    State& state = *m_state;
    std::array<std::byte, blockSize> sink{};
    for (std::uint64_t left = state.section.size - state.fetched + state.ready.size(); left > 0;) {
        const auto step = std::min<std::uint64_t>(left, sink.size());
        read(std::span(sink).first(step));
        left -= step;
    }
    return state.hash.value() == state.section.hash;
}

std::vector<std::byte> readSection(const File& image, const Section& section)
{
    std::vector<std::byte> bytes(section.size);
    if (section.size == 0) {
        return bytes;
    }
    SectionReader reader(image, section);
    reader.read(bytes);
    if (!reader.finish()) {
        throwInvalidImage(image.path(), "a part of it is damaged");
    }
    return bytes;
}

} // namespace kestro::clone
