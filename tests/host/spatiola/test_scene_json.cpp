// Spatiola scenes as JSON: byte-exact round trips of blocks the plug-in writes, and errors that
// name the place of a bad value.
#include <gtest/gtest.h>

#include <cstring>

#include "host/spatiola/reach_check.h"
#include "host/spatiola/scene_json.h"
#include "model/counts.h"
#include "model/layouts.h"
#include "model/panner_plugin.h"
#include "plugin/state_chunk.h"
#include "tests/host/runtime/test_support.h"

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
  plugin.model.inputs[1].gain = 0.123456789012345678;
  plugin.model.inputs[1].lfeSend = 3.999;
  plugin.model.inputs[1].x = -0.7071067811865476;
  plugin.model.inputs[1].z = 4.8;
  plugin.model.inputs[1].diffuse = 1.0 / 3.0;
  plugin.model.inputs[1].diffuseBias = -1.0;
  plugin.model.inputs[1].diffuseAngle = -0.25;
  plugin.model.inputs[1].mute = 1;
  plugin.model.inputs[2].solo = 1;
  plugin.model.inputs[2].selected = 1;
  plugin.model.inputs[2].reverse = 1;
  std::memset(plugin.model.inputs[0].name, 'n', 63);
  std::strcpy(plugin.model.inputs[2].name, "caf\xe9 \xff");  // Latin-1: not UTF-8
  std::strcpy(plugin.model.speakers[3].name, "Tiefton \xc3\xa4");
  plugin.model.speakers[2].influence = 1.875;
  plugin.model.speakers[4].mute = 1;
  plugin.model.speakers[5].solo = 1;
  plugin.model.centerTrim = 2.5;
  plugin.view.zoom = 0.3;
  plugin.model.spaceScaleX = 2e-6;
  plugin.model.spaceScaleZ = 1.5;
  plugin.model.optionFlags = 0x20000 | 0x0100 | 0x01;
  plugin.editor.groupKnobModes[2] = 73;
  plugin.editor.inputFaderOffset = 8;
  plugin.model.userSpeakerCount = 12;
}

}  // namespace

TEST(SceneJson, RoundTripIsByteExact) {
  PannerPlugin empty, fresh, busy;
  setInputCount(fresh, 2);
  applyLayoutPreset(fresh, kLayoutStereo);
  buildBusyScene(busy);
  for (PannerPlugin* plugin : {&empty, &fresh, &busy}) {
    const auto block = blockOf(*plugin);
    EXPECT_TRUE(isCanonicalStateBlock(block));
    EXPECT_EQ(importScene(exportScene(block), "x"), block) << exportScene(block);
  }
}

TEST(SceneJson, BlocksThePluginWouldNotWriteAreToldApart) {
  PannerPlugin plugin;
  buildBusyScene(plugin);
  const auto block = blockOf(plugin);
  auto cutOff = block, olderVersion = block, outOfRange = block;
  cutOff.resize(block.size() - 5);
  olderVersion[0] = 3;
  outOfRange[36 + 7] = 0x47;  // centerTrim 2.5 * 2^112: clamped to 4 on loading
  for (const auto* odd : {&cutOff, &olderVersion, &outOfRange})
    EXPECT_FALSE(isCanonicalStateBlock(*odd));
}

// Left-out keys take fresh defaults.
TEST(SceneJson, ExportIsReadableAndImportFillsInDefaults) {
  PannerPlugin plugin;
  buildBusyScene(plugin);
  const auto scene = nlohmann::json::parse(exportScene(blockOf(plugin)));
  EXPECT_EQ(std::pair(scene["inputs"].size(), scene["speakers"].size()), std::pair(3ul, 8ul));
  EXPECT_FALSE(scene["inputs"][2].contains("name"));  // not UTF-8: given as hex
  expectJsonAt(scene, nlohmann::json::parse(R"({
      "/layout": "7.1 surround", "/speakers/3/lfe": true, "/speakers/3/name": "Tiefton \u00e4",
      "/inputs/1/mute": true, "/inputs/2/nameHex": "636166e920ff", "/options/normalize": true,
      "/options/speakerFaderMode": 1, "/roomScale/z": 1.5})"));
  const auto block = importScene(R"({"speakers": [{"x": -1}], "inputs": [{}]})", "x");
  PannerPlugin fresh;
  readStateChunk(fresh, block.data(), static_cast<std::int32_t>(block.size()));
  ASSERT_EQ(std::pair(fresh.speakerCount(), fresh.inputCount()), std::pair(1, 1));
  EXPECT_EQ((std::array{fresh.model.speakers[0].x, fresh.model.speakers[0].gain,
                        fresh.model.inputs[0].gain, fresh.view.zoom}),
            (std::array{-1.0, 1.0, 1.0, 0.48}));
}

// Representative limits of each kind; the plug-in's own loader pins every field's range.
TEST(SceneJson, BadInputNamesThePlace) {
  const std::pair<std::string, std::string> cases[] = {
      {R"({"inputs": [{}, {}, {}, {"gain": 7.5}]})", "inputs[3].gain: 7.5 is outside 0..4"},
      {R"({"inputs": [{"volume": 1}]})", "inputs[0]: unknown key \"volume\""},
      {R"({"layout": "6.1 surround"})",
       "layout: \"6.1 surround\" is not a layout (\"user setup\", \"stereo\", ... \"9.1 ITU-R\", "
       "or \"none\")"},
      {R"({"inputFaderOffset": 6})", "inputFaderOffset: 6 is not a multiple of 4"},
      {R"({"inputs": []})", "speakers: missing: a scene lists its speakers ([] for none)"},
      {R"({"layout": "5.1 surround", "speakers": [{}, {}]})",
       "layout: \"5.1 surround\" has 6 speakers, and \"speakers\" lists 2"},
  };
  for (const auto& [json, message] : cases) EXPECT_EQ(importError(json), message) << json;
}

// Spatiola's defaults leave inputs out of every speaker's reach in Absolute mode: four inputs with
// the quadraphonic layout, an input at the centre with 5.1.
TEST(ReachWarnings, NameTheInputsNoSpeakerReachesAndWhatWouldReachOne) {
  const auto warningsOf = [](int inputs, int preset, auto change) {
    PannerPlugin plugin;
    setInputCount(plugin, inputs);
    applyLayoutPreset(plugin, preset);
    change(plugin);
    return reachWarnings(plugin);
  };
  const auto none = [](PannerPlugin&) {};
  const std::vector<std::string> quad = warningsOf(4, kLayoutQuadraphonic, none);
  ASSERT_EQ(quad.size(), 4u);
  EXPECT_EQ(quad[0],
            "input 1 (\"channel 1\") at (-0.25, 0.25, 0) reaches no speaker in Absolute influence "
            "mode; the nearest speaker, \"front left\", is 1.06 away and reaches 1.00. It would "
            "reach one in Relative influence mode, moved within 1.00 of \"front left\", or with "
            "--set \"front left influence=0.536\"");
  const auto centre = [](PannerPlugin& p) { p.model.inputs[0].x = p.model.inputs[0].y = 0.0; };
  EXPECT_EQ(warningsOf(1, kLayoutSurround51, centre).size(), 1u);
  // What the gain law reaches needs no words: Relative mode, a muted input, the stereo default.
  const auto relative = [](PannerPlugin& p) { p.model.optionFlags |= kOptionRelativeInfluence; };
  const auto muted = [](PannerPlugin& p) { p.model.inputs[0].mute = 1; };
  EXPECT_TRUE(warningsOf(4, kLayoutQuadraphonic, relative).empty());
  EXPECT_TRUE(warningsOf(1, kLayoutSurround51, [&](PannerPlugin& p) {
                centre(p);
                muted(p);
              }).empty());
  EXPECT_TRUE(warningsOf(2, kLayoutStereo, none).empty());
}

TEST(ReachWarnings, SayThatUserSpeakersAfterTheSixteenthSitAtTheCentre) {
  PannerPlugin plugin;
  setInputCount(plugin, 2);
  setSpeakerCount(plugin, 40);
  EXPECT_EQ(reachWarnings(plugin),
            std::vector<std::string>{"speakers 17..40 of the user setup all sit at the centre: a "
                                     "user setup places only its first 16; --layout \"40 ring\" "
                                     "spreads them all on a sphere"});
  plugin.model.speakers[30].x = 0.5;  // placed by the user
  EXPECT_TRUE(reachWarnings(plugin).empty());
}
