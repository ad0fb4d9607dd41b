// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/imageinfo.h"

#include "clone/failure.h"
#include "clone/humansize.h"

#include <array>
#include <string_view>

#include <nlohmann/json.hpp>

namespace kestro::clone {

namespace {

std::string line(const std::string& name, const std::string& value)
{
    return name + ": " + oneLine(value) + "\n";
}

std::string partText(const ContentPart& part)
{
    std::string text = part.type.empty() ? "unknown" : part.type;
    text += part.label.empty() ? "" : " \"" + part.label + "\"";
    text += ", " + humanSize(part.range.length) + ", used " + humanSize(part.usedBytes) + " (" + part.reader + ")";
    return text;
}

std::string partLines(const Metadata& metadata)
{
    std::string text;
    for (const ContentPart& part : metadata.parts) {
        text += line(part.partition == 0 ? "Content" : "Partition " + std::to_string(part.partition), partText(part));
    }
    return text;
}

std::string customFileNames(const CustomFiles& files)
{
    std::string names;
    for (const auto& [name, content] : files) {
        names += (names.empty() ? "" : ", ") + name;
    }
    return names.empty() ? "none" : names;
}

} // namespace

std::string withoutMarks(std::string text)
{
    constexpr std::array<std::string_view, 3> marks{"UUID=", "DiskDrive=", "invalid file"};
    for (const std::string_view mark : marks) {
        for (auto at = text.find(mark); at != std::string::npos; at = text.find(mark, at)) {
            text[at + mark.find_first_of("= ")] = '_';
        }
    }
    return text;
}

std::string describeImage(const ImageReader& image)
{
    const Metadata& metadata = image.metadata();
    std::string text = "Image: complete\n";
    text += line("Source", metadata.device + (metadata.model.empty() ? "" : " (" + metadata.model + ")"));
    text += line("Size", exactSize(image.index().sourceSize));
    text += line("Used", exactSize(totalLength(image.index().extents)));
    text += line("Stored", exactSize(image.head().root.fileSize));
    text += line("Created", metadata.created);
    text += line("Partition table", metadata.partitionTable.empty() ? "none" : metadata.partitionTable);
    text += partLines(metadata);
    text += line("Unreadable places", std::to_string(metadata.holes.size()));
    text += line("Needs recovery", metadata.needsRecovery ? "yes, when it is mounted for the first time" : "no");
    text += line("Custom files", customFileNames(image.customFiles()));
    text += line("Tool", metadata.tool);
    return withoutMarks(text);
}

std::string describeImageAsJson(const ImageReader& image)
{
    auto json = nlohmann::json::parse(toJson(image.metadata()));
    json.update({{"complete", true}, {"size", image.index().sourceSize}, {"used", totalLength(image.index().extents)},
        {"stored", image.head().root.fileSize}, {"sectorSize", image.index().sectorSize},
        {"customFiles", nlohmann::json::array()}});
    for (const auto& [name, content] : image.customFiles()) {
        json["customFiles"].push_back(name);
    }
    return withoutMarks(json.dump(1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n");
}

} // namespace kestro::clone
