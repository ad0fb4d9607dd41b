// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/imagereader.h"
#include "clone/progress.h"

#include <string>

namespace kestro::clone {

/// Reads every stored chunk from the medium and checks its hash. Throws InvalidImage or ReadError.
void verifyChunks(const ImageReader& image, Progress& progress);

/// Checks an image whole: stored hashes, and that every chunk unpacks to content with the right hash. Progress goes to
/// standard output. Throws Failure when it is not good.
void verifyImage(const std::string& path);

} // namespace kestro::clone
