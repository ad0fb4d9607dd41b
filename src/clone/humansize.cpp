// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/humansize.h"

#include <array>
#include <cstdio>

namespace kestro::clone {

std::string humanSize(std::uint64_t bytes)
{
    constexpr std::array units{"B", "KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};
    if (bytes < 1024) {
        return std::to_string(bytes) + " B";
    }
    double value = static_cast<double>(bytes);
    std::size_t unit = 0;
    // 1023.95 would be printed as "1024.0".
    while (value >= 1023.95 && unit + 1 < units.size()) {
        value /= 1024;
        ++unit;
    }
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f %s", value, units.at(unit));
    return text.data();
}

std::string exactSize(std::uint64_t bytes)
{
    return humanSize(bytes) + " (" + std::to_string(bytes) + " bytes)";
}

std::string clockTime(std::uint64_t seconds)
{
    const auto hours = static_cast<unsigned long long>(seconds / 3600);
    const auto minutes = static_cast<unsigned>(seconds / 60 % 60);
    const auto rest = static_cast<unsigned>(seconds % 60);
    std::array<char, 48> text{};
    if (hours > 0) {
        std::snprintf(text.data(), text.size(), "%llu:%02u:%02u", hours, minutes, rest);
    } else {
        std::snprintf(text.data(), text.size(), "%u:%02u", minutes, rest);
    }
    return text.data();
}

} // namespace kestro::clone
