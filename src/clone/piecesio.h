// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/alignedbuffer.h"
#include "clone/extents.h"
#include "clone/file.h"

#include <span>

namespace kestro::clone {

/// Reads and writes the pieces of a chunk, which stand end to end in memory and scattered on the device. Pieces that
/// are near each other travel in one system call: what lies between them is read and thrown away, or written as zeros.
/// One for each thread. Pieces and memory are aligned as direct input and output needs it.
class PiecesIo
{
public:
    PiecesIo();

    /// The content is as long as all pieces together. They throw as File's operations do.
    void read(const File& device, const ExtentList& pieces, std::span<std::byte> content);
    void write(const File& device, const ExtentList& pieces, std::span<std::byte> content);

private:
    using Transfer = void (*)(const File&, std::vector<iovec>&, std::uint64_t);
    void transfer(const File& device, const ExtentList& pieces, std::span<std::byte> content, AlignedBuffer& between,
        Transfer move);

    AlignedBuffer m_sink;
    AlignedBuffer m_zeros;
};

} // namespace kestro::clone
