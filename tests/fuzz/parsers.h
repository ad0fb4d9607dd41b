// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string_view>

/// Feeds bytes to one of the parsers of what tools print and files hold, and ends the process when an answer cannot be.
/// @return false when there is no parser with that name
[[nodiscard]] bool feedParser(std::string_view name, const char* data, std::size_t size);
