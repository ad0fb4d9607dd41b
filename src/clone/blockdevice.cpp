// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/blockdevice.h"

#include "clone/failure.h"
#include "clone/file.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <sstream>
#include <string_view>

#include <cerrno>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace kestro::clone {

namespace fs = std::filesystem;

namespace {

/// Kernel sizes and positions in /sys are in units of 512 bytes whatever the sector size is.
constexpr std::uint64_t sysfsUnit = 512;

fs::path sysfsFolder(dev_t device)
{
    std::error_code error;
    const std::string number = std::to_string(major(device)) + ":" + std::to_string(minor(device));
    return fs::canonical("/sys/dev/block/" + number, error);
}

std::string firstLine(const fs::path& file)
{
    const std::string text = contentOf(file.string(), 4096).value_or("");
    const auto end = text.find('\n');
    const auto last = text.find_last_not_of(" \n", end);
    return last == std::string::npos ? "" : text.substr(0, last + 1);
}

std::optional<dev_t> numberIn(const fs::path& folder)
{
    unsigned majorPart = 0;
    unsigned minorPart = 0;
    char colon = 0;
    std::istringstream stream(firstLine(folder / "dev"));
    return stream >> majorPart >> colon >> minorPart ? std::optional(makedev(majorPart, minorPart)) : std::nullopt;
}

/// The device's node; where its name holds a slash, its folder has an exclamation mark.
std::string nodeOf(const fs::path& folder)
{
    std::string name = folder.filename().string();
    std::replace(name.begin(), name.end(), '!', '/');
    return "/dev/" + name;
}

void addFoundations(const fs::path& folder, std::set<dev_t>& found)
{
    const auto number = folder.empty() ? std::nullopt : numberIn(folder);
    if (!number || !found.insert(*number).second) {
        return;
    }
    if (fs::exists(folder / "partition")) {
        addFoundations(folder.parent_path(), found);
    }
    std::error_code error;
    for (const auto& slave : fs::directory_iterator(folder / "slaves", error)) {
        addFoundations(fs::canonical(slave.path(), error), found);
    }
}

std::uint64_t bytesIn(const fs::path& file)
{
    std::uint64_t units = 0;
    std::istringstream(firstLine(file)) >> units;
    return units * sysfsUnit;
}

} // namespace

bool isBlockDevice(const std::string& path)
{
    struct stat status
    {
    };
    return ::stat(path.c_str(), &status) == 0 && S_ISBLK(status.st_mode);
}

BlockDevice blockDeviceAt(const std::string& path)
{
    if (!isBlockDevice(path)) {
        throw Failure(ExitCode::Refused, path + " is not a block device");
    }
    const File file = File::open(path, O_RDONLY);
    struct stat status
    {
    };
    int sector = 0;
    if (::fstat(file.fd(), &status) != 0 || ::ioctl(file.fd(), BLKSSZGET, &sector) != 0) {
        throw Failure(ExitCode::ReadError, "cannot ask " + path + " for its sector size: " + errorText(errno));
    }
    const fs::path folder = sysfsFolder(status.st_rdev);
    if (folder.empty()) {
        // Without it a disk would count as one without partitions, and as part of nothing.
        throw Failure(ExitCode::Internal, "the kernel's description of " + path + " is not below /sys");
    }
    const bool isPartition = fs::exists(folder / "partition");
    const fs::path disk = isPartition ? folder.parent_path() : folder;
    return {path, status.st_rdev, file.size(), static_cast<std::uint32_t>(sector), isPartition,
        firstLine(disk / "device" / "model")};
}

std::set<dev_t> foundationsOf(dev_t device)
{
    std::set<dev_t> found;
    addFoundations(sysfsFolder(device), found);
    found.insert(device);
    return found;
}

std::vector<std::string> nodesBuiltOn(const BlockDevice& device)
{
    std::vector<std::string> nodes;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(sysfsFolder(device.number) / "holders", error)) {
        nodes.push_back(nodeOf(entry.path()));
    }
    return nodes;
}

std::string loopFileOf(dev_t device)
{
    constexpr std::string_view removed{" (deleted)"};
    std::string file = firstLine(sysfsFolder(device) / "loop" / "backing_file");
    if (file.ends_with(removed)) {
        file.resize(file.size() - removed.size());
    }
    return file;
}

bool liesOn(dev_t device, dev_t other)
{
    return foundationsOf(device).contains(other);
}

std::string partitionNodeAt(const BlockDevice& disk, std::uint64_t offset, std::uint64_t length)
{
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(sysfsFolder(disk.number), error)) {
        const bool fits = fs::exists(entry.path() / "partition") && bytesIn(entry.path() / "start") == offset
            && bytesIn(entry.path() / "size") == length;
        std::string node = nodeOf(entry.path());
        struct stat status
        {
        };
        if (fits && ::stat(node.c_str(), &status) == 0 && numberIn(entry.path()) == status.st_rdev) {
            return node;
        }
    }
    return {};
}

std::string diskNodeOf(const BlockDevice& partition)
{
    return partition.isPartition ? nodeOf(sysfsFolder(partition.number).parent_path()) : "";
}

std::vector<std::string> partitionNodesOf(const BlockDevice& disk)
{
    std::vector<std::string> nodes;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(sysfsFolder(disk.number), error)) {
        if (fs::exists(entry.path() / "partition")) {
            nodes.push_back(nodeOf(entry.path()));
        }
    }
    return nodes;
}

void forgetCachedBlocks(const std::string& path)
{
    const File device = File::open(path, O_RDONLY);
    if (::ioctl(device.fd(), BLKFLSBUF, 0) != 0 && errno != EACCES) {
        throw Failure(ExitCode::ReadError, "cannot flush the cache of " + path + ": " + errorText(errno));
    }
}

} // namespace kestro::clone
