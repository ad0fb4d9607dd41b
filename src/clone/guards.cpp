// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/guards.h"

#include "clone/failure.h"
#include "clone/file.h"
#include "clone/humansize.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <iterator>
#include <set>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>

namespace kestro::clone {

namespace {

/// Adds every device that a file at this path is written to: those of its file system, of the folder that an overlay
/// writes to, and of the file that a loop device stands for.
void addDevicesBelow(const std::string& path, const std::vector<Mount>& mounts, std::set<dev_t>& found)
{
    const Mount* mount = path.empty() ? nullptr : mountOfPath(mounts, path);
    if (mount == nullptr) {
        return;
    }
    for (const dev_t device : foundationsOf(deviceOf(*mount))) {
        if (found.insert(device).second) {
            addDevicesBelow(loopFileOf(device), mounts, found);
            addDevicesBelow(mount->type == "overlay" ? upperFolderOf(*mount) : "", mounts, found);
        }
    }
}

/// The active swap space on the device; empty when there is none.
std::string swapOn(const BlockDevice& device)
{
    for (const std::string& swap : parseSwaps(contentOf("/proc/swaps").value_or(""))) {
        struct stat status
        {
        };
        if (::stat(swap.c_str(), &status) == 0 && S_ISBLK(status.st_mode) && liesOn(status.st_rdev, device.number)) {
            return swap;
        }
    }
    return {};
}

bool isKeptByAnybody(const std::string& device)
{
    const File file(::open(device.c_str(), O_RDONLY | O_EXCL | O_CLOEXEC), device);
    return !file.isOpen() && errno == EBUSY;
}

bool isKeptByUnknown(const BlockDevice& device)
{
    constexpr int tries = 20;
    for (int i = 0; i < tries; ++i) {
        if (!isKeptByAnybody(device.path) || !mountsOf(device).empty() || !swapOn(device).empty()) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return true;
}

/// The nodes whose users are the device's: its own, or those of all partitions and devices above it. A device that
/// others are built on is kept by these, and they may have users of several kinds.
std::vector<std::string> usedNodesOf(const std::string& node)
{
    const BlockDevice device = blockDeviceAt(node);
    std::vector<std::string> above = partitionNodesOf(device);
    // Whoever keeps a partition keeps its disk as well, so the disk tells something only when no partition does.
    std::erase_if(above, [](const std::string& partition) { return !isKeptByAnybody(partition); });
    const std::vector<std::string> built = nodesBuiltOn(device);
    above.insert(above.end(), built.begin(), built.end());
    if (above.empty()) {
        return {node};
    }
    std::vector<std::string> used;
    for (const std::string& upper : above) {
        const std::vector<std::string> found = usedNodesOf(upper);
        used.insert(used.end(), found.begin(), found.end());
    }
    return used;
}

} // namespace

DeviceLocks lockAgainstOtherRuns(const BlockDevice& device)
{
    DeviceLocks locks;
    if (const std::string disk = diskNodeOf(device); !disk.empty()) {
        locks.push_back(File::open(disk, O_RDONLY));
        locks.back().lockShared();
    }
    locks.push_back(File::open(device.path, O_RDONLY));
    refuseAnotherDevice(locks.back(), device);
    locks.back().lockExclusively();
    return locks;
}

void refuseAnotherDevice(const File& opened, const BlockDevice& device)
{
    struct stat status
    {
    };
    if (::fstat(opened.fd(), &status) != 0 || !S_ISBLK(status.st_mode) || status.st_rdev != device.number) {
        throw Failure(ExitCode::Refused, device.path + " is not the device any more that it was at first");
    }
}

void refuseImageOn(const BlockDevice& device, const std::string& image)
{
    std::set<dev_t> devices;
    addDevicesBelow(image, currentMounts(), devices);
    if (devices.contains(device.number)) {
        throw Failure(ExitCode::Overlap, "the image " + image + " lies on " + device.path + " itself");
    }
}

void refuseImageAmongDevices(const std::string& image)
{
    const auto mounts = currentMounts();
    const Mount* mount = mountOfPath(mounts, image);
    if (mount != nullptr && (mount->type == "devtmpfs" || mount->target == "/dev")) {
        throw Failure(ExitCode::Refused, image + " is no device, and no image is made among devices");
    }
}

std::vector<Mount> mountsOf(const BlockDevice& device)
{
    std::vector<Mount> result;
    const auto mounts = currentMounts();
    std::copy_if(mounts.begin(), mounts.end(), std::back_inserter(result),
        [&](const Mount& mount) { return liesOn(deviceOf(mount), device.number); });
    return result;
}

void refuseSwapOn(const BlockDevice& device)
{
    if (const std::string swap = swapOn(device); !swap.empty()) {
        throw Failure(ExitCode::Busy, device.path + " holds active swap space (" + swap + ")");
    }
}

void refuseUnknownUser(const BlockDevice& device)
{
    for (const std::string& path : usedNodesOf(device.path)) {
        if (isKeptByUnknown(blockDeviceAt(path))) {
            throw Failure(ExitCode::Busy,
                path + " is in use, but not by anything that can be made to stand still while it is read");
        }
    }
}

void refuseSmallTarget(const BlockDevice& target, std::uint64_t needed)
{
    if (target.size >= needed) {
        return;
    }
    const bool distinct = humanSize(needed) != humanSize(target.size);
    const auto text = distinct ? humanSize : exactSize;
    throw Failure(ExitCode::TooSmall,
        "target too small: needs " + text(needed) + ", " + target.path + " has " + text(target.size));
}

} // namespace kestro::clone
