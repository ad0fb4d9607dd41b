// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/unmounted.h"

#include "clone/failure.h"
#include "clone/guards.h"
#include "clone/process.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <sstream>
#include <system_error>
#include <utility>

#include <sys/mount.h>

namespace kestro::clone {

namespace {

/// A folder of a file system that is mounted by itself; btrfs names its subvolumes that way and has an option for it.
bool isBind(const Mount& mount)
{
    return mount.root != "/" && mount.type != "btrfs";
}

/// The options of the mount itself without "ro" and "rw", which may differ from those of the file system.
std::string plainOptions(const Mount& mount)
{
    std::string options = mount.superOptions;
    std::istringstream list(mount.options);
    for (std::string option; std::getline(list, option, ',');) {
        if (option != "ro" && option != "rw") {
            options += (options.empty() ? "" : ",") + option;
        }
    }
    return options;
}

/// What any file system understands: what the mount may not do ("ro", "nosuid" and the like) holds for the new one too.
/// A subvolume that was mounted must not become the whole.
std::string ownOptions(const Mount& mount)
{
    std::string options = mount.options;
    options += isWritable(mount) ? "" : ",ro";
    options += mount.root == "/" ? "" : ",subvol=" + mount.root;
    return options;
}

bool mountWith(const std::vector<std::string>& command, const std::string& folder)
{
    // udisksd removes a mount point's folder that it made as soon as it hears that nothing is mounted there any more,
    // which may be now: each attempt makes it anew.
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    return runQuietly(command) == 0;
}

bool mountOnce(const Mount& mount)
{
    const std::vector<std::vector<std::string>> attempts{
        {"mount", "-t", mount.type, "-o", plainOptions(mount), mount.source, mount.target},
        // The image may hold another file system than the one that was there, which knows other options.
        {"mount", "-o", ownOptions(mount), mount.source, mount.target},
    };
    const bool mounted = std::any_of(
        attempts.begin(), attempts.end(), [&](const auto& command) { return mountWith(command, mount.target); });
    const bool onlyThisReadOnly = hasOption(mount.options, "ro") && !hasOption(mount.superOptions, "ro");
    if (mounted && onlyThisReadOnly && runQuietly({"mount", "-o", "remount,bind,ro", mount.target}) != 0) {
        ::umount2(mount.target.c_str(), UMOUNT_NOFOLLOW);
        return false;
    }
    return mounted;
}

/// What a path leads to is the mount that was made there last.
bool isOnTop(const Mount& mount)
{
    const auto mounts = currentMounts();
    const auto top =
        std::find_if(mounts.rbegin(), mounts.rend(), [&](const Mount& other) { return other.target == mount.target; });
    return top != mounts.rend() && top->device == mount.device && top->root == mount.root;
}

/// 0 or the error.
int unmount(const Mount& mount)
{
    if (!isOnTop(mount)) {
        return EBUSY;
    }
    return ::umount2(mount.target.c_str(), UMOUNT_NOFOLLOW) == 0 ? 0 : errno;
}

} // namespace

UnmountedTarget::UnmountedTarget(const BlockDevice& target)
{
    auto mounts = mountsOf(target);
    for (const Mount& mount : mounts) {
        if (isBind(mount) || !mount.source.starts_with("/")) {
            throw Failure(
                ExitCode::Busy, target.path + " is mounted at " + mount.target + ", which cannot be mounted again");
        }
    }
    for (auto mount = mounts.rbegin(); mount != mounts.rend(); ++mount) {
        if (const int error = unmount(*mount); error != 0) {
            std::for_each(m_mounts.begin(), m_mounts.end(), [](const Mount& undone) { (void)mountOnce(undone); });
            throw Failure(ExitCode::Busy, "cannot unmount " + mount->target + ": " + errorText(error));
        }
        m_mounts.insert(m_mounts.begin(), *mount);
    }
}

UnmountedTarget::~UnmountedTarget()
{
    if (!m_keep) {
        std::for_each(m_mounts.begin(), m_mounts.end(), [](const Mount& mount) { (void)mountOnce(mount); });
    }
}

void UnmountedTarget::mountAgain()
{
    std::vector<std::string> failed;
    for (const Mount& mount : std::exchange(m_mounts, {})) {
        if (!mountOnce(mount)) {
            failed.push_back(mount.target);
        }
    }
    if (!failed.empty()) {
        throw Failure(
            ExitCode::NotRemounted, "the device is restored, but it cannot be mounted at " + failed.front() + " again");
    }
}

} // namespace kestro::clone
