// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/imageindex.h"

#include <cstdint>
#include <functional>

namespace kestro::clone {

/// Does one chunk's work.
using ChunkTask = std::function<void(std::uint64_t chunk)>;

/// How many threads share the chunks of an image: so many that some compute on every core while others wait for a
/// device, and no more than the memory allows for their buffers, the index and so many other bytes. Never less than
/// two.
[[nodiscard]] unsigned crewSize(const ImageIndex& index, std::uint64_t otherBytes = 0);

/// Runs a task for the chunks first to last - 1, roughly in order, on several threads. makeTask runs once in each
/// thread and gives it its own buffers. The first failure, or an interruption, stops all threads and is thrown here.
void runCrew(std::uint64_t first, std::uint64_t last, unsigned threads, const std::function<ChunkTask()>& makeTask);

} // namespace kestro::clone
