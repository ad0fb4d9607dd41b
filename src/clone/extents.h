// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kestro::clone {

/// A range of bytes of a device.
struct Extent
{
    std::uint64_t offset = 0;
    std::uint64_t length = 0;

    [[nodiscard]] std::uint64_t end() const { return offset + length; }
    friend bool operator==(const Extent&, const Extent&) = default;
};

/// Ranges of a device. "In order" means ascending, not empty, and with a gap between each two.
using ExtentList = std::vector<Extent>;

/// Puts ranges in order: sorts, joins what touches or overlaps, cuts at the size of the device.
[[nodiscard]] ExtentList inOrder(ExtentList extents, std::uint64_t deviceSize);

/// Widens each range to multiples of the alignment (the end not past the device) and puts them in order.
[[nodiscard]] ExtentList alignedOutward(ExtentList extents, std::uint64_t alignment, std::uint64_t deviceSize);

/// Ranges in order, with the smallest gaps filled until at most the given number is left, so that a badly fragmented
/// device does not take all memory.
[[nodiscard]] ExtentList limitedTo(ExtentList extents, std::size_t count);

/// More ranges than this are joined, so that a list of them stays within 4 MiB however fragmented a device is.
inline constexpr std::size_t mostCollectedExtents = 1U << 18U;

/// Collects ranges in bounded memory: whenever there are twice as many as the limit, the smallest gaps are filled.
class ExtentCollector
{
public:
    explicit ExtentCollector(std::size_t limit = mostCollectedExtents);

    /// In any order.
    void add(const Extent& extent);
    /// All of them in order, at most as many as the limit; the collector is empty then.
    [[nodiscard]] ExtentList take();

private:
    void limit();

    std::size_t m_limit;
    ExtentList m_extents;
};

/// The sum of the lengths.
[[nodiscard]] std::uint64_t totalLength(const ExtentList& extents);

/// The ranges put end to end and cut into chunks of equal size (the last one may be shorter). Says which ranges of the
/// device make up each chunk. Keeps a reference to the list: it must outlive this object.
class ChunkLayout
{
public:
    ChunkLayout(const ExtentList& extents, std::uint32_t chunkSize);

    [[nodiscard]] std::uint64_t chunkCount() const { return (m_total + m_chunkSize - 1) / m_chunkSize; }
    /// Bytes of content of a chunk.
    [[nodiscard]] std::uint32_t contentSize(std::uint64_t chunk) const;
    /// The ranges of a chunk in order; their lengths add up to contentSize.
    [[nodiscard]] ExtentList pieces(std::uint64_t chunk) const;

private:
    const ExtentList& m_extents;
    std::uint32_t m_chunkSize;
    std::uint64_t m_total = 0;
    /// Where each range begins in the content.
    std::vector<std::uint64_t> m_begins;
};

} // namespace kestro::clone
