// Layout presets, custom speaker counts, input defaults and the ring placement.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <sstream>
#include <string>

#include "model_fixture.h"

namespace {

bool has(const std::string& text, const char* word) {
  return text.find(word) != std::string::npos;
}

// "FLH" is "front left height": each letter a word.
std::string nameOf(const std::string& code) {
  if (code == "LFE") return code;
  static const std::map<char, const char*> words = {{'F', "front"}, {'B', "back"},  {'S', "side"},
                                                    {'L', "left"},  {'R', "right"}, {'C', "center"},
                                                    {'H', "height"}};
  std::string name;
  for (char c : code) name += (name.empty() ? "" : " ") + std::string(words.at(c));
  return name;
}

// Where a name puts a speaker: on the edge of the square room (a height without front or back half
// way up and forward), or in the ITU-R presets on the unit circle at 30, 110 and 150 degrees with
// the heights 45 degrees up and round.
Position3 placeOf(const std::string& name, bool itu) {
  const double side = has(name, "left") ? -1 : has(name, "right") ? 1 : 0;
  const bool height = has(name, "height");
  if (name == "LFE") return {0, 0, 0};
  if (!itu) {
    const double depth = has(name, "front") ? 1 : has(name, "back") ? -1 : 0;
    if (height) return {side, depth == 0 ? 0.5 : depth, depth == 0 ? 0.5 : 1};
    return {side, depth, 0};
  }
  const double degrees = has(name, "front")  ? 30
                         : has(name, "side") ? 110
                         : has(name, "back") ? 150
                                             : 45;
  const double azimuth = (side == 0 ? 0 : degrees) * M_PI / 180;
  const double elevation = height ? M_PI / 4 : 0;
  return {side * std::sin(azimuth) * std::cos(elevation), std::cos(azimuth) * std::cos(elevation),
          std::sin(elevation)};
}

}  // namespace

TEST(LayoutPresets, EveryPresetLaysOutItsNamedSpeakersWhereTheirNamesSay) {
  const struct {
    int index;
    const char* name;
    double influence;
    const char* speakers;
  } presets[] = {
      {1, "stereo", 1.0, "L R"},
      {2, "quadraphonic", 1.0, "FL FR BL BR"},
      {3, "octophonic", 0.875, "FL FC FR SR BR BC BL SL"},
      {4, "octophonic box", 1.0, "FL FR BL BR FLH FRH BLH BRH"},
      {5, "5.1 surround", 1.0, "FL FR FC LFE BL BR"},
      {6, "7.1 surround", 1.0, "FL FR FC LFE SL SR BL BR"},
      {7, "9.1 surround", 1.0, "FL FR FC LFE SL SR BL BR LH RH"},
      {8, "5.1 ITU-R", 0.875, "FL FR FC LFE SL SR"},
      {9, "7.1 ITU-R", 0.875, "FL FR FC LFE SL SR BL BR"},
      {10, "9.1 ITU-R", 0.875, "FL FR FC LFE SL SR BL BR LH RH"},
  };
  RecordingHost host;
  auto plugin = makeInstance(2);
  for (const auto& preset : presets) {
    SCOPED_TRACE(preset.name);
    EXPECT_STREQ(kLayoutPresetNames[preset.index], preset.name);
    applyLayoutPreset(*plugin, preset.index);
    std::istringstream codes(preset.speakers);
    int i = 0;
    for (std::string code; codes >> code; ++i) {
      ASSERT_LT(i, plugin->speakerCount());
      const Speaker& s = plugin->model.speakers[i];
      const Position3 at = placeOf(nameOf(code), preset.index >= 8);
      EXPECT_EQ(std::tuple(std::string(s.name), s.isLfe, s.influence, s.gain, s.mute + s.solo),
                std::tuple(nameOf(code), code == "LFE", preset.influence, 1.0, 0));
      EXPECT_NEAR(s.x, at.x, 1e-15) << code;
      EXPECT_NEAR(s.y, at.y, 1e-15) << code;
      EXPECT_NEAR(s.z, at.z, 1e-15) << code;
    }
    EXPECT_EQ(plugin->speakerCount(), i);
    EXPECT_EQ(plugin->model.layoutPreset, preset.index);
    EXPECT_EQ(plugin->host.effect.numParams, 4 + 20 + 7 * i);
  }
  for (int index : {0, 11, -3}) {  // the user setup and unknown indexes leave no speakers
    plugin->editor.speakerFaderOffset = 8;
    applyLayoutPreset(*plugin, index);
    EXPECT_EQ(std::tuple(plugin->speakerCount(), plugin->model.layoutPreset,
                         plugin->host.effect.numParams, plugin->editor.speakerFaderOffset),
              std::tuple(0, -1, 2 * 10 + 4, 0));
  }
}

TEST(CustomSpeakerCount, RenamesPresetSpeakersKeepsTheirPlacesAndGivesNewOnesTheInfluence) {
  RecordingHost host;
  auto plugin = makeInstance(2);
  applyLayoutPreset(*plugin, 9);  // 7.1 ITU-R
  setSpeakerCount(*plugin, 10);
  EXPECT_EQ(plugin->model.layoutPreset, 0);
  EXPECT_EQ(plugin->model.userSpeakerCount, 10);
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(plugin->model.speakers[i].name,
              "speaker " + std::string(1, static_cast<char>('A' + i)));
  }
  EXPECT_EQ(plugin->model.speakers[0].x, -0.49999999999999994);
  EXPECT_EQ(plugin->model.speakers[3].isLfe, 1);  // an LFE speaker stays LFE under its new name
  for (const int i : {8, 9}) {                    // new speakers follow an ITU layout
    const Speaker& s = plugin->model.speakers[i];
    EXPECT_EQ(std::tuple(s.x, s.y, s.influence), std::tuple(i == 8 ? -0.25 : 0.25, 0.5, 0.875));
  }
  for (const auto& [preset, influence] : {std::pair{7, 1.0}, {8, 0.875}, {10, 0.875}}) {
    applyLayoutPreset(*plugin, preset);  // an added speaker takes the layout's influence
    setSpeakerCount(*plugin, plugin->speakerCount() + 1);
    EXPECT_EQ(plugin->model.speakers[plugin->speakerCount() - 1].influence, influence) << preset;
  }
}

TEST(CustomSpeakerCount, KeepsNamesOfACustomLayoutNamesByAlphabetRoundsAndStopsAt64) {
  RecordingHost host;
  auto plugin = makeInstance(2);
  setSpeakerCount(*plugin, 3);
  copyChannelName(plugin->model.speakers[1].name, "my sub");
  setSpeakerCount(*plugin, 100);
  EXPECT_EQ(plugin->speakerCount(), 64);
  EXPECT_EQ(plugin->model.userSpeakerCount, 64);
  EXPECT_EQ(plugin->host.effect.numParams, 4 + 20 + 7 * 64);
  std::vector<std::string> names;
  for (int i : {1, 25, 26, 52, 63}) names.push_back(plugin->model.speakers[i].name);
  EXPECT_EQ(names, (std::vector<std::string>{"my sub", "speaker Z", "speaker A2", "speaker A3",
                                             "speaker L3"}));
  const Speaker* s = &plugin->model.speakers[15];  // row 15 repeats row 13
  EXPECT_EQ(std::tuple(s[0].x, s[0].y, s[1].x, s[1].influence), std::tuple(0.5, 0.25, 0.0, 1.0));
}

TEST(RingMode, NeedsShiftAndAtLeast32AndReinitialisesEveryInput) {
  RecordingHost host;
  auto plugin = makeInstance(2);
  plugin->model.inputs[0].gain = 3.0;
  asyncKeyState = [](int key) -> short { return key == 0x10 ? -32768 : 0; };  // Shift held
  setSpeakerCount(*plugin, 31);
  EXPECT_EQ(std::pair(plugin->model.speakers[2].x, plugin->model.speakers[2].y),
            std::pair(-0.5, -0.5));  // the custom table, not the ring
  setSpeakerCount(*plugin, 32);
  for (int i = 0; i < 32; ++i) EXPECT_EQ(plugin->model.speakers[i].influence, 0.5);
  EXPECT_EQ(std::pair(plugin->model.speakers[0].x, plugin->model.speakers[0].y),
            std::pair(0.0, 0.5));  // straight ahead on the ring
  setInputCount(*plugin, 48);
  EXPECT_EQ(plugin->model.inputs[0].gain, 1.0);
  EXPECT_EQ(plugin->model.inputs[47].z, -0.5);  // the lower pole comes last
  asyncKeyState = nullptr;
}

TEST(InputCount, NewInputsGetDefaultPlacesAndKeptOnesStay) {
  RecordingHost host;
  auto plugin = makeInstance(4);
  const double places[4][2] = {{-0.25, 0.25}, {0.25, 0.25}, {0, 0.125}, {0, 0}};
  for (int i = 0; i < 4; ++i) {
    const InputChannel& in = plugin->model.inputs[i];
    EXPECT_EQ(std::tuple(std::string(in.name), in.x, in.y, in.gain),
              std::tuple("channel " + std::to_string(i + 1), places[i][0], places[i][1], 1.0));
  }
  plugin->model.inputs[1].gain = 2.0;
  plugin->model.inputs[3].x = 0.7;
  copyChannelName(plugin->model.inputs[1].name, "vocals");
  setInputCount(*plugin, 2);
  setInputCount(*plugin, 4);
  EXPECT_EQ(std::tuple(std::string(plugin->model.inputs[1].name), plugin->model.inputs[1].gain,
                       plugin->model.inputs[3].x),
            std::tuple("vocals", 2.0, 0.0));  // kept, and re-added with fresh defaults
  plugin->model.inputs[0].name[0] = '\0';
  setInputCount(*plugin, 4);
  EXPECT_STREQ(plugin->model.inputs[0].name, "channel 1");  // an empty name is filled in
}

TEST(RingPositions, RingsLayersAndPolesAtTheirAngles) {
  const double d3 = M_PI / 6;  // two layers below 48 points
  const double d4 = M_PI / 8;  // three from 48 on
  const struct {
    int n, index;
    double azimuth, elevation;
  } cases[] = {
      {32, 0, 0, 0},                        // straight ahead
      {32, 15, 2 * M_PI / 6 * 1, -d3},      // second point of its lower ring
      {32, 20, 0, 2 * d3},                  // second layer
      {32, 30, 0, M_PI / 2},                // the poles come last, upper first
      {48, 34, 2 * M_PI / 6 * 2, -2 * d4},  // third point of the lower ring of layer 2
      {48, 40, 2 * M_PI / 4 * 2, 3 * d4},   // third point of the top ring
      {64, 52, 0, 3 * d4},                  // top ring
      {64, 61, 2 * M_PI / 5 * 4, -3 * d4},  // last point of the lowest ring
  };
  for (const auto& c : cases) {
    Position3 points[64];
    computeRingPositions(c.n, points);
    const Position3& p = points[c.index];
    SCOPED_TRACE(std::to_string(c.n) + ":" + std::to_string(c.index));
    EXPECT_NEAR(p.x, 0.5 * std::sin(c.azimuth) * std::cos(c.elevation), 1e-15);
    EXPECT_NEAR(p.y, 0.5 * std::cos(c.azimuth) * std::cos(c.elevation), 1e-15);
    EXPECT_NEAR(p.z, 0.5 * std::sin(c.elevation), 1e-15);
  }
}
