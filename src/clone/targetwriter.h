// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/blockdevice.h"
#include "clone/file.h"
#include "clone/imagereader.h"
#include "clone/progress.h"

namespace kestro::clone {

/// Writes a checked image to a device and checks what it wrote. The first blocks are wiped at the start and written
/// last, so that a target that was left half-way looks like nothing at all.
class TargetWriter
{
public:
    /// Opens the device for itself alone. Throws Busy, and Refused for another device. Keeps the references.
    TargetWriter(const ImageReader& image, const BlockDevice& target, Progress& progress);

    /// Two phases of the progress: writing and reading back.
    void run();

private:
    void wipeBeginning();
    void wipeBeginningAgain() noexcept;
    void writeChunks();
    /// How many chunks have content in the first blocks.
    [[nodiscard]] std::uint64_t beginningChunks() const;
    void writeBeginning(std::uint64_t chunkCount);
    void checkChunks(std::uint64_t first, std::uint64_t last);
    void settle();
    void readPartitionsAgain();

    const ImageReader& m_image;
    const BlockDevice& m_target;
    Progress& m_progress;
    ChunkLayout m_layout;
    File m_device;
};

} // namespace kestro::clone
