#include "host/spatiola/scene_json.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <set>

#include "host/runtime/host_error.h"
#include "model/field_access.h"
#include "model/layouts.h"
#include "plugin/state_chunk.h"

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

template <typename Record, std::size_t N>
OrderedJson recordToJson(const RecordField<Record> (&fields)[N], const Record& record) {
  OrderedJson json;
  putName(json, record.name);
  for (const RecordField<Record>& field : fields) {
    if (field.real != nullptr) json[field.jsonKey] = record.*field.real;
    if (field.flag != nullptr) json[field.jsonKey] = record.*field.flag != 0;
  }
  return json;
}

OrderedJson optionsToJson(std::uint32_t flags) {
  return OrderedJson{{"inputFaderMode", flags & kOptionInputFaderModeMask},
                     {"speakerFaderMode", (flags & kOptionSpeakerFaderModeMask) >> 8},
                     {"normalize", (flags & kOptionNormalizeOff) == 0},
                     {"relativeInfluence", (flags & kOptionRelativeInfluence) != 0}};
}

// A key "a.b" names key b of the object a.
std::pair<std::string, std::string> splitKey(const char* key) {
  const std::string path(key);
  const std::size_t dot = path.find('.');
  if (dot == std::string::npos) return {path, ""};
  return {path.substr(0, dot), path.substr(dot + 1)};
}

OrderedJson& slotOf(OrderedJson& scene, const char* key) {
  const auto [outer, inner] = splitKey(key);
  return inner.empty() ? scene[outer] : scene[outer][inner];
}

OrderedJson integersToJson(const GlobalField& field, const std::int32_t* values) {
  if (field.count == 1) return values[0];
  OrderedJson list = OrderedJson::array();
  for (int k = 0; k < field.count; ++k) list.push_back(values[k]);
  return list;
}

void putGlobal(OrderedJson& scene, const GlobalField& field, const PannerPlugin& plugin) {
  OrderedJson& slot = slotOf(scene, field.jsonKey);
  if (field.id == GlobalId::LayoutPreset) {
    slot = layoutName(plugin.model.layoutPreset);
  } else if (field.kind == GlobalKind::Integer) {
    slot = integersToJson(field, globalIntegers(plugin, field.id));
  } else if (field.kind == GlobalKind::OptionBits) {
    slot = optionsToJson(plugin.model.optionFlags);
  } else {
    slot = *globalReal(plugin, field.id);
  }
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

template <typename Record, std::size_t N>
void readRecord(const Node& node, const RecordField<Record> (&fields)[N], Record& record) {
  std::set<std::string> keys{"name", "nameHex"};
  for (const RecordField<Record>& field : fields) keys.insert(field.jsonKey);
  node.expectObject(keys);
  readName(node, record.name);
  for (const RecordField<Record>& field : fields) {
    if (!node.has(field.jsonKey)) continue;
    const Node value = node.member(field.jsonKey);
    if (field.real != nullptr) record.*field.real = value.number(field.range);
    if (field.flag != nullptr) record.*field.flag = value.boolean() ? 1 : 0;
  }
}

// Keys left out keep the values of a fresh record.
template <typename Record, std::size_t N>
void defaultRecord(const RecordField<Record> (&fields)[N], Record& record) {
  for (const RecordField<Record>& field : fields) {
    if (field.real != nullptr) record.*field.real = field.range.fallback;
  }
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

// Whole numbers within the range, each a multiple of the field's step.
int readInteger(const Node& node, const GlobalField& field) {
  const int value =
      node.integer(static_cast<int>(field.range.low), static_cast<int>(field.range.high));
  if (value % field.step != 0) {
    node.fail(std::to_string(value) + " is not a multiple of " + std::to_string(field.step));
  }
  return value;
}

void readIntegers(const Node& node, const GlobalField& field, std::int32_t* values) {
  if (field.count == 1) {
    values[0] = readInteger(node, field);
    return;
  }
  const auto count = static_cast<std::size_t>(field.count);
  if (!node.value().is_array() || node.value().size() != count) {
    node.fail("expected " + std::to_string(count) + " whole numbers, found " + node.value().dump());
  }
  for (std::size_t k = 0; k < count; ++k) values[k] = readInteger(node.element(k), field);
}

void readGlobalValue(const Node& node, const GlobalField& field, PannerPlugin& plugin) {
  if (field.id == GlobalId::LayoutPreset) {
    plugin.model.layoutPreset = readLayout(node);
  } else if (field.kind == GlobalKind::Integer) {
    readIntegers(node, field, globalIntegers(plugin, field.id));
  } else if (field.kind == GlobalKind::OptionBits) {
    plugin.model.optionFlags = readOptions(node, plugin.model.optionFlags);
  } else {
    *globalReal(plugin, field.id) = node.number(field.range);
  }
}

// The keys of the object `outer` ("roomScale" of "roomScale.x").
std::set<std::string> innerKeys(const std::string& outer) {
  std::set<std::string> keys;
  for (const GlobalField& field : kGlobalFields) {
    const auto [first, inner] = splitKey(field.jsonKey);
    if (first == outer && !inner.empty()) keys.insert(inner);
  }
  return keys;
}

void readGlobal(const Node& root, const GlobalField& field, PannerPlugin& plugin) {
  const auto [outer, inner] = splitKey(field.jsonKey);
  if (!root.has(outer)) return;
  if (inner.empty()) {
    readGlobalValue(root.member(outer), field, plugin);
    return;
  }
  const Node object = root.member(outer);
  object.expectObject(innerKeys(outer));
  if (object.has(inner)) readGlobalValue(object.member(inner), field, plugin);
}

template <typename Record, std::size_t N>
void readRecords(const Node& node, const RecordField<Record> (&fields)[N],
                 GrowableArray<Record>& records, int limit) {
  if (!node.value().is_array()) node.fail("expected a list, found " + node.value().dump());
  const std::size_t count = node.value().size();
  if (count > static_cast<std::size_t>(limit)) {
    node.fail(std::to_string(count) + " entries, at most " + std::to_string(limit));
  }
  records.resize(static_cast<int>(count));
  records.clearToZero();
  for (std::size_t i = 0; i < count; ++i) {
    Record& record = records[static_cast<int>(i)];
    defaultRecord(fields, record);
    readRecord(node.element(i), fields, record);
  }
}

// A preset's name promises its speakers: a scene that lists another number of them is not that
// preset.
void checkLayoutCount(const Node& root, const PannerPlugin& plugin) {
  const int preset = plugin.model.layoutPreset;
  const int listed = plugin.speakerCount();
  int expected = listed;
  if (preset == -1) {
    expected = 0;
  } else if (preset != kLayoutUserSetup) {
    PannerPlugin presetModel;
    applyLayoutPreset(presetModel, preset);
    expected = presetModel.speakerCount();
  }
  if (expected != listed) {
    const Node layout = root.has("layout") ? root.member("layout") : Node(root.value(), "layout");
    layout.fail("\"" + layoutName(preset) + "\" has " + std::to_string(expected) +
                " speakers, and \"speakers\" lists " + std::to_string(listed));
  }
}

void readHeader(const Node& root, PannerPlugin& plugin) {
  if (root.has("format") && root.member("format").string() != kFormatName) {
    root.member("format").fail("expected \"spatiola-scene\"");
  }
  if (root.has("formatVersion")) root.member("formatVersion").integer(1, kFormatVersion);
  for (const GlobalField& field : kGlobalFields) readGlobal(root, field, plugin);
}

// The library's message without its own prefixes: "[json.exception.parse_error.101] parse error
// at line 1, column 2: ..." becomes "line 1, column 2: ...".
std::string plainJsonError(const std::string& what) {
  std::string text = what;
  if (text.starts_with("[json.exception.")) text.erase(0, text.find("] ") + 2);
  for (const char* prefix : {"parse error at ", "parse error: "}) {
    if (text.starts_with(prefix)) text.erase(0, std::string(prefix).size());
  }
  return text;
}

}  // namespace

OrderedJson sceneToJson(const PannerPlugin& plugin) {
  OrderedJson scene;
  scene["format"] = kFormatName;
  scene["formatVersion"] = kFormatVersion;
  for (const GlobalField& field : kGlobalFields) putGlobal(scene, field, plugin);
  scene["inputs"] = OrderedJson::array();
  for (const InputChannel& input : plugin.model.inputs) {
    scene["inputs"].push_back(recordToJson(kInputFields, input));
  }
  scene["speakers"] = OrderedJson::array();
  for (const Speaker& speaker : plugin.model.speakers) {
    scene["speakers"].push_back(recordToJson(kSpeakerFields, speaker));
  }
  return scene;
}

void sceneFromJson(const Json& scene, PannerPlugin& plugin) {
  const Node root(scene, "");
  std::set<std::string> keys{"format", "formatVersion", "inputs", "speakers"};
  for (const GlobalField& field : kGlobalFields) keys.insert(splitKey(field.jsonKey).first);
  root.expectObject(keys);
  readHeader(root, plugin);
  if (root.has("inputs")) {
    readRecords(root.member("inputs"), kInputFields, plugin.model.inputs, kMaxInputs);
  }
  if (!root.has("speakers")) {
    Node(scene, "speakers").fail("missing: a scene lists its speakers ([] for none)");
  }
  readRecords(root.member("speakers"), kSpeakerFields, plugin.model.speakers, kMaxSpeakers);
  checkLayoutCount(root, plugin);
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
    throw HostError(sourceName + ": not valid JSON: " + plainJsonError(error.what()));
  }
  PannerPlugin plugin;
  sceneFromJson(scene, plugin);
  void* data = nullptr;
  const std::int32_t length = writeStateChunk(plugin, &data);
  const auto* bytes = static_cast<const unsigned char*>(data);
  return {bytes, bytes + length};
}
