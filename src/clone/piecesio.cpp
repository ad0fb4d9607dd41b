// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/piecesio.h"

#include <vector>

#include <climits>
#include <sys/uio.h>

namespace kestro::clone {

namespace {

/// Up to this gap one longer transfer is cheaper than two.
constexpr std::size_t largestGap = 64U << 10U;

} // namespace

PiecesIo::PiecesIo()
    : m_sink(largestGap)
    , m_zeros(largestGap)
{ }

void PiecesIo::transfer(
    const File& device, const ExtentList& pieces, std::span<std::byte> content, AlignedBuffer& between, Transfer move)
{
    std::vector<iovec> parts;
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    for (const Extent& piece : pieces) {
        const std::uint64_t gap = parts.empty() ? 0 : piece.offset - end;
        if (gap > largestGap || parts.size() + 2 > IOV_MAX) {
            move(device, parts, begin);
            parts.clear();
        } else if (gap > 0) {
            parts.push_back({between.data(), gap});
        }
        begin = parts.empty() ? piece.offset : begin;
        parts.push_back({content.data(), piece.length});
        content = content.subspan(piece.length);
        end = piece.end();
    }
    if (!parts.empty()) {
        move(device, parts, begin);
    }
}

void PiecesIo::read(const File& device, const ExtentList& pieces, std::span<std::byte> content)
{
    transfer(device, pieces, content, m_sink,
        [](const File& file, std::vector<iovec>& parts, std::uint64_t position) { file.readAt(parts, position); });
}

void PiecesIo::write(const File& device, const ExtentList& pieces, std::span<std::byte> content)
{
    transfer(device, pieces, content, m_zeros,
        [](const File& file, std::vector<iovec>& parts, std::uint64_t position) { file.writeAt(parts, position); });
}

} // namespace kestro::clone
