// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/blockdevice.h"
#include "clone/extents.h"
#include "clone/metadata.h"

#include <set>
#include <string>
#include <vector>

#include <sys/types.h>

namespace kestro::clone {

/// What there is to back up.
struct SourceMap
{
    ExtentList extents;
    std::string partitionTable;
    std::vector<ContentPart> parts;
    /// Some file system among the parts is imaged whole because its journal may hold changes.
    bool needsRecovery = false;
};

/// Finds the used bytes of a partition or of a whole disk. The device must not change while this runs and until it
/// has been read.
/// @param frozen the devices of file systems that are mounted for writing and stand still
[[nodiscard]] SourceMap mapSource(const BlockDevice& source, const std::set<dev_t>& frozen);

} // namespace kestro::clone
