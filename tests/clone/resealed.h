// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

/// Images whose bytes somebody changed on purpose, with the hashes put right again: damage shows by its hash, malice
/// does not.
using ImageBytes = std::vector<std::byte>;

/// A number of an image, and the place to change it; the position must lie inside.
[[nodiscard]] std::uint64_t numberAt(const ImageBytes& image, std::size_t position);
void putNumber(ImageBytes& image, std::size_t position, std::uint64_t value);

/// The places in a root record where its sections stand: index, chunk table, description, custom files.
inline constexpr std::array<std::size_t, 4> sectionEntries{48, 72, 96, 120};

/// What reseal puts right; may be added up.
inline constexpr unsigned sealSections = 1;
inline constexpr unsigned sealRoots = 2;
inline constexpr unsigned sealHeader = 4;

/// Puts the hashes of the sections that lie inside the file, of the root records, or of the header right.
void reseal(ImageBytes& image, unsigned what);
