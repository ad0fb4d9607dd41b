// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/extents.h"
#include "clone/file.h"
#include "clone/piecesio.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <span>

namespace kestro::clone {

/// What to do with a place that cannot be read.
enum class ReadErrors { Fail, Rescue };

/// Places that could not be read, collected by several threads.
class HoleList
{
public:
    void add(const Extent& hole);
    /// All of them in order; of very many, the nearest are joined.
    [[nodiscard]] ExtentList inDeviceOrder(std::uint64_t deviceSize) const;

private:
    mutable std::mutex m_mutex;
    ExtentList m_holes;
};

/// Reads chunks of the source; one for each thread.
class SourceReader
{
public:
    /// Keeps the references; they must outlive this object.
    /// @param beat called while a place that cannot be read at once is tried block by block
    SourceReader(const File& device, ReadErrors readErrors, HoleList& holes, std::function<void()> beat);

    /// Fills the content. With Rescue an unreadable place becomes zeros and a hole, unless the device is gone;
    /// else ReadError is thrown.
    void read(const ExtentList& pieces, std::span<std::byte> content);

private:
    void readBlockByBlock(const Extent& piece, std::span<std::byte> content);

    const File& m_device;
    const ReadErrors m_readErrors;
    HoleList& m_holes;
    const std::function<void()> m_beat;
    PiecesIo m_io;
};

} // namespace kestro::clone
