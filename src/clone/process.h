// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace kestro::clone {

/// Runs a program found on PATH, with its input and output on /dev/null, and waits for it. Returns its exit code; -1
/// when it could not be started or was killed. May be called while threads run.
[[nodiscard]] int runQuietly(const std::vector<std::string>& command);

} // namespace kestro::clone
