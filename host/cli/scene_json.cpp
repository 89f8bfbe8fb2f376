#include "host/cli/scene_json.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <set>

#include "host/core/host_error.h"
#include "model/layouts.h"
#include "model/panner_plugin.h"
#include "plugin/state_chunk.h"
#include "plugin/state_limits.h"

namespace {

using Json = nlohmann::json;
using OrderedJson = nlohmann::ordered_json;

constexpr const char* kFormatName = "spatiola-scene";
constexpr int kFormatVersion = 1;
constexpr const char* kNoSpeakersLayout = "none";  // layoutPreset -1: no speakers
// ---- export ---------------------------------------------------------------------------------

std::string layoutName(int preset) {
  if (preset >= 0 && preset < kLayoutPresetCount) return kLayoutPresetNames[preset];
  return kNoSpeakersLayout;
}

bool isValidUtf8(const std::string& text) {
  try {
    (void)Json(text).dump();
    return true;
  } catch (const Json::type_error&) {
    return false;
  }
}

// Names are bytes; text that is not UTF-8 is kept as hex so that nothing is lost.
void putName(OrderedJson& record, const char* name) {
  const std::string text(name);
  if (isValidUtf8(text)) {
    record["name"] = text;
    return;
  }
  std::string hex;
  for (const unsigned char c : text) {
    constexpr const char* kDigits = "0123456789abcdef";
    hex += kDigits[c >> 4];
    hex += kDigits[c & 15u];
  }
  record["nameHex"] = hex;
}

OrderedJson inputToJson(const InputChannel& input) {
  OrderedJson record;
  putName(record, input.name);
  record["gain"] = input.gain;
  record["lfeSend"] = input.lfeSend;
  record["x"] = input.x;
  record["y"] = input.y;
  record["z"] = input.z;
  record["diffuse"] = input.diffuse;
  record["diffuseBias"] = input.diffuseBias;
  record["diffuseAngle"] = input.diffuseAngle;
  record["mute"] = input.mute != 0;
  record["solo"] = input.solo != 0;
  record["selected"] = input.selected != 0;
  record["reverse"] = input.reverse != 0;
  return record;
}

OrderedJson speakerToJson(const Speaker& speaker) {
  OrderedJson record;
  putName(record, speaker.name);
  record["gain"] = speaker.gain;
  record["x"] = speaker.x;
  record["y"] = speaker.y;
  record["z"] = speaker.z;
  record["influence"] = speaker.influence;
  record["mute"] = speaker.mute != 0;
  record["solo"] = speaker.solo != 0;
  record["lfe"] = speaker.isLfe != 0;
  return record;
}

OrderedJson optionsToJson(std::uint32_t flags) {
  return OrderedJson{{"inputFaderMode", flags & kOptionInputFaderModeMask},
                     {"speakerFaderMode", (flags & kOptionSpeakerFaderModeMask) >> 8},
                     {"normalize", (flags & kOptionNormalizeOff) == 0},
                     {"relativeInfluence", (flags & kOptionRelativeInfluence) != 0}};
}

// ---- import ---------------------------------------------------------------------------------

// A JSON value with the path that leads to it, for messages.
class Node {
 public:
  Node(const Json& value, std::string path) : value_(value), path_(std::move(path)) {}

  const Json& value() const { return value_; }
  const std::string& path() const { return path_; }
  [[noreturn]] void fail(const std::string& what) const {
    throw HostError((path_.empty() ? "scene" : path_) + ": " + what);
  }

  Node member(const std::string& key) const {
    return Node(value_.at(key), path_.empty() ? key : path_ + "." + key);
  }
  Node element(std::size_t index) const {
    return Node(value_.at(index), path_ + "[" + std::to_string(index) + "]");
  }
  bool has(const std::string& key) const { return value_.contains(key); }

  void expectObject(const std::set<std::string>& allowed) const {
    if (!value_.is_object()) fail("expected an object, found " + value_.dump());
    for (const auto& [key, ignored] : value_.items()) {
      if (allowed.count(key) == 0) {
        fail("unknown key \"" + key + "\"");
      }
    }
  }

  double number(const ValueRange& range) const {
    if (!value_.is_number()) fail("expected a number, found " + value_.dump());
    const double x = value_.get<double>();
    if (!(x >= range.low && x <= range.high)) {
      fail(value_.dump() + " is outside " + formatted(range.low) + ".." + formatted(range.high));
    }
    return x;
  }

  int integer(int low, int high) const {
    if (!value_.is_number_integer()) fail("expected a whole number, found " + value_.dump());
    const auto x = value_.get<std::int64_t>();
    if (x < low || x > high) {
      fail(value_.dump() + " is outside " + std::to_string(low) + ".." + std::to_string(high));
    }
    return static_cast<int>(x);
  }

  bool boolean() const {
    if (!value_.is_boolean()) fail("expected true or false, found " + value_.dump());
    return value_.get<bool>();
  }

  std::string string() const {
    if (!value_.is_string()) fail("expected a string, found " + value_.dump());
    return value_.get<std::string>();
  }

 private:
  static std::string formatted(double x) {
    std::string text = Json(x).dump();
    if (text.size() > 2 && text.compare(text.size() - 2, 2, ".0") == 0)
      text.resize(text.size() - 2);
    return text;
  }

  const Json& value_;
  std::string path_;
};

// Reads `key` into `field` through `read` when present.
template <typename T, typename Read>
void optional(const Node& node, const char* key, T& field, Read read) {
  if (node.has(key)) field = static_cast<T>(read(node.member(key)));
}

void readName(const Node& record, char* name) {
  if (record.has("name") && record.has("nameHex")) record.fail("give name or nameHex, not both");
  std::string bytes;
  if (record.has("name")) {
    bytes = record.member("name").string();
  } else if (record.has("nameHex")) {
    const Node hex = record.member("nameHex");
    const std::string text = hex.string();
    if (text.size() % 2 != 0 ||
        text.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
      hex.fail("expected pairs of hex digits");
    }
    for (std::size_t i = 0; i < text.size(); i += 2) {
      bytes += static_cast<char>(std::stoi(text.substr(i, 2), nullptr, 16));
    }
  }
  if (bytes.size() > kNameCapacity - 1) {
    record.member(record.has("name") ? "name" : "nameHex")
        .fail(std::to_string(bytes.size()) + " bytes, at most 63");
  }
  if (bytes.find('\0') != std::string::npos) record.fail("a name cannot hold a zero byte");
  std::memset(name, 0, kNameCapacity);
  std::copy(bytes.begin(), bytes.end(), name);
}

void readInput(const Node& node, InputChannel& input) {
  node.expectObject({"name", "nameHex", "gain", "lfeSend", "x", "y", "z", "diffuse", "diffuseBias",
                     "diffuseAngle", "mute", "solo", "selected", "reverse"});
  readName(node, input.name);
  const auto number = [](const ValueRange& range) {
    return [range](const Node& n) { return n.number(range); };
  };
  const auto flag = [](const Node& n) { return n.boolean() ? 1 : 0; };
  optional(node, "gain", input.gain, number(kLevelRange));
  optional(node, "lfeSend", input.lfeSend, number(kLevelRange));
  optional(node, "x", input.x, number(kPositionRange));
  optional(node, "y", input.y, number(kPositionRange));
  optional(node, "z", input.z, number(kPositionRange));
  optional(node, "diffuse", input.diffuse, number(kDiffuseRange));
  optional(node, "diffuseBias", input.diffuseBias, number(kSignedRange));
  optional(node, "diffuseAngle", input.diffuseAngle, number(kSignedRange));
  optional(node, "mute", input.mute, flag);
  optional(node, "solo", input.solo, flag);
  optional(node, "selected", input.selected, flag);
  optional(node, "reverse", input.reverse, flag);
}

void readSpeaker(const Node& node, Speaker& speaker) {
  node.expectObject({"name", "nameHex", "gain", "x", "y", "z", "influence", "mute", "solo", "lfe"});
  readName(node, speaker.name);
  const auto number = [](const ValueRange& range) {
    return [range](const Node& n) { return n.number(range); };
  };
  const auto flag = [](const Node& n) { return n.boolean() ? 1 : 0; };
  optional(node, "gain", speaker.gain, number(kLevelRange));
  optional(node, "x", speaker.x, number(kPositionRange));
  optional(node, "y", speaker.y, number(kPositionRange));
  optional(node, "z", speaker.z, number(kPositionRange));
  optional(node, "influence", speaker.influence, number(kInfluenceRange));
  optional(node, "mute", speaker.mute, flag);
  optional(node, "solo", speaker.solo, flag);
  optional(node, "lfe", speaker.isLfe, flag);
}

int readLayout(const Node& node) {
  const std::string name = node.string();
  if (name == kNoSpeakersLayout) return -1;
  for (int i = 0; i < kLayoutPresetCount; ++i) {
    if (name == kLayoutPresetNames[i]) return i;
  }
  node.fail("\"" + name +
            "\" is not a layout (\"user setup\", \"stereo\", ... \"9.1 ITU-R\", or \"none\")");
}

std::uint32_t readOptions(const Node& node, std::uint32_t flags) {
  node.expectObject({"inputFaderMode", "speakerFaderMode", "normalize", "relativeInfluence"});
  const auto setBits = [&flags](std::uint32_t mask, std::uint32_t bits) {
    flags = (flags & ~mask) | (bits & mask);
  };
  if (node.has("inputFaderMode")) {
    setBits(kOptionInputFaderModeMask, node.member("inputFaderMode").integer(0, kMaxFaderMode));
  }
  if (node.has("speakerFaderMode")) {
    setBits(kOptionSpeakerFaderModeMask,
            static_cast<std::uint32_t>(node.member("speakerFaderMode").integer(0, kMaxFaderMode))
                << 8);
  }
  if (node.has("normalize")) {
    setBits(kOptionNormalizeOff,
            node.member("normalize").boolean() ? 0u : std::uint32_t{kOptionNormalizeOff});
  }
  if (node.has("relativeInfluence")) {
    setBits(kOptionRelativeInfluence, node.member("relativeInfluence").boolean()
                                          ? std::uint32_t{kOptionRelativeInfluence}
                                          : 0u);
  }
  return flags;
}

int readFaderOffset(const Node& node) {
  const int offset = node.integer(0, kMaxFaderOffset);
  if (offset % 4 != 0) node.fail(std::to_string(offset) + " is not a multiple of 4");
  return offset;
}

void readRoomScale(const Node& node, PannerPlugin& plugin) {
  node.expectObject({"x", "y", "z"});
  const auto scale = [](const Node& n) { return n.number(kRoomScaleRange); };
  optional(node, "x", plugin.spaceScaleX, scale);
  optional(node, "y", plugin.spaceScaleY, scale);
  optional(node, "z", plugin.spaceScaleZ, scale);
}

void readGroupModes(const Node& node, PannerPlugin& plugin) {
  if (!node.value().is_array() || node.value().size() != 3) {
    node.fail("expected 3 whole numbers, found " + node.value().dump());
  }
  for (std::size_t i = 0; i < 3; ++i)
    plugin.groupKnobModes[i] = node.element(i).integer(0, kMaxGroupMode);
}

template <typename Record, typename Read>
void readRecords(const Node& node, GrowableArray<Record>& records, int limit, Read read) {
  if (!node.value().is_array()) node.fail("expected a list, found " + node.value().dump());
  const std::size_t count = node.value().size();
  if (count > static_cast<std::size_t>(limit)) {
    node.fail(std::to_string(count) + " entries, at most " + std::to_string(limit));
  }
  records.resize(static_cast<int>(count));
  records.clearToZero();
  for (std::size_t i = 0; i < count; ++i) read(node.element(i), records[static_cast<int>(i)]);
}

void defaultRecord(InputChannel& input) {
  input.gain = 1.0;
}

void defaultRecord(Speaker& speaker) {
  speaker.gain = 1.0;
  speaker.influence = 1.0;
}

void readHeader(const Node& root, PannerPlugin& plugin) {
  if (root.has("format") && root.member("format").string() != kFormatName) {
    root.member("format").fail("expected \"spatiola-scene\"");
  }
  if (root.has("formatVersion")) root.member("formatVersion").integer(1, kFormatVersion);
  optional(root, "layout", plugin.layoutPreset, readLayout);
  optional(root, "userSpeakerCount", plugin.userSpeakerCount,
           [](const Node& n) { return n.integer(0, kMaxSpeakers); });
  optional(root, "inputFaderOffset", plugin.inputFaderOffset, readFaderOffset);
  optional(root, "speakerFaderOffset", plugin.speakerFaderOffset, readFaderOffset);
  if (root.has("groupKnobModes")) readGroupModes(root.member("groupKnobModes"), plugin);
  if (root.has("options"))
    plugin.optionFlags = readOptions(root.member("options"), plugin.optionFlags);
  optional(root, "centerTrim", plugin.centerTrim,
           [](const Node& n) { return n.number(kLevelRange); });
  optional(root, "zoom", plugin.zoom, [](const Node& n) { return n.number(kZoomRange); });
  if (root.has("roomScale")) readRoomScale(root.member("roomScale"), plugin);
}

}  // namespace

OrderedJson sceneToJson(const PannerPlugin& plugin) {
  OrderedJson scene;
  scene["format"] = kFormatName;
  scene["formatVersion"] = kFormatVersion;
  scene["layout"] = layoutName(plugin.layoutPreset);
  scene["userSpeakerCount"] = plugin.userSpeakerCount;
  scene["inputFaderOffset"] = plugin.inputFaderOffset;
  scene["speakerFaderOffset"] = plugin.speakerFaderOffset;
  scene["groupKnobModes"] = {plugin.groupKnobModes[0], plugin.groupKnobModes[1],
                             plugin.groupKnobModes[2]};
  scene["options"] = optionsToJson(plugin.optionFlags);
  scene["centerTrim"] = plugin.centerTrim;
  scene["zoom"] = plugin.zoom;
  scene["roomScale"] = {
      {"x", plugin.spaceScaleX}, {"y", plugin.spaceScaleY}, {"z", plugin.spaceScaleZ}};
  scene["inputs"] = OrderedJson::array();
  for (const InputChannel& input : plugin.inputs) scene["inputs"].push_back(inputToJson(input));
  scene["speakers"] = OrderedJson::array();
  for (const Speaker& speaker : plugin.speakers)
    scene["speakers"].push_back(speakerToJson(speaker));
  return scene;
}

void sceneFromJson(const Json& scene, PannerPlugin& plugin) {
  const Node root(scene, "");
  root.expectObject({"format", "formatVersion", "layout", "userSpeakerCount", "inputFaderOffset",
                     "speakerFaderOffset", "groupKnobModes", "options", "centerTrim", "zoom",
                     "roomScale", "inputs", "speakers"});
  readHeader(root, plugin);
  if (root.has("inputs")) {
    readRecords(root.member("inputs"), plugin.inputs, kMaxInputs,
                [](const Node& n, InputChannel& input) {
                  defaultRecord(input);
                  readInput(n, input);
                });
  }
  if (root.has("speakers")) {
    readRecords(root.member("speakers"), plugin.speakers, kMaxSpeakers,
                [](const Node& n, Speaker& speaker) {
                  defaultRecord(speaker);
                  readSpeaker(n, speaker);
                });
  }
}

std::string exportScene(const std::vector<unsigned char>& stateBlock) {
  PannerPlugin plugin;
  readStateChunk(plugin, stateBlock.data(), static_cast<std::int32_t>(stateBlock.size()));
  return sceneToJson(plugin).dump(2) + "\n";
}

bool isCanonicalStateBlock(const std::vector<unsigned char>& stateBlock) {
  PannerPlugin plugin;
  readStateChunk(plugin, stateBlock.data(), static_cast<std::int32_t>(stateBlock.size()));
  void* data = nullptr;
  const std::int32_t length = writeStateChunk(plugin, &data);
  const auto* bytes = static_cast<const unsigned char*>(data);
  return std::equal(stateBlock.begin(), stateBlock.end(), bytes, bytes + length);
}

std::vector<unsigned char> importScene(const std::string& jsonText, const std::string& sourceName) {
  Json scene;
  try {
    scene = Json::parse(jsonText);
  } catch (const Json::exception& error) {  // syntax, and numbers no double can hold
    throw HostError(sourceName + ": not valid JSON: " + error.what());
  }
  PannerPlugin plugin;
  sceneFromJson(scene, plugin);
  void* data = nullptr;
  const std::int32_t length = writeStateChunk(plugin, &data);
  const auto* bytes = static_cast<const unsigned char*>(data);
  return {bytes, bytes + length};
}
