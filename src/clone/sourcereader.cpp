// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/sourcereader.h"

#include "clone/failure.h"
#include "clone/interruption.h"
#include "clone/metadata.h"

#include <algorithm>
#include <cerrno>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace kestro::clone {

namespace {

/// A device that is gone has no places that could be read on another try. Some drivers only report that reading fails,
/// so it is opened once more.
bool isGone(const File& device, int error)
{
    if (error == ENODEV || error == ENXIO || error == ENOMEDIUM) {
        return true;
    }
    try {
        struct stat now
        {
        };
        struct stat before
        {
        };
        const File again = File::open(device.path(), O_RDONLY | O_NONBLOCK);
        return ::fstat(again.fd(), &now) != 0 || ::fstat(device.fd(), &before) != 0 || now.st_rdev != before.st_rdev
            || again.size() != device.size();
    } catch (const Failure&) {
        return true;
    }
}

} // namespace

void HoleList::add(const Extent& hole)
{
    const std::lock_guard lock(m_mutex);
    if (!m_holes.empty() && m_holes.back().end() == hole.offset) {
        m_holes.back().length += hole.length;
        return;
    }
    m_holes.push_back(hole);
    if (m_holes.size() >= 2 * mostHoles) {
        m_holes = limitedTo(inOrder(std::move(m_holes), ~std::uint64_t{0}), mostHoles);
    }
}

ExtentList HoleList::inDeviceOrder(std::uint64_t deviceSize) const
{
    const std::lock_guard lock(m_mutex);
    return limitedTo(inOrder(m_holes, deviceSize), mostHoles);
}

SourceReader::SourceReader(const File& device, ReadErrors readErrors, HoleList& holes, std::function<void()> beat)
    : m_device(device)
    , m_readErrors(readErrors)
    , m_holes(holes)
    , m_beat(std::move(beat))
{ }

void SourceReader::read(const ExtentList& pieces, std::span<std::byte> content)
{
    try {
        m_io.read(m_device, pieces, content);
        return;
    } catch (const Failure&) {
        // One bad block fails a whole transfer; the second try finds which one it is.
    }
    for (const Extent& piece : pieces) {
        readBlockByBlock(piece, content.first(piece.length));
        content = content.subspan(piece.length);
    }
}

void SourceReader::readBlockByBlock(const Extent& piece, std::span<std::byte> content)
{
    for (std::uint64_t done = 0; done < piece.length; done += blockSize) {
        throwIfInterrupted();
        m_beat();
        const auto block = content.subspan(done, std::min(blockSize, piece.length - done));
        try {
            m_device.readAt(block, piece.offset + done);
        } catch (const Failure& failure) {
            if (m_readErrors == ReadErrors::Fail || isGone(m_device, failure.systemError())) {
                throw;
            }
            std::fill(block.begin(), block.end(), std::byte{0});
            m_holes.add({piece.offset + done, block.size()});
        }
    }
}

} // namespace kestro::clone
