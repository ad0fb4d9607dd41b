// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace kestro::clone {

/// Carries out what the arguments (without the program's name) ask for, and returns the exit status. A failure is one
/// line on standard error.
[[nodiscard]] int runCommand(const std::vector<std::string>& arguments);

} // namespace kestro::clone
