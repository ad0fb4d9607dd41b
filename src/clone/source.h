// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/blockdevice.h"
#include "clone/extents.h"
#include "clone/metadata.h"

namespace kestro::clone {

/// What there is to back up.
struct SourceMap
{
    ExtentList extents;
    std::string partitionTable;
    std::vector<ContentPart> parts;
    bool needsRecovery = false;
};

/// Finds the used bytes of a partition or of a whole disk. The device must not change while this runs and until it
/// has been read.
[[nodiscard]] SourceMap mapSource(const BlockDevice& source);

} // namespace kestro::clone
