// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/usedblocks.h"

#include <optional>
#include <string>

namespace kestro::clone {

/// The used blocks of an ext2, ext3 or ext4 file system; none when libext2fs cannot read its block bitmaps whole.
[[nodiscard]] std::optional<UsedBlocks> usedBlocksOfExt(const std::string& device, const std::string& type);

} // namespace kestro::clone
