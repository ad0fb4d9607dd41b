// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace kestro::clone {

/// Puts a file into an image under the address "kim://IMAGE/NAME", replacing one of that name. The image may be
/// complete, incomplete or missing; a missing one is begun. Throws Failure.
void writeCustomFile(const std::string& address, const std::string& file);

/// Copies a file out of a complete image, durably. Throws Failure; then the target is as it was.
void readCustomFile(const std::string& address, const std::string& file);

} // namespace kestro::clone
