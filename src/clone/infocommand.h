// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace kestro::clone {

/// Prints what an image holds and returns 0. For anything that is not a complete, intact, readable image it prints
/// "invalid file" to standard output, "invalid file" with the reason to standard error, and returns another value. An
/// image that this user may not read is asked for once more through "sudo -n".
[[nodiscard]] int printInfo(const std::string& image, bool json);

} // namespace kestro::clone
