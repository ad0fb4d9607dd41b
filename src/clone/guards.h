// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/blockdevice.h"
#include "clone/mounttable.h"

#include <string>
#include <vector>

namespace kestro::clone {

/// Throws Overlap when the image is, or would be, on the device, or on something that is built on it.
void refuseImageOn(const BlockDevice& device, const std::string& image);

/// The mounts of a device and of everything that is built on it, in the order in which they were made.
[[nodiscard]] std::vector<Mount> mountsOf(const BlockDevice& device);

/// Throws Busy when the kernel swaps to the device or to something that is built on it.
void refuseSwapOn(const BlockDevice& device);

/// Throws TooSmall, with both sizes.
void refuseSmallTarget(const BlockDevice& target, std::uint64_t needed);

} // namespace kestro::clone
