// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kestro::clone {

/// Runs a program found on PATH, with its input and output on /dev/null, and waits for it. Returns its exit code; -1
/// when it could not be started or was killed. May be called while threads run.
[[nodiscard]] int runQuietly(const std::vector<std::string>& command);

/// The same, but hands over each line of the program's standard output, without its end, as it comes. A line longer
/// than 4095 bytes comes in parts. A signal that this process catches ends the program; -1 then, for lines are missing.
[[nodiscard]] int runForLines(
    const std::vector<std::string>& command, const std::function<void(std::string_view line)>& take);

} // namespace kestro::clone
