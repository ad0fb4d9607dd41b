// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/sourcereader.h"

#include <string>

namespace kestro::clone {

/// Writes an image to a device. The image is checked whole before the device is opened for writing, and everything
/// written is read back and checked; the first blocks are written last. Throws Failure when any of this fails, or when
/// the image has holes and readErrors is not Rescue. Progress goes to standard output.
void restore(const std::string& image, const std::string& device, ReadErrors readErrors);

} // namespace kestro::clone
