// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/imagereader.h"

#include <string>

namespace kestro::clone {

/// The facts about a complete image, one a line. No line holds "UUID=", "DiskDrive=" or "invalid file", whatever labels
/// say: readers of this text take those for a record or for a verdict. No control characters but the line ends.
[[nodiscard]] std::string describeImage(const ImageReader& image);

/// The same facts as one JSON object, with the same promise.
[[nodiscard]] std::string describeImageAsJson(const ImageReader& image);

/// Breaks up the words that must not stand in the text of an image's description.
[[nodiscard]] std::string withoutMarks(std::string text);

} // namespace kestro::clone
