// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/usedpartclone.h"

#include "clone/failure.h"
#include "clone/file.h"
#include "clone/process.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <span>
#include <sstream>

#include <cstdlib>
#include <fcntl.h>

namespace kestro::clone {

namespace {

constexpr std::size_t largestMap = 256U << 20U;

struct ProgramRow
{
    std::string_view type;
    std::string_view program;
};

// Debian builds partclone without the readers for JFS, NILFS2 and ReiserFS.
constexpr std::array programs{
    ProgramRow{"btrfs", "partclone.btrfs"},
    ProgramRow{"exfat", "partclone.exfat"},
    ProgramRow{"f2fs", "partclone.f2fs"},
    ProgramRow{"hfsplus", "partclone.hfsplus"},
    ProgramRow{"minix", "partclone.minix"},
    ProgramRow{"ntfs", "partclone.ntfs"},
    ProgramRow{"vfat", "partclone.fat"},
    ProgramRow{"xfs", "partclone.xfs"},
};

const ProgramRow* rowOf(std::string_view type)
{
    const auto row =
        std::find_if(programs.begin(), programs.end(), [&](const ProgramRow& r) { return r.type == type; });
    return row == programs.end() ? nullptr : &*row;
}

/// A private folder for the map, removed with everything in it.
class ScratchFolder
{
public:
    ScratchFolder()
        : m_path((std::filesystem::temp_directory_path() / "kestro-clone.XXXXXX").string())
    {
        if (::mkdtemp(m_path.data()) == nullptr) {
            throw Failure(ExitCode::WriteError, "cannot make a folder " + m_path + ": " + errorText(errno));
        }
    }
    ~ScratchFolder()
    {
        std::error_code error;
        std::filesystem::remove_all(m_path, error);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    [[nodiscard]] std::string file(const char* name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

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

std::optional<ExtentList> parseDomainMap(std::string_view text)
{
    ExtentList used;
    std::uint64_t expected = 0;
    bool ranges = false;
    std::istringstream lines{std::string(text)};
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line.front() == '#') {
            continue;
        }
        std::istringstream words(line);
        std::uint64_t position = 0;
        std::uint64_t size = 0;
        std::string status;
        words >> std::hex >> position;
        if (!(words >> size >> status)) {
            // The line with the current position, once, before the ranges.
            if (ranges) {
                return std::nullopt;
            }
            continue;
        }
        ranges = true;
        if (position != expected || (status != "+" && status != "?") || size > ~position) {
            return std::nullopt;
        }
        expected = position + size;
        if (status == "+") {
            used.push_back({position, size});
        }
    }
    return used.empty() ? std::nullopt : std::optional(std::move(used));
}

std::optional<UsedBlocks> usedBlocksByPartclone(const std::string& device, const std::string& type)
{
    const ProgramRow* row = rowOf(type);
    if (row == nullptr || (type == "btrfs" && spansDevices(device))) {
        return std::nullopt;
    }
    const ScratchFolder scratch;
    const std::string map = scratch.file("map");
    const int status = runQuietly(
        {std::string(row->program), "-f", "0", "-B", "-D", "-s", device, "-O", map, "-L", scratch.file("log")});
    const auto text = status == 0 ? contentOf(map, largestMap) : std::nullopt;
    auto extents = text && text->size() < largestMap ? parseDomainMap(*text) : std::nullopt;
    if (!extents) {
        return std::nullopt;
    }
    return UsedBlocks{std::move(*extents), "partclone", false};
}

} // namespace kestro::clone
