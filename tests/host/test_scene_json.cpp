// Spatiola scenes as JSON: byte-exact round trips of blocks the plug-in writes, and errors that
// name the place of a bad value.
#include <gtest/gtest.h>

#include <cstring>

#include "host/cli/scene_json.h"
#include "model/counts.h"
#include "model/layouts.h"
#include "model/panner_plugin.h"
#include "plugin/state_chunk.h"
#include "tests/host/test_support.h"

namespace {

std::vector<unsigned char> blockOf(PannerPlugin& plugin) {
  void* data = nullptr;
  const std::int32_t length = writeStateChunk(plugin, &data);
  const auto* bytes = static_cast<const unsigned char*>(data);
  return {bytes, bytes + length};
}

std::string importError(const std::string& json) {
  return errorOf([&] { importScene(json, "scene.json"); });
}

// A setup that uses every field with values that are not the defaults.
void buildBusyScene(PannerPlugin& plugin) {
  setInputCount(plugin, 3);
  applyLayoutPreset(plugin, kLayoutSurround71);
  plugin.inputs[1].gain = 0.123456789012345678;
  plugin.inputs[1].lfeSend = 3.999;
  plugin.inputs[1].x = -0.7071067811865476;
  plugin.inputs[1].z = 4.8;
  plugin.inputs[1].diffuse = 1.0 / 3.0;
  plugin.inputs[1].diffuseBias = -1.0;
  plugin.inputs[1].diffuseAngle = -0.25;
  plugin.inputs[1].mute = 1;
  plugin.inputs[2].solo = 1;
  plugin.inputs[2].selected = 1;
  plugin.inputs[2].reverse = 1;
  std::memset(plugin.inputs[0].name, 'n', 63);
  std::strcpy(plugin.inputs[2].name, "caf\xe9 \xff");  // Latin-1: not UTF-8
  std::strcpy(plugin.speakers[3].name, "Tiefton \xc3\xa4");
  plugin.speakers[2].influence = 1.875;
  plugin.speakers[4].mute = 1;
  plugin.speakers[5].solo = 1;
  plugin.centerTrim = 2.5;
  plugin.zoom = 0.3;
  plugin.spaceScaleX = 2e-6;
  plugin.spaceScaleZ = 1.5;
  plugin.optionFlags = 0x20000 | 0x0100 | 0x01;
  plugin.groupKnobModes[2] = 73;
  plugin.inputFaderOffset = 8;
  plugin.userSpeakerCount = 12;
}

}  // namespace

TEST(SceneJson, RoundTripIsByteExact) {
  PannerPlugin fresh;
  setInputCount(fresh, 2);
  applyLayoutPreset(fresh, kLayoutStereo);
  const auto freshBlock = blockOf(fresh);
  EXPECT_EQ(importScene(exportScene(freshBlock), "x"), freshBlock);

  PannerPlugin busy;
  buildBusyScene(busy);
  const auto busyBlock = blockOf(busy);
  const std::string json = exportScene(busyBlock);
  EXPECT_EQ(importScene(json, "x"), busyBlock) << json;

  PannerPlugin empty;
  const auto emptyBlock = blockOf(empty);
  EXPECT_EQ(importScene(exportScene(emptyBlock), "x"), emptyBlock);
  for (const auto* block : {&freshBlock, &busyBlock, &emptyBlock}) {
    EXPECT_TRUE(isCanonicalStateBlock(*block));
  }
}

TEST(SceneJson, BlocksThePluginWouldNotWriteAreToldApart) {
  PannerPlugin plugin;
  buildBusyScene(plugin);
  const auto block = blockOf(plugin);
  auto cutOff = block;
  cutOff.resize(block.size() - 5);
  auto olderVersion = block;
  olderVersion[0] = 3;
  auto outOfRange = block;
  outOfRange[36 + 7] = 0x47;  // centerTrim 2.5 * 2^112: clamped to 4 on loading
  for (const auto* odd : {&cutOff, &olderVersion, &outOfRange}) {
    EXPECT_FALSE(isCanonicalStateBlock(*odd));
  }
  EXPECT_FALSE(isCanonicalStateBlock({}));
}

TEST(SceneJson, ExportIsReadable) {
  PannerPlugin plugin;
  buildBusyScene(plugin);
  const auto scene = nlohmann::json::parse(exportScene(blockOf(plugin)));
  EXPECT_EQ(scene["inputs"].size(), 3u);
  EXPECT_EQ(scene["speakers"].size(), 8u);
  EXPECT_FALSE(scene["inputs"][2].contains("name"));  // not UTF-8: given as hex
  expectJsonAt(scene, nlohmann::json::parse(R"({
      "/layout": "7.1 surround", "/speakers/0/name": "front left", "/speakers/3/lfe": true,
      "/speakers/3/name": "Tiefton \u00e4", "/inputs/1/mute": true,
      "/inputs/2/nameHex": "636166e920ff", "/options/normalize": true,
      "/options/relativeInfluence": true, "/options/speakerFaderMode": 1, "/roomScale/z": 1.5})"));
}

TEST(SceneJson, LeftOutKeysTakeFreshDefaults) {
  const auto block = importScene(R"({"layout": "stereo", "speakers": [{"name": "left", "x": -1}],
                                     "inputs": [{}]})",
                                 "x");
  PannerPlugin plugin;
  readStateChunk(plugin, block.data(), static_cast<std::int32_t>(block.size()));
  EXPECT_EQ(plugin.layoutPreset, 1);
  ASSERT_EQ(plugin.speakerCount(), 1);
  ASSERT_EQ(plugin.inputCount(), 1);
  const Speaker& speaker = plugin.speakers[0];
  EXPECT_EQ((std::array{speaker.x, speaker.gain, speaker.influence}), (std::array{-1.0, 1.0, 1.0}));
  EXPECT_EQ((std::array{plugin.inputs[0].gain, plugin.zoom}), (std::array{1.0, 0.48}));
  EXPECT_STREQ(plugin.inputs[0].name, "");
}

TEST(SceneJson, BadInputNamesThePlace) {
  struct Case {
    const char* json;
    const char* message;
  };
  const Case cases[] = {
      {R"({"inputs": [{}, {}, {}, {"gain": 7.5}]})", "inputs[3].gain: 7.5 is outside 0..4"},
      {R"({"inputs": [{"gain": "loud"}]})", "inputs[0].gain: expected a number, found \"loud\""},
      {R"({"inputs": [{"x": -5}]})", "inputs[0].x: -5 is outside -4.8..4.8"},
      {R"({"inputs": [{"mute": 1}]})", "inputs[0].mute: expected true or false, found 1"},
      {R"({"inputs": [{"volume": 1}]})", "inputs[0]: unknown key \"volume\""},
      {R"({"speakers": [{"influence": 2.5}]})", "speakers[0].influence: 2.5 is outside 0..2"},
      {R"({"speakers": [{"name": 3}]})", "speakers[0].name: expected a string, found 3"},
      {R"({"speakers": {}})", "speakers: expected a list, found {}"},
      {R"({"zoom": 0.05})", "zoom: 0.05 is outside 0.1..0.9500000476837158"},
      {R"({"roomScale": {"x": 0}})", "roomScale.x: 0 is outside 2e-06..2"},
      {R"({"roomScale": {"w": 1}})", "roomScale: unknown key \"w\""},
      {R"({"layout": "6.1 surround"})",
       "layout: \"6.1 surround\" is not a layout (\"user setup\", \"stereo\", ... \"9.1 ITU-R\", "
       "or \"none\")"},
      {R"({"inputFaderOffset": 6})", "inputFaderOffset: 6 is not a multiple of 4"},
      {R"({"userSpeakerCount": 1.5})", "userSpeakerCount: expected a whole number, found 1.5"},
      {R"({"groupKnobModes": [0, 6]})", "groupKnobModes: expected 3 whole numbers, found [0,6]"},
      {R"({"groupKnobModes": [0, 6, 74]})", "groupKnobModes[2]: 74 is outside 0..73"},
      {R"({"options": {"inputFaderMode": 2}})", "options.inputFaderMode: 2 is outside 0..1"},
      {R"({"format": "other"})", "format: expected \"spatiola-scene\""},
      {R"({"colour": "red"})", "scene: unknown key \"colour\""},
      {R"([1, 2])", "scene: expected an object, found [1,2]"},
      {R"({"inputs": [{"nameHex": "4g"}]})", "inputs[0].nameHex: expected pairs of hex digits"},
      {R"({"inputs": [{"name": "a", "nameHex": "61"}]})",
       "inputs[0]: give name or nameHex, not both"},
  };
  for (const Case& c : cases) EXPECT_EQ(importError(c.json), c.message) << c.json;
}

TEST(SceneJson, LimitsOfNamesAndCounts) {
  const std::string longName(64, 'a');
  EXPECT_EQ(importError(R"({"speakers": [{"name": ")" + longName + R"("}]})"),
            "speakers[0].name: 64 bytes, at most 63");
  std::string many = R"({"inputs": [)";
  for (int i = 0; i < 65; ++i) many += i == 0 ? "{}" : ", {}";
  EXPECT_EQ(importError(many + "]}"), "inputs: 65 entries, at most 64");
  EXPECT_EQ(importError(R"({"inputs": [{"name": "a\u0000b"}]})"),
            "inputs[0]: a name cannot hold a zero byte");
  const std::string invalid = importError("{\"inputs\": [");
  EXPECT_EQ(invalid.rfind("scene.json: not valid JSON: ", 0), 0u) << invalid;
}
