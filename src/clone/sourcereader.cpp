// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/sourcereader.h"

#include "clone/failure.h"
#include "clone/interruption.h"
#include "clone/metadata.h"

#include <algorithm>
#include <utility>

namespace kestro::clone {

void HoleList::add(const Extent& hole)
{
    const std::lock_guard lock(m_mutex);
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

SourceReader::SourceReader(const File& device, ReadErrors readErrors, HoleList& holes)
    : m_device(device)
    , m_readErrors(readErrors)
    , m_holes(holes)
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
        const auto block = content.subspan(done, std::min(blockSize, piece.length - done));
        try {
            m_device.readAt(block, piece.offset + done);
        } catch (const Failure&) {
            if (m_readErrors == ReadErrors::Fail) {
                throw;
            }
            std::fill(block.begin(), block.end(), std::byte{0});
            m_holes.add({piece.offset + done, block.size()});
        }
    }
}

} // namespace kestro::clone
