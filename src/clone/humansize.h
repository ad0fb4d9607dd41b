// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

namespace kestro::clone {

/// A size as people read it, in binary units: "512 B", "12.4 GiB".
[[nodiscard]] std::string humanSize(std::uint64_t bytes);

/// The size in people's units with the exact number behind it: "12.4 GiB (13314398617 bytes)". For sentences in which
/// two sizes may look the same when rounded.
[[nodiscard]] std::string exactSize(std::uint64_t bytes);

/// Seconds as "0:41", "12:05" or "1:02:03".
[[nodiscard]] std::string clockTime(std::uint64_t seconds);

} // namespace kestro::clone
