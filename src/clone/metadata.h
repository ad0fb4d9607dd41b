// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/extents.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestro::clone {

/// More unreadable places than this are joined with their neighbours, and with what was read between them.
inline constexpr std::size_t mostHoles = 4096;
/// What one of them takes in the description.
inline constexpr std::size_t largestHoleText = 96;

/// One file system, swap area or container of the source.
struct ContentPart
{
    /// The partition's number; 0 when the source is not a whole disk.
    unsigned partition = 0;
    Extent range;
    /// As libblkid calls it ("ext4", "crypto_LUKS"); empty when unknown.
    std::string type;
    std::string label;
    /// How the used blocks were found: "libext2fs", "partclone", "swap", "whole".
    std::string reader;
    std::uint64_t usedBytes = 0;
};

/// What people want to know of an image; only the table, the parts' types and the holes have a say in a restore.
struct Metadata
{
    std::string tool;
    /// UTC as "2026-01-31T23:59:59Z".
    std::string created;
    std::string device;
    std::string model;
    /// "gpt" or "dos" for a whole disk; empty for anything else.
    std::string partitionTable;
    std::vector<ContentPart> parts;
    /// Places that could not be read and are kept as zeros.
    ExtentList holes;
    /// The source was mounted read-write and frozen while it was read.
    bool frozen = false;
    /// The file system's journal was not empty when it was read.
    bool needsRecovery = false;
};

/// Indented, with a newline at its end. What is no UTF-8 in a label or name is replaced.
[[nodiscard]] std::string toJson(const Metadata& metadata);

/// None when the text is not what toJson writes. Unknown keys are ignored.
[[nodiscard]] std::optional<Metadata> metadataFromJson(std::string_view text);

} // namespace kestro::clone
