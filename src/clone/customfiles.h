// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestro::clone {

/// The small files that an image carries beside its content, by name.
using CustomFiles = std::map<std::string, std::vector<std::byte>, std::less<>>;

/// The largest custom file, in bytes.
inline constexpr std::size_t largestCustomFile = 1U << 20U;

/// Each of them takes memory besides its bytes.
inline constexpr std::size_t mostCustomFiles = 4096;

/// True for a plain file name: 1 to 255 bytes, no "/", no control character, not "." or "..".
[[nodiscard]] bool isCustomFileName(std::string_view name);

/// The parts of "kim://IMAGE/NAME"; the image's path is what stands before the last "/".
struct CustomFileAddress
{
    std::string image;
    std::string name;
};

/// None when the text is no such address.
[[nodiscard]] std::optional<CustomFileAddress> parseCustomFileAddress(std::string_view text);

/// The custom files as stored, padded with zeros to a multiple of blockSize; empty when there are none.
[[nodiscard]] std::vector<std::byte> encodeCustomFiles(const CustomFiles& files);

/// The custom files of a stored section; none when it is damaged.
[[nodiscard]] std::optional<CustomFiles> decodeCustomFiles(std::span<const std::byte> section);

} // namespace kestro::clone
