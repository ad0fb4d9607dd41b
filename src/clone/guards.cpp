// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/guards.h"

#include "clone/failure.h"
#include "clone/file.h"
#include "clone/humansize.h"

#include <algorithm>
#include <iterator>

#include <sys/stat.h>

namespace kestro::clone {

void refuseImageOn(const BlockDevice& device, const std::string& image)
{
    const auto mounts = currentMounts();
    const Mount* mount = mountOfPath(mounts, image);
    if (mount != nullptr && liesOn(deviceOf(*mount), device.number)) {
        throw Failure(ExitCode::Overlap, "the image " + image + " lies on " + device.path + " itself");
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
    for (const std::string& swap : parseSwaps(contentOf("/proc/swaps").value_or(""))) {
        struct stat status
        {
        };
        if (::stat(swap.c_str(), &status) == 0 && S_ISBLK(status.st_mode) && liesOn(status.st_rdev, device.number)) {
            throw Failure(ExitCode::Busy, device.path + " holds active swap space (" + swap + ")");
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
