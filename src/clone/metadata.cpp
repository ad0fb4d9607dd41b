// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/metadata.h"

#include "clone/imageformat.h"

#include <algorithm>

#include <nlohmann/json.hpp>

namespace kestro::clone {

using Json = nlohmann::json;

namespace {

constexpr int deepestNesting = 8;

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

/// How deep brackets stand in each other, those in strings apart. Deep nesting would make the parser use much memory.
int nesting(std::string_view text)
{
    int depth = 0;
    int deepest = 0;
    bool quoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        i += quoted && c == '\\' ? 1 : 0;
        quoted = quoted != (c == '"');
        if (!quoted) {
            depth += (c == '[' || c == '{') - (c == ']' || c == '}');
            deepest = std::max(deepest, depth);
        }
    }
    return deepest;
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
    if (text.size() > largestMetadata || nesting(text) > deepestNesting) {
        return std::nullopt;
    }
    const Json json = Json::parse(text, nullptr, false);
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
