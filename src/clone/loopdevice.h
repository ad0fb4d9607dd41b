// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/blockdevice.h"
#include "clone/extents.h"
#include "clone/file.h"

namespace kestro::clone {

/// A read-only loop device over a range of a device, past the page cache where the kernel can do that; it lasts as long
/// as the file is open. Not open when the kernel has no loop devices to give.
[[nodiscard]] File readOnlyLoop(const BlockDevice& device, const Extent& range);

} // namespace kestro::clone
