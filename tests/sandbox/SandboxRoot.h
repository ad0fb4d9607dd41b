// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string>
#include <vector>

/// Builds the sandbox's root with system calls only, because the process must not have any other thread yet.
namespace SandboxRoot {

/// Exists on a sandbox's root only and holds the files that stand in for those of "/proc".
inline constexpr const char* ownFolder = "/.kestro-sandbox";

/// The folders that are private to the sandbox and empty at first.
inline constexpr std::array privateFolders{
    "/sys/firmware", "/run", "/media", "/tmp", "/home/kestro", "/lib/kestro-recovery-gui"};

/// Whether this process is in the user namespace that the machine started with.
[[nodiscard]] bool ownsInitialUserNamespace();

/// Moves this process into a mount namespace of its own (with a user namespace where it is not root).
/// @return false when the host allows neither
[[nodiscard]] bool unshareMounts();

/// Builds the root and changes into it; the host's root is gone from the namespace afterwards. Prints the failing step
/// and ends the process when something fails.
/// @param keptFolders absolute paths that are to be visible inside, read-only where the root's overlay has them not
void build(const std::vector<std::string>& keptFolders);

} // namespace SandboxRoot
