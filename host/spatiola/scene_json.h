// Spatiola's whole state block as readable JSON and back: global settings, then every input and
// speaker with its name. A block the plug-in wrote survives export and import byte for byte.
//
// Import is strict: invalid JSON, unknown keys, wrong types and values outside what the plug-in
// accepts are errors that name the place, e.g. "inputs[3].gain: 7.5 is outside 0..4". Keys that
// are left out keep the values of a fresh instance.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

struct PannerPlugin;

nlohmann::ordered_json sceneToJson(const PannerPlugin& plugin);
// Throws HostError naming the path of the first bad value.
void sceneFromJson(const nlohmann::json& scene, PannerPlugin& plugin);

// State block bytes -> JSON text (two-space indentation, ends with a newline).
std::string exportScene(const std::vector<unsigned char>& stateBlock);
// Whether the plug-in would write these very bytes back. Blocks of older versions, cut-off blocks
// and blocks with values out of range load leniently, so their scene is what the plug-in makes of
// them, not a copy.
bool isCanonicalStateBlock(const std::vector<unsigned char>& stateBlock);
// JSON text -> state block bytes; `sourceName` prefixes syntax errors.
std::vector<unsigned char> importScene(const std::string& jsonText, const std::string& sourceName);
