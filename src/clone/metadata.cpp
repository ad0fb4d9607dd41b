// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/metadata.h"

#include <nlohmann/json.hpp>

namespace kestro::clone {

using Json = nlohmann::json;

namespace {

Json extentJson(const Extent& extent)
{
    return {{"offset", extent.offset}, {"length", extent.length}};
}

Extent extentOf(const Json& json)
{
    return {json.at("offset").get<std::uint64_t>(), json.at("length").get<std::uint64_t>()};
}

Json partJson(const ContentPart& part)
{
    Json json = extentJson(part.range);
    json.update({{"partition", part.partition}, {"type", part.type}, {"label", part.label}, {"reader", part.reader},
        {"usedBytes", part.usedBytes}});
    return json;
}

ContentPart partOf(const Json& json)
{
    return {json.at("partition").get<unsigned>(), extentOf(json), json.at("type").get<std::string>(),
        json.at("label").get<std::string>(), json.at("reader").get<std::string>(),
        json.at("usedBytes").get<std::uint64_t>()};
}

Metadata metadataOf(const Json& json)
{
    Metadata metadata{json.at("tool").get<std::string>(), json.at("created").get<std::string>(),
        json.at("device").get<std::string>(), json.at("model").get<std::string>(),
        json.at("partitionTable").get<std::string>(), {}, {}, json.at("frozen").get<bool>(),
        json.at("needsRecovery").get<bool>()};
    for (const Json& part : json.at("parts")) {
        metadata.parts.push_back(partOf(part));
    }
    for (const Json& hole : json.at("holes")) {
        metadata.holes.push_back(extentOf(hole));
    }
    return metadata;
}

} // namespace

std::string toJson(const Metadata& metadata)
{
    Json json{{"tool", metadata.tool}, {"created", metadata.created}, {"device", metadata.device},
        {"model", metadata.model}, {"partitionTable", metadata.partitionTable}, {"parts", Json::array()},
        {"holes", Json::array()}, {"frozen", metadata.frozen}, {"needsRecovery", metadata.needsRecovery}};
    for (const ContentPart& part : metadata.parts) {
        json["parts"].push_back(partJson(part));
    }
    for (const Extent& hole : metadata.holes) {
        json["holes"].push_back(extentJson(hole));
    }
    // Labels on disks need not be UTF-8.
    return json.dump(1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::optional<Metadata> metadataFromJson(std::string_view text)
{
    // Deep nesting would be the only way to make the parser use much memory.
    const auto shallow = [](int depth, Json::parse_event_t, const Json&) { return depth <= 8; };
    const Json json = Json::parse(text, shallow, false);
    if (json.is_discarded()) {
        return std::nullopt;
    }
    try {
        return metadataOf(json);
    } catch (const Json::exception&) {
        return std::nullopt;
    }
}

} // namespace kestro::clone
