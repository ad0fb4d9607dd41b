// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace kestro::clone {

/// How a mounted file system was brought to a standstill, or is about to be.
enum class Stillness : char {
    None = 'n',
    /// FIFREEZE, see ioctl_fs(2).
    Frozen = 'f',
    /// Remounted read-only, for those that cannot be frozen.
    ReadOnly = 'r',
};

/// Brings the file system to a standstill in one of the two ways. Returns 0 or an errno value; then nothing was
/// changed.
/// @param root an open folder: the root of a mount
[[nodiscard]] int holdMount(int root, Stillness way);

/// Undoes it; true when it runs again. Only async-signal-safe calls.
bool releaseMount(int root, Stillness way);

} // namespace kestro::clone
