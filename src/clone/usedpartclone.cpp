// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/usedpartclone.h"

#include "clone/file.h"
#include "clone/process.h"

#include <span>
#include <sstream>
#include <utility>

#include <fcntl.h>

namespace kestro::clone {

namespace {

/// A btrfs on several devices keeps some of its trees elsewhere; the number of devices stands in its superblock
/// (btrfs-man5, on-disk format: superblock at 64 KiB, num_devices at 0x88).
bool spansDevices(const std::string& device)
{
    std::uint64_t count = 0;
    const File file = File::open(device, O_RDONLY);
    file.readAt(std::as_writable_bytes(std::span(&count, 1)), 0x10000 + 0x88);
    return count != 1;
}

} // namespace

void DomainMap::add(std::string_view line)
{
    if (line.empty() || line.front() == '#') {
        return;
    }
    std::istringstream words{std::string(line)};
    Extent range;
    std::string status;
    words >> std::hex >> range.offset;
    if (words >> range.length >> status) {
        addRange(range, status);
    } else {
        // The line with the current position comes once, before the ranges.
        m_isValid = m_isValid && m_end == 0;
    }
}

void DomainMap::addRange(const Extent& range, std::string_view status)
{
    m_isValid = m_isValid && range.offset == m_end && (status == "+" || status == "?") && range.length <= ~range.offset;
    m_end = range.end();
    if (m_isValid && status == "+") {
        m_used.add(range);
    }
}

std::optional<UsedBlocks> DomainMap::take()
{
    ExtentList used = m_used.take();
    return !m_isValid || used.empty() ? std::nullopt
                                      : std::optional(UsedBlocks{std::move(used), m_end, "partclone", false});
}

std::optional<UsedBlocks> usedBlocksByPartclone(const std::string& device, const std::string& type)
{
    if (type == "btrfs" && spansDevices(device)) {
        return std::nullopt;
    }
    const std::string program = "partclone." + (type == "vfat" ? "fat" : type);
    DomainMap map;
    const int status = runForLines({program, "-f", "0", "-B", "-D", "-s", device, "-O", "-", "-L", "/dev/null"},
        [&](std::string_view line) { map.add(line); });
    return status == 0 ? map.take() : std::nullopt;
}

} // namespace kestro::clone
