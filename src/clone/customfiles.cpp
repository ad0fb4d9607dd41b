// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/customfiles.h"

#include "clone/alignedbuffer.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace kestro::clone {

namespace {

constexpr std::string_view customMagic{"KIMFILES", 8};
constexpr std::string_view scheme{"kim://"};
constexpr std::size_t largestName = 255;

void append(std::vector<std::byte>& section, const void* data, std::size_t size)
{
    const auto* bytes = static_cast<const std::byte*>(data);
    const std::size_t place = section.size();
    section.resize(place + size);
    std::copy_n(bytes, size, section.data() + place);
}

/// Takes bytes off the front; shorter than asked when the section ends.
std::span<const std::byte> taken(std::span<const std::byte>& section, std::size_t size)
{
    const auto result = section.first(std::min(size, section.size()));
    section = section.subspan(result.size());
    return result;
}

std::uint32_t takenNumber(std::span<const std::byte>& section)
{
    std::uint32_t value = 0;
    const auto bytes = taken(section, sizeof value);
    std::memcpy(&value, bytes.data(), bytes.size());
    return value;
}

} // namespace

bool isCustomFileName(std::string_view name)
{
    const bool plain = std::none_of(
        name.begin(), name.end(), [](char c) { return c == '/' || static_cast<unsigned char>(c) < 0x20 || c == 0x7f; });
    return plain && !name.empty() && name.size() <= largestName && name != "." && name != "..";
}

std::optional<CustomFileAddress> parseCustomFileAddress(std::string_view text)
{
    if (!text.starts_with(scheme)) {
        return std::nullopt;
    }
    text.remove_prefix(scheme.size());
    const auto slash = text.rfind('/');
    if (slash == std::string_view::npos || slash == 0 || !isCustomFileName(text.substr(slash + 1))) {
        return std::nullopt;
    }
    return CustomFileAddress{std::string(text.substr(0, slash)), std::string(text.substr(slash + 1))};
}

std::vector<std::byte> encodeCustomFiles(const CustomFiles& files)
{
    std::vector<std::byte> section;
    if (files.empty()) {
        return section;
    }
    const auto count = static_cast<std::uint32_t>(files.size());
    append(section, customMagic.data(), customMagic.size());
    append(section, &count, sizeof count);
    for (const auto& [name, content] : files) {
        const auto nameSize = static_cast<std::uint32_t>(name.size());
        const auto contentSize = static_cast<std::uint32_t>(content.size());
        append(section, &nameSize, sizeof nameSize);
        append(section, &contentSize, sizeof contentSize);
        append(section, name.data(), name.size());
        append(section, content.data(), content.size());
    }
    section.resize(roundedUp(section.size()));
    return section;
}

std::optional<CustomFiles> decodeCustomFiles(std::span<const std::byte> section)
{
    CustomFiles files;
    if (section.empty()) {
        return files;
    }
    const auto magic = taken(section, customMagic.size());
    if (section.size() < sizeof(std::uint32_t) || std::memcmp(magic.data(), customMagic.data(), magic.size()) != 0) {
        return std::nullopt;
    }
    std::uint32_t left = takenNumber(section);
    if (left > mostCustomFiles) {
        return std::nullopt;
    }
    for (; left > 0; --left) {
        const std::uint32_t nameSize = takenNumber(section);
        const std::uint32_t contentSize = takenNumber(section);
        const auto nameBytes = taken(section, nameSize);
        const auto content = taken(section, contentSize);
        const std::string name(reinterpret_cast<const char*>(nameBytes.data()), nameBytes.size());
        if (content.size() != contentSize || contentSize > largestCustomFile || !isCustomFileName(name)) {
            return std::nullopt;
        }
        files.insert_or_assign(name, std::vector(content.begin(), content.end()));
    }
    return files;
}

} // namespace kestro::clone
