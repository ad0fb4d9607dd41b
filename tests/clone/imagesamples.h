// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

/// Writes a small complete image without any device: chunks of zeros, stored and packed ones, two custom files, one of
/// them added later. Returns the path of the new file; the caller removes it.
[[nodiscard]] std::string makeSampleImage(const std::string& path);

/// True when every command would take the file for a good image: it opens, and every chunk has its hash and unpacks.
[[nodiscard]] bool isGoodImage(const std::string& path);
