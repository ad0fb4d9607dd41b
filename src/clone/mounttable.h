// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace kestro::clone {

/// One line of /proc/self/mountinfo, escapes undone.
struct Mount
{
    /// The device number in the table; an invented one for btrfs and the like.
    dev_t device = 0;
    /// What of the file system is mounted: "/" or a folder of it.
    std::string root;
    std::string target;
    std::string options;
    std::string type;
    std::string source;
    std::string superOptions;
    /// The kernel's number of this mount, as statx(2) tells it of an open file on it.
    std::uint64_t id = 0;
};

/// Parses the text of /proc/self/mountinfo (see proc(5)); lines that are none are left out.
[[nodiscard]] std::vector<Mount> parseMountInfo(std::string_view text);

/// The first column of /proc/swaps (see proc(5)), escapes undone.
[[nodiscard]] std::vector<std::string> parseSwaps(std::string_view text);

/// The mounts of this process's name space, in the order in which they were made. Throws Internal when the kernel does
/// not tell.
[[nodiscard]] std::vector<Mount> currentMounts();

/// The device behind a mount: of its source when that is a device node, else the number in the table.
[[nodiscard]] dev_t deviceOf(const Mount& mount);

/// True when the mount may write: neither the mount nor its file system is read-only.
[[nodiscard]] bool isWritable(const Mount& mount);

/// True when the file system may be written, if not through this mount, then through another.
[[nodiscard]] bool hasWritableFileSystem(const Mount& mount);

/// True when the comma-separated options hold this one.
[[nodiscard]] bool hasOption(std::string_view options, std::string_view option);

/// The folder that an overlay's files are written to; empty for one that is only read.
[[nodiscard]] std::string upperFolderOf(const Mount& overlay);

/// The mount that a path lies on, or would lie on when it is made; the path's folder must exist. Null when none fits.
[[nodiscard]] const Mount* mountOfPath(const std::vector<Mount>& mounts, const std::string& path);

} // namespace kestro::clone
