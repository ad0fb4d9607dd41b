// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/sourcereader.h"

#include <string>

namespace kestro::clone {

/// Images a device. Throws Failure for everything that keeps the image from being complete and checked; Holes when it
/// is complete but for places that could not be read. Progress goes to standard output.
void backUp(const std::string& device, const std::string& image, ReadErrors readErrors);

} // namespace kestro::clone
