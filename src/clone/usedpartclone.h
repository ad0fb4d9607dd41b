// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/usedblocks.h"

#include <optional>
#include <string>
#include <string_view>

namespace kestro::clone {

/// Parses a domain map as "partclone.FS -D" writes it: lines "0xPOS 0xSIZE STATUS" in bytes, "+" for used, "?" for
/// unused, after comments and one line with the current position. None unless the ranges are contiguous from 0.
[[nodiscard]] std::optional<ExtentList> parseDomainMap(std::string_view text);

/// The used blocks of a file system as partclone sees them; none when it is not installed, refuses the file system or
/// writes something else.
[[nodiscard]] std::optional<UsedBlocks> usedBlocksByPartclone(const std::string& device, const std::string& type);

} // namespace kestro::clone
