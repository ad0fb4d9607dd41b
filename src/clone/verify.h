// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/file.h"
#include "clone/imageindex.h"
#include "clone/progress.h"

#include <string>

namespace kestro::clone {

/// Bytes that all chunks take in the file, with padding.
[[nodiscard]] std::uint64_t storedBytesOf(const ImageIndex& index);

/// Reads every stored chunk from the medium and checks its hash. Throws InvalidImage or ReadError.
void verifyChunks(const File& image, const ImageIndex& index, Progress& progress);

/// Checks an image whole: stored hashes, and that every chunk unpacks to content with the right hash. Progress goes to
/// standard output. Throws Failure when it is not good.
void verifyImage(const std::string& path);

} // namespace kestro::clone
