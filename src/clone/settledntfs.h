// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

namespace kestro::clone {

/// Whether an NTFS was left in order: it is not marked for a check, has an empty log, and no Windows hibernates on it.
/// None when it cannot be read. Nothing is written to the device.
[[nodiscard]] std::optional<bool> isNtfsSettled(const std::string& device);

} // namespace kestro::clone
