// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

namespace kestro::clone {

/// Whether a file system's journal or log may hold changes that have not reached their places, so that its own map of
/// used blocks misses some of what a mount would show. None when that cannot be told.
/// @param frozen the file system is mounted for writing and stands still, so the kernel has emptied its journal
[[nodiscard]] std::optional<bool> needsRecovery(const std::string& device, const std::string& type, bool frozen);

} // namespace kestro::clone
