// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace kestro::clone {

/// The version of the program, from the project's.
inline constexpr const char* programVersion = KESTRO_CLONE_VERSION;

} // namespace kestro::clone
