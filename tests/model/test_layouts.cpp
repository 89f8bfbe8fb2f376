// Layout presets, custom speaker counts, input defaults and the ring placement.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "model_fixture.h"

namespace {

struct ExpectedSpeaker {
  const char* name;
  double x, y, z;
  bool isLfe;
};

struct PresetCase {
  int index;
  const char* name;
  double influence;
  std::vector<ExpectedSpeaker> speakers;
};

const std::vector<ExpectedSpeaker> kQuad = {{"front left", -1, 1, 0, false},
                                            {"front right", 1, 1, 0, false},
                                            {"back left", -1, -1, 0, false},
                                            {"back right", 1, -1, 0, false}};
const std::vector<ExpectedSpeaker> k51 = {
    {"front left", -1, 1, 0, false},  {"front right", 1, 1, 0, false},
    {"front center", 0, 1, 0, false}, {"LFE", 0, 0, 0, true},
    {"back left", -1, -1, 0, false},  {"back right", 1, -1, 0, false}};
const std::vector<ExpectedSpeaker> k71 = {
    {"front left", -1, 1, 0, false},  {"front right", 1, 1, 0, false},
    {"front center", 0, 1, 0, false}, {"LFE", 0, 0, 0, true},
    {"side left", -1, 0, 0, false},   {"side right", 1, 0, 0, false},
    {"back left", -1, -1, 0, false},  {"back right", 1, -1, 0, false}};
const std::vector<ExpectedSpeaker> kItu = {
    {"front left", -0.49999999999999994, 0.8660254037844387, 0, false},
    {"front right", 0.49999999999999994, 0.8660254037844387, 0, false},
    {"front center", 0, 1, 0, false},
    {"LFE", 0, 0, 0, true},
    {"side left", -0.9396926207859084, -0.3420201433256685, 0, false},
    {"side right", 0.9396926207859084, -0.3420201433256685, 0, false},
    {"back left", -0.49999999999999994, -0.8660254037844387, 0, false},
    {"back right", 0.49999999999999994, -0.8660254037844387, 0, false},
    {"left height", -0.5, 0.5000000000000001, 0.7071067811865476, false},
    {"right height", 0.5, 0.5000000000000001, 0.7071067811865476, false}};

std::vector<ExpectedSpeaker> first(const std::vector<ExpectedSpeaker>& all, std::size_t n) {
  return {all.begin(), all.begin() + static_cast<long>(n)};
}

std::vector<ExpectedSpeaker> with(std::vector<ExpectedSpeaker> base,
                                  const std::vector<ExpectedSpeaker>& more) {
  base.insert(base.end(), more.begin(), more.end());
  return base;
}

std::vector<PresetCase> presetCases() {
  return {
      {1, "stereo", 1.0, {{"left", -1, 0, 0, false}, {"right", 1, 0, 0, false}}},
      {2, "quadraphonic", 1.0, kQuad},
      {3,
       "octophonic",
       0.875,
       {{"front left", -1, 1, 0, false},
        {"front center", 0, 1, 0, false},
        {"front right", 1, 1, 0, false},
        {"side right", 1, 0, 0, false},
        {"back right", 1, -1, 0, false},
        {"back center", 0, -1, 0, false},
        {"back left", -1, -1, 0, false},
        {"side left", -1, 0, 0, false}}},
      {4, "octophonic box", 1.0,
       with(kQuad, {{"front left height", -1, 1, 1, false},
                    {"front right height", 1, 1, 1, false},
                    {"back left height", -1, -1, 1, false},
                    {"back right height", 1, -1, 1, false}})},
      {5, "5.1 surround", 1.0, k51},
      {6, "7.1 surround", 1.0, k71},
      {7, "9.1 surround", 1.0,
       with(k71, {{"left height", -1, 0.5, 0.5, false}, {"right height", 1, 0.5, 0.5, false}})},
      {8, "5.1 ITU-R", 0.875, first(kItu, 6)},
      {9, "7.1 ITU-R", 0.875, first(kItu, 8)},
      {10, "9.1 ITU-R", 0.875, kItu},
  };
}

}  // namespace

TEST(LayoutPresets, EveryPresetLaysOutItsExactSpeakers) {
  RecordingHost host;
  auto plugin = makeInstance(2);
  for (const PresetCase& preset : presetCases()) {
    SCOPED_TRACE(preset.name);
    EXPECT_STREQ(kLayoutPresetNames[preset.index], preset.name);
    applyLayoutPreset(*plugin, preset.index);
    ASSERT_EQ(plugin->speakerCount(), static_cast<int>(preset.speakers.size()));
    EXPECT_EQ(plugin->layoutPreset, preset.index);
    EXPECT_EQ(plugin->effect.numParams, 4 + 20 + 7 * plugin->speakerCount());
    for (int i = 0; i < plugin->speakerCount(); ++i) {
      const Speaker& s = plugin->speakers[i];
      const ExpectedSpeaker& e = preset.speakers[static_cast<std::size_t>(i)];
      EXPECT_STREQ(s.name, e.name);
      EXPECT_EQ(s.x, e.x);  // exact doubles
      EXPECT_EQ(s.y, e.y);
      EXPECT_EQ(s.z, e.z);
      EXPECT_EQ(s.isLfe, e.isLfe ? 1 : 0) << s.name;
      EXPECT_EQ(s.influence, preset.influence);
      EXPECT_EQ(s.gain, 1.0);
      EXPECT_EQ(s.mute + s.solo, 0);
    }
  }
}

TEST(LayoutPresets, UserSetupAndUnknownIndexesLeaveNoSpeakers) {
  RecordingHost host;
  for (int index : {0, 11, -3}) {
    auto plugin = makeInstance(3);
    plugin->speakerFaderOffset = 8;
    applyLayoutPreset(*plugin, index);
    EXPECT_EQ(plugin->speakerCount(), 0);
    EXPECT_EQ(plugin->layoutPreset, -1);
    EXPECT_EQ(plugin->effect.numParams, 3 * 10 + 4);
    EXPECT_EQ(plugin->speakerFaderOffset, 0);
  }
}

TEST(DefaultLayout, FollowsTheTrackChannelCount) {
  RecordingHost host;
  const struct {
    int channels, preset, speakers;
  } cases[] = {{1, 1, 2}, {2, 1, 2}, {3, 2, 4},  {4, 2, 4},   {5, 5, 6},   {6, 5, 6},
               {7, 6, 8}, {8, 6, 8}, {9, 7, 10}, {10, 7, 10}, {11, 0, 11}, {63, 0, 63}};
  for (const auto& c : cases) {
    auto plugin = makeInstance(c.channels);
    EXPECT_EQ(plugin->layoutPreset, c.preset) << c.channels;
    EXPECT_EQ(plugin->speakerCount(), c.speakers) << c.channels;
    EXPECT_EQ(plugin->effect.numParams, 4 + 10 * c.channels + 7 * c.speakers);
  }
  EXPECT_EQ(layoutPresetForHostChannels(0), 1);
  EXPECT_EQ(layoutPresetForHostChannels(4), 2);
  EXPECT_EQ(layoutPresetForHostChannels(6), 5);
  EXPECT_EQ(layoutPresetForHostChannels(8), 6);
  EXPECT_EQ(layoutPresetForHostChannels(40), 7);  // no custom layout for a host change
}

TEST(CustomSpeakerCount, RenamesPresetSpeakersAndKeepsTheirPlaces) {
  RecordingHost host;
  auto plugin = makeInstance(2);
  applyLayoutPreset(*plugin, 9);  // 7.1 ITU-R
  setSpeakerCount(*plugin, 10);
  EXPECT_EQ(plugin->layoutPreset, 0);
  EXPECT_EQ(plugin->userSpeakerCount, 10);
  const char* names[] = {"speaker A", "speaker B", "speaker C", "speaker D", "speaker E",
                         "speaker F", "speaker G", "speaker H", "speaker I", "speaker J"};
  for (int i = 0; i < 10; ++i) EXPECT_STREQ(plugin->speakers[i].name, names[i]);
  EXPECT_EQ(plugin->speakers[0].x, -0.49999999999999994);
  EXPECT_EQ(plugin->speakers[3].isLfe, 1);
  const Speaker& i8 = plugin->speakers[8];
  const Speaker& j9 = plugin->speakers[9];
  EXPECT_EQ(i8.x, -0.25);
  EXPECT_EQ(i8.y, 0.5);
  EXPECT_EQ(j9.x, 0.25);
  EXPECT_EQ(j9.y, 0.5);
  EXPECT_EQ(i8.influence, 0.875);  // new speakers follow an ITU layout
  EXPECT_EQ(j9.influence, 0.875);
}

TEST(CustomSpeakerCount, KeepsNamesOfACustomLayoutAndNamesByAlphabetRounds) {
  RecordingHost host;
  auto plugin = makeInstance(2);
  setSpeakerCount(*plugin, 3);
  copyChannelName(plugin->speakers[1].name, "my sub");
  setSpeakerCount(*plugin, 60);
  EXPECT_STREQ(plugin->speakers[1].name, "my sub");
  EXPECT_STREQ(plugin->speakers[25].name, "speaker Z");
  EXPECT_STREQ(plugin->speakers[26].name, "speaker A2");
  EXPECT_STREQ(plugin->speakers[52].name, "speaker A3");
  EXPECT_EQ(plugin->speakers[15].x, 0.5);  // row 15 repeats row 13
  EXPECT_EQ(plugin->speakers[15].y, 0.25);
  EXPECT_EQ(plugin->speakers[16].x, 0.0);
  EXPECT_EQ(plugin->speakers[16].influence, 1.0);
}

TEST(CustomSpeakerCount, AnLfeSpeakerStaysLfeUnderItsNewName) {
  RecordingHost host;
  auto plugin = makeInstance(6);
  setSpeakerCount(*plugin, 6);
  EXPECT_STREQ(plugin->speakers[3].name, "speaker D");
  EXPECT_EQ(plugin->speakers[3].isLfe, 1);
  EXPECT_EQ(plugin->speakers[3].x, 0.0);
}

TEST(CustomSpeakerCount, RingModeNeedsShiftAndAtLeast32) {
  RecordingHost host;
  auto plugin = makeInstance(2);
  {
    ShiftKey shift(true);
    setSpeakerCount(*plugin, 31);
    EXPECT_EQ(plugin->speakers[2].x, -0.5);  // the custom table, not the ring
    EXPECT_EQ(plugin->speakers[2].y, -0.5);
    setSpeakerCount(*plugin, 32);
  }
  for (int i = 0; i < 32; ++i) {
    const Speaker& s = plugin->speakers[i];
    EXPECT_NEAR(std::sqrt(s.x * s.x + s.y * s.y + s.z * s.z), 0.5, 1e-15);
    EXPECT_EQ(s.influence, 0.5);
  }
  EXPECT_EQ(plugin->speakers[0].x, 0.0);  // straight ahead
  EXPECT_EQ(plugin->speakers[0].y, 0.5);
}

TEST(InputCount, NewInputsGetDefaultPlacesAndKeptOnesStay) {
  RecordingHost host;
  auto plugin = makeInstance(4);
  const double places[4][2] = {{-0.25, 0.25}, {0.25, 0.25}, {0, 0.125}, {0, 0}};
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(std::string(plugin->inputs[i].name), "channel " + std::to_string(i + 1));
    EXPECT_EQ(plugin->inputs[i].x, places[i][0]);
    EXPECT_EQ(plugin->inputs[i].y, places[i][1]);
    EXPECT_EQ(plugin->inputs[i].gain, 1.0);
  }
  plugin->inputs[1].gain = 2.0;
  plugin->inputs[3].x = 0.7;
  copyChannelName(plugin->inputs[1].name, "vocals");
  setInputCount(*plugin, 2);
  setInputCount(*plugin, 4);
  EXPECT_STREQ(plugin->inputs[1].name, "vocals");
  EXPECT_EQ(plugin->inputs[1].gain, 2.0);
  EXPECT_EQ(plugin->inputs[3].x, 0.0);  // re-added: fresh defaults
  plugin->inputs[0].name[0] = '\0';
  setInputCount(*plugin, 4);
  EXPECT_STREQ(plugin->inputs[0].name, "channel 1");  // an empty name is filled in
}

TEST(InputCount, RingModeReinitialisesEveryInput) {
  RecordingHost host;
  auto plugin = makeInstance(2);
  plugin->inputs[0].gain = 3.0;
  ShiftKey shift(true);
  setInputCount(*plugin, 48);
  EXPECT_EQ(plugin->inputs[0].gain, 1.0);
  EXPECT_EQ(plugin->inputs[47].z, -0.5);  // the lower pole comes last
}

TEST(RingPositions, RingSizesForLargeCounts) {
  const struct {
    int n;
    std::vector<int> rings;  // equator, then each layer's ring size
  } cases[] = {{32, {8, 6, 5}}, {48, {12, 7, 6, 4}}, {64, {16, 10, 8, 5}}};
  for (const auto& c : cases) {
    Position3 points[64];
    computeRingPositions(c.n, points);
    int at = 0;
    for (std::size_t r = 0; r < c.rings.size(); ++r) {
      const int copies = r == 0 ? 1 : 2;
      const double z = points[at].z;
      for (int k = 0; k < c.rings[r] * copies; ++k, ++at) {
        EXPECT_NEAR(std::fabs(points[at].z), std::fabs(z), 1e-15) << c.n << " ring " << r;
        if (k == c.rings[r]) {
          EXPECT_EQ(points[at].z, -z);  // the lower ring mirrors the upper
        }
      }
    }
    EXPECT_EQ(at, c.n - 2);
    EXPECT_EQ(points[c.n - 2].z, 0.5);
    EXPECT_EQ(points[c.n - 1].z, -0.5);
  }
}

TEST(RingPositions, AlwaysExactlyNPointsOnTheSphere) {
  for (int n = 1; n <= 64; ++n) {
    Position3 points[65];
    points[n] = {9, 9, 9};  // sentinel: nothing past n is written
    computeRingPositions(n, points);
    EXPECT_EQ(points[n].x, 9) << n;
    for (int i = 0; i < n; ++i) {
      const double r = std::sqrt(points[i].x * points[i].x + points[i].y * points[i].y +
                                 points[i].z * points[i].z);
      EXPECT_NEAR(r, 0.5, 1e-15) << n << ":" << i;
    }
  }
}

TEST(RingPositions, AFewPointsExactly) {
  const double d3 = M_PI / 6;  // two layers below 48 points
  const double d4 = M_PI / 8;  // three from 48 on
  const struct {
    int n, index;
    double azimuth, elevation;
  } cases[] = {
      {32, 0, 0, 0},                    // straight ahead
      {32, 2, M_PI / 2, 0},             // a quarter round: to the right
      {32, 8, 0, d3},                   // first upper ring
      {32, 15, 2 * M_PI / 6 * 1, -d3},  // second point of its lower ring
      {32, 20, 0, 2 * d3},              // second layer
      {48, 12, 0, d4},
      {48, 19, 0, -d4},                     // lower ring right after the upper
      {48, 34, 2 * M_PI / 6 * 2, -2 * d4},  // third point of the lower ring of layer 2
      {48, 40, 2 * M_PI / 4 * 2, 3 * d4},   // third point of the top ring
      {64, 17, 2 * M_PI / 10, d4},
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

TEST(CustomSpeakerCount, CountsPastTheLimitStopAt64) {
  RecordingHost host;
  auto plugin = makeInstance(2);
  setSpeakerCount(*plugin, 100);
  EXPECT_EQ(plugin->speakerCount(), 64);
  EXPECT_EQ(plugin->userSpeakerCount, 64);
  EXPECT_STREQ(plugin->speakers[63].name, "speaker L3");
  EXPECT_EQ(plugin->effect.numParams, 4 + 20 + 7 * 64);
}
