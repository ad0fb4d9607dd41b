// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/extents.h"
#include "clone/usedblocks.h"

#include <optional>
#include <string>
#include <string_view>

namespace kestro::clone {

/// A domain map as partclone prints it ("0xPOSITION  0xSIZE  +" for used bytes, "?" for others; ddrescue's format),
/// taken line by line so that a map of any length needs little memory.
class DomainMap
{
public:
    /// A line without its end.
    void add(std::string_view line);

    /// What was in the lines so far; none when a line was malformed, the ranges were not contiguous, or nothing is
    /// used.
    [[nodiscard]] std::optional<UsedBlocks> take();

private:
    void addRange(const Extent& range, std::string_view status);

    ExtentCollector m_used;
    std::uint64_t m_end = 0;
    bool m_isValid = true;
};

/// What partclone says about a device; none when it is not installed or fails. It writes no file anywhere.
/// @param type as libblkid calls it
[[nodiscard]] std::optional<UsedBlocks> usedBlocksByPartclone(const std::string& device, const std::string& type);

} // namespace kestro::clone
