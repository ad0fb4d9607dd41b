// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/extents.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

namespace kestro::clone {

ExtentList inOrder(ExtentList extents, std::uint64_t deviceSize)
{
    std::sort(extents.begin(), extents.end(), [](const Extent& a, const Extent& b) { return a.offset < b.offset; });
    std::size_t kept = 0;
    for (const Extent extent : extents) {
        const std::uint64_t begin = std::min(extent.offset, deviceSize);
        const std::uint64_t end = begin + std::min(extent.length, deviceSize - begin);
        if (begin == end) {
            continue;
        }
        if (kept > 0 && begin <= extents[kept - 1].end()) {
            Extent& last = extents[kept - 1];
            last.length = std::max(last.end(), end) - last.offset;
        } else {
            extents[kept++] = {begin, end - begin};
        }
    }
    extents.resize(kept);
    return extents;
}

ExtentList alignedOutward(ExtentList extents, std::uint64_t alignment, std::uint64_t deviceSize)
{
    // Cut at the device first: what lies far behind it could not be rounded up.
    extents = inOrder(std::move(extents), deviceSize);
    for (Extent& extent : extents) {
        const std::uint64_t begin = extent.offset / alignment * alignment;
        const std::uint64_t end = (extent.end() + alignment - 1) / alignment * alignment;
        extent = {begin, end - begin};
    }
    return inOrder(std::move(extents), deviceSize);
}

ExtentList limitedTo(ExtentList extents, std::size_t count)
{
    if (extents.size() <= count || count == 0) {
        return extents;
    }
    std::vector<std::uint64_t> gaps;
    gaps.reserve(extents.size() - 1);
    for (std::size_t i = 1; i < extents.size(); ++i) {
        gaps.push_back(extents[i].offset - extents[i - 1].end());
    }
    const auto nth = gaps.begin() + static_cast<std::ptrdiff_t>(extents.size() - count - 1);
    std::nth_element(gaps.begin(), nth, gaps.end());
    const std::uint64_t largestFilled = *nth;
    std::size_t last = 0;
    for (std::size_t i = 1; i < extents.size(); ++i) {
        if (extents[i].offset - extents[last].end() <= largestFilled) {
            extents[last].length = extents[i].end() - extents[last].offset;
        } else {
            extents[++last] = extents[i];
        }
    }
    extents.resize(last + 1);
    return extents;
}

ExtentCollector::ExtentCollector(std::size_t limit)
    : m_limit(limit)
{ }

void ExtentCollector::add(const Extent& extent)
{
    if (!m_extents.empty() && m_extents.back().end() == extent.offset) {
        m_extents.back().length += extent.length;
        return;
    }
    if (m_extents.size() >= 2 * m_limit) {
        limit();
    }
    m_extents.push_back(extent);
}

ExtentList ExtentCollector::take()
{
    limit();
    return std::exchange(m_extents, {});
}

void ExtentCollector::limit()
{
    m_extents = limitedTo(inOrder(std::move(m_extents), std::numeric_limits<std::uint64_t>::max()), m_limit);
}

std::uint64_t totalLength(const ExtentList& extents)
{
    return std::accumulate(extents.begin(), extents.end(), std::uint64_t{0},
        [](std::uint64_t sum, const Extent& extent) { return sum + extent.length; });
}

ChunkLayout::ChunkLayout(const ExtentList& extents, std::uint32_t chunkSize)
    : m_extents(extents)
    , m_chunkSize(chunkSize)
{
    m_begins.reserve(extents.size());
    for (const Extent& extent : extents) {
        m_begins.push_back(m_total);
        m_total += extent.length;
    }
}

std::uint32_t ChunkLayout::contentSize(std::uint64_t chunk) const
{
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(m_chunkSize, m_total - chunk * m_chunkSize));
}

ExtentList ChunkLayout::pieces(std::uint64_t chunk) const
{
    ExtentList result;
    const std::uint64_t begin = chunk * m_chunkSize;
    std::uint64_t left = contentSize(chunk);
    const auto next = std::upper_bound(m_begins.begin(), m_begins.end(), begin);
    auto i = static_cast<std::size_t>(next - m_begins.begin() - 1);
    for (std::uint64_t skip = begin - m_begins[i]; left > 0; ++i, skip = 0) {
        const std::uint64_t length = std::min(left, m_extents[i].length - skip);
        result.push_back({m_extents[i].offset + skip, length});
        left -= length;
    }
    return result;
}

} // namespace kestro::clone
