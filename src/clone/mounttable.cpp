// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/mounttable.h"

#include "clone/failure.h"
#include "clone/file.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace kestro::clone {

namespace {

bool isOctal(std::string_view digits)
{
    return digits.size() == 3 && std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '7'; });
}

/// The kernel writes blanks and the like as a backslash and three octal digits.
std::string unescaped(std::string_view text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::string digits(text.substr(i + 1, 3));
        if (text[i] == '\\' && isOctal(digits)) {
            result += static_cast<char>(std::strtoul(digits.c_str(), nullptr, 8));
            i += 3;
        } else {
            result += text[i];
        }
    }
    return result;
}

/// Each blank ends a word, since those within one are escaped; a source may be an empty one. Nothing else does: a name
/// may hold any other kind of space as it is.
std::vector<std::string> words(const std::string& line)
{
    std::istringstream stream(line);
    std::vector<std::string> result;
    for (std::string word; std::getline(stream, word, ' ');) {
        result.push_back(word);
    }
    return result;
}

dev_t deviceNumber(const std::string& text)
{
    unsigned major = 0;
    unsigned minor = 0;
    char colon = 0;
    std::istringstream(text) >> major >> colon >> minor;
    return makedev(major, minor);
}

/// True when the path is the folder or lies in it.
bool isInside(const std::string& path, const std::string& folder)
{
    return folder == "/" || path == folder || path.starts_with(folder + "/");
}

} // namespace

std::vector<Mount> parseMountInfo(std::string_view text)
{
    std::vector<Mount> mounts;
    std::istringstream lines{std::string(text)};
    for (std::string line; std::getline(lines, line);) {
        // 36 35 98:0 /mnt1 /mnt2 rw,noatime master:1 - ext3 /dev/root rw,errors=continue
        const auto fields = words(line);
        const auto dash = static_cast<std::size_t>(std::find(fields.begin(), fields.end(), "-") - fields.begin());
        if (dash < 6 || dash + 3 > fields.size()) {
            continue;
        }
        mounts.push_back({deviceNumber(fields[2]), unescaped(fields[3]), unescaped(fields[4]), fields[5],
            fields[dash + 1], unescaped(fields[dash + 2]), dash + 3 < fields.size() ? fields[dash + 3] : "",
            std::strtoull(fields[0].c_str(), nullptr, 10)});
    }
    return mounts;
}

std::vector<std::string> parseSwaps(std::string_view text)
{
    std::vector<std::string> swaps;
    std::istringstream lines{std::string(text)};
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line)) {
        if (const auto end = line.find_first_of(" \t"); end != 0 && !line.empty()) {
            swaps.push_back(unescaped(line.substr(0, end)));
        }
    }
    return swaps;
}

std::vector<Mount> currentMounts()
{
    constexpr const char* table = "/proc/self/mountinfo";
    const auto text = contentOf(table, 16U << 20U);
    if (!text) {
        // Without it a mounted device would count as one that nobody uses.
        throw Failure(ExitCode::Internal, std::string("cannot read ") + table + ", which tells what is mounted");
    }
    return parseMountInfo(*text);
}

dev_t deviceOf(const Mount& mount)
{
    struct stat status
    {
    };
    const bool isNode =
        mount.source.starts_with("/") && ::stat(mount.source.c_str(), &status) == 0 && S_ISBLK(status.st_mode);
    return isNode ? status.st_rdev : mount.device;
}

bool hasOption(std::string_view options, std::string_view option)
{
    const std::string list = "," + std::string(options) + ",";
    return list.find("," + std::string(option) + ",") != std::string::npos;
}

std::string upperFolderOf(const Mount& overlay)
{
    constexpr std::string_view name{"upperdir="};
    std::istringstream options(overlay.superOptions);
    for (std::string option; std::getline(options, option, ',');) {
        if (option.starts_with(name)) {
            return unescaped(option.substr(name.size()));
        }
    }
    return {};
}

bool isWritable(const Mount& mount)
{
    return !hasOption(mount.options, "ro") && hasWritableFileSystem(mount);
}

bool hasWritableFileSystem(const Mount& mount)
{
    return !hasOption(mount.superOptions, "ro");
}

const Mount* mountOfPath(const std::vector<Mount>& mounts, const std::string& path)
{
    std::error_code error;
    const auto absolute = std::filesystem::weakly_canonical(std::filesystem::absolute(path), error).string();
    const Mount* best = nullptr;
    for (const Mount& mount : mounts) {
        // Of two mounts at one place the later one is seen.
        if (isInside(absolute, mount.target) && (best == nullptr || mount.target.size() >= best->target.size())) {
            best = &mount;
        }
    }
    return best;
}

} // namespace kestro::clone
