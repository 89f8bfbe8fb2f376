// The flat parameter list: names, values, display texts, marks, and reports to the host.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <thread>

#include "model/parameters.h"
#include "model_fixture.h"

namespace {

std::string nameOf(PannerPlugin& plugin, int index, std::size_t length = 256) {
  char buffer[256];
  getParameterName(plugin, index, buffer, length);
  return buffer;
}

std::string displayOf(PannerPlugin& plugin, int index) {
  char buffer[256];
  getParameterDisplay(plugin, index, buffer, sizeof buffer, false, 0.0f);
  return buffer;
}

std::string displayFor(PannerPlugin& plugin, int index, float value) {
  char buffer[256];
  getParameterDisplay(plugin, index, buffer, sizeof buffer, true, value);
  return buffer;
}

class Parameters : public ::testing::Test {
 protected:
  RecordingHost host;
  std::unique_ptr<PannerPlugin> plugin = makeInstance(2);  // 2 inputs, stereo
  void clearMarks() {
    plugin->dirtyInputs = 0;
    plugin->changeFlags = 0;
  }
};

}  // namespace

TEST_F(Parameters, NamesFollowTheIndexLayout) {
  applyLayoutPreset(*plugin, 5);
  EXPECT_EQ(plugin->effect.numParams, 66);
  const struct {
    int index;
    const char* name;
  } cases[] = {{0, "scale X"},
               {1, "scale Y"},
               {2, "scale Z"},
               {3, "ctr trim"},
               {4, "in 1 gain"},
               {5, "in 1 X"},
               {8, "in 1 LFE send"},
               {9, "in 1 diffuse"},
               {10, "in 1 bias"},
               {11, "in 1 angle"},
               {12, "in 1 mute"},
               {13, "in 1 solo"},
               {14, "in 2 gain"},
               {24, "front left gain"},
               {28, "front left influence"},
               {45, "LFE gain"},
               {65, "back right solo"},
               {-1, "resvd"},
               {66, ""},
               {1000, ""}};
  for (const auto& c : cases) EXPECT_EQ(nameOf(*plugin, c.index), c.name) << c.index;
  setInputCount(*plugin, 3);
  EXPECT_EQ(nameOf(*plugin, 34), "front left gain");
}

TEST_F(Parameters, LongSpeakerNamesAreCutSoTheWordFits) {
  copyChannelName(plugin->speakers[0].name, "a very long speaker name indeed");
  const int gain = 24;
  EXPECT_EQ(nameOf(*plugin, gain, 16), "a very l gain");  // precision 16 - 8
  EXPECT_EQ(nameOf(*plugin, gain, 10), "a very l ");      // short buffers: 8, then cut by size
  EXPECT_EQ(nameOf(*plugin, gain + 4, 24), "a very long spea influe");
}

TEST_F(Parameters, ValuesMapEachFieldBothWays) {
  const struct {
    int index;
    float value;
    double PannerPlugin::*global;
    double model;
  } globals[] = {{0, 0.25f, &PannerPlugin::spaceScaleX, 0.5},
                 {2, 1.0f, &PannerPlugin::spaceScaleZ, 2.0},
                 {3, 0.5f, &PannerPlugin::centerTrim, 2.0}};
  for (const auto& g : globals) {
    setParameterValue(*plugin, g.index, g.value);
    EXPECT_EQ((*plugin).*g.global, g.model);
    EXPECT_EQ(getParameterValue(*plugin, g.index), g.value);
  }
  setParameterValue(*plugin, 5, 0.75f);  // input 1 X
  EXPECT_EQ(plugin->inputs[0].x, 0.5);
  setParameterValue(*plugin, 10, 0.0f);  // bias
  EXPECT_EQ(plugin->inputs[0].diffuseBias, -1.0);
  setParameterValue(*plugin, 11, 0.3f);  // angle passes through
  EXPECT_EQ(plugin->inputs[0].diffuseAngle, static_cast<double>(0.3f));
  plugin->inputs[0].diffuseAngle = -0.5;  // after a group rotation
  EXPECT_EQ(getParameterValue(*plugin, 11), -0.5f);
  setParameterValue(*plugin, 24 + 4, 0.25f);  // speaker influence
  EXPECT_EQ(plugin->speakers[0].influence, 0.5);
  EXPECT_EQ(getParameterValue(*plugin, 66), 0.0f);  // past the list
  EXPECT_EQ(getParameterValue(*plugin, -1), 0.0f);
}

TEST_F(Parameters, RoomScaleHasAFloor) {
  setParameterValue(*plugin, 0, 0.0f);
  EXPECT_EQ(plugin->spaceScaleX, 2e-6);
  EXPECT_EQ(getParameterValue(*plugin, 0), 1e-6f);
}

TEST_F(Parameters, MuteAndSoloSwitchAtOneHalf) {
  setParameterValue(*plugin, 12, 0.5f);
  EXPECT_EQ(plugin->inputs[0].mute, 1);
  setParameterValue(*plugin, 24 + 5, 0.49f);
  EXPECT_EQ(plugin->speakers[0].mute, 0);
  setParameterValue(*plugin, 24 + 6, 0.5f);
  EXPECT_EQ(plugin->speakers[0].solo, 1);
}

TEST_F(Parameters, HostileValuesAreIgnoredOrClamped) {
  setParameterValue(*plugin, 4, std::numeric_limits<float>::quiet_NaN());
  setParameterValue(*plugin, 4, std::numeric_limits<float>::infinity());
  EXPECT_EQ(plugin->inputs[0].gain, 1.0);
  setParameterValue(*plugin, 4, 7.0f);
  EXPECT_EQ(plugin->inputs[0].gain, 4.0);
  setParameterValue(*plugin, 5, -3.0f);
  EXPECT_EQ(plugin->inputs[0].x, -1.0);
  setParameterValue(*plugin, 66, 0.5f);  // past the list: nothing, no crash
  setParameterValue(*plugin, -7, 0.5f);
}

TEST_F(Parameters, IgnoredWhileAChannelChangeIsPending) {
  plugin->pendingArrangement = 0x0202;
  setParameterValue(*plugin, 4, 0.5f);
  EXPECT_EQ(plugin->inputs[0].gain, 1.0);
}

TEST_F(Parameters, EachKindMarksItsRowsAndFlags) {
  const struct {
    int index;
    float value;
    std::uint64_t dirty;
    std::uint32_t flags;
  } cases[] = {
      {0, 0.3f, 0x3, 4 | 8}, {3, 0.3f, 0x3, 4},    {14, 0.3f, 0x2, 4},  {18, 0.3f, 0x2, 4},
      {15, 0.3f, 0x2, 16},   {19, 0.3f, 0x2, 16},  {21, 0.3f, 0x2, 16}, {12, 1.0f, 0, 4 | 16},
      {13, 1.0f, 0, 4 | 16}, {24, 0.3f, 0x3, 4},   {25, 0.3f, 0x3, 8},  {28, 0.3f, 0x3, 4 | 8},
      {29, 1.0f, 0, 4 | 8},  {30, 1.0f, 0, 4 | 8},
  };
  host.clear();
  for (const auto& c : cases) {
    clearMarks();
    setParameterValue(*plugin, c.index, c.value);
    EXPECT_EQ(plugin->dirtyInputs, c.dirty) << c.index;
    EXPECT_EQ(plugin->changeFlags.load(), c.flags) << c.index;
    clearMarks();
    setParameterValue(*plugin, c.index, c.value);  // the same value again marks nothing
    EXPECT_EQ(plugin->dirtyInputs, 0u) << c.index;
    EXPECT_EQ(plugin->changeFlags.load(), 0u) << c.index;
  }
  EXPECT_TRUE(host.calls().empty());  // a host's own change is never echoed back
}

TEST_F(Parameters, DisplayTexts) {
  EXPECT_EQ(displayFor(*plugin, 4, 0.25f), "0.0");
  EXPECT_EQ(displayFor(*plugin, 4, 1.0f), "12.0");
  EXPECT_EQ(displayFor(*plugin, 4, 0.0f), "-inf");
  EXPECT_EQ(displayFor(*plugin, 8, 0.125f), "-6.0");    // LFE send 0.5
  EXPECT_EQ(displayFor(*plugin, 3, 1e-9f), "-inf");     // below 2^-25
  EXPECT_EQ(displayFor(*plugin, 24, 0.025f), "-20.0");  // speaker gain 0.1
  EXPECT_EQ(displayOf(*plugin, 5), "0.375000");         // input 1 at x = -0.25
  EXPECT_EQ(displayOf(*plugin, 7), "0.500000");         // centred height
  EXPECT_EQ(displayOf(*plugin, 28), "0.500000");        // influence 1
  EXPECT_EQ(displayOf(*plugin, 0), "0.500000");
  EXPECT_EQ(displayOf(*plugin, 999), "");
  EXPECT_EQ(displayFor(*plugin, 999, 0.5f), "");
}

TEST_F(Parameters, DisplayOfAHostValueIsWhatSettingItWouldStore) {
  EXPECT_EQ(displayFor(*plugin, 4, 2.0f), "12.0");  // clamped to 1 like setParameterValue
  EXPECT_EQ(displayFor(*plugin, 5, -1.0f), "0.000000");
  plugin->inputs[0].gain = 0.5;
  EXPECT_EQ(displayFor(*plugin, 4, std::numeric_limits<float>::quiet_NaN()), "-6.0");  // current
}

TEST_F(Parameters, DisplayOfARotatedAngleKeepsItsSign) {
  plugin->inputs[0].diffuseAngle = -0.5;  // a group rotation may leave it below 0
  EXPECT_EQ(displayOf(*plugin, 11), "-0.500000");
}

TEST_F(Parameters, MuteSoloReportsAutomateThenEndEdit) {
  plugin->inputs[1].solo = 1;
  host.clear();
  notifyMuteSolo(*plugin, 1, true, false);
  notifyMuteSolo(*plugin, 1, false, true);
  notifyMuteSolo(*plugin, 2, true, true);  // no such input
  notifyMuteSolo(*plugin, -1, false, true);
  const auto calls = host.calls();
  ASSERT_EQ(calls.size(), 4u);
  EXPECT_EQ(calls[0].opcode, audioMasterAutomate);
  EXPECT_EQ(calls[0].index, 4 + 10 + 9);
  EXPECT_EQ(calls[0].opt, 1.0f);
  EXPECT_EQ(calls[1].opcode, audioMasterEndEdit);
  EXPECT_EQ(calls[1].index, 23);
  EXPECT_EQ(calls[2].index, 4 + 20 + 7 + 5);
  EXPECT_EQ(calls[2].opt, 0.0f);
}

TEST_F(Parameters, GroupEditReportsTheSelectedInputsByMode) {
  setInputCount(*plugin, 3);
  plugin->inputs[0].selected = plugin->inputs[2].selected = 1;
  plugin->inputs[2].x = 0.5;
  plugin->inputs[2].z = -1.0;
  plugin->inputs[2].diffuseBias = 0.5;
  host.clear();
  notifyGroupEdit(*plugin, 0, false);
  auto calls = host.calls();
  ASSERT_EQ(calls.size(), 4u);  // x, y of inputs 0 and 2
  EXPECT_EQ(calls[2].index, 4 + 20 + 1);
  EXPECT_EQ(calls[2].opt, 0.75f);
  host.clear();
  notifyGroupEdit(*plugin, 2, true);  // Low/High adds z; each value is ended
  calls = host.calls();
  ASSERT_EQ(calls.size(), 12u);
  EXPECT_EQ(calls[10].index, 4 + 20 + 3);
  EXPECT_EQ(calls[10].opt, 0.0f);
  EXPECT_EQ(calls[11].opcode, audioMasterEndEdit);
  host.clear();
  notifyGroupEdit(*plugin, 8, false);  // bias only
  calls = host.calls();
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(calls[1].index, 4 + 20 + 6);
  EXPECT_EQ(calls[1].opt, 0.75f);
  host.clear();
  notifyGroupEdit(*plugin, 12, false);  // towards a speaker: x, y, z
  EXPECT_EQ(host.calls().size(), 6u);
}

TEST_F(Parameters, SlotsRecoverTheInstanceAndTolerateNone) {
  setParameterSlot(&plugin->effect, 4, 0.5f);
  EXPECT_EQ(plugin->inputs[0].gain, 2.0);
  EXPECT_EQ(getParameterSlot(&plugin->effect, 4), 0.5f);
  AEffect orphan{};
  setParameterSlot(&orphan, 4, 0.5f);
  EXPECT_EQ(getParameterSlot(&orphan, 4), 0.0f);
  EXPECT_EQ(getParameterSlot(nullptr, 4), 0.0f);
}

TEST(ParameterThreads, HostAccessDuringCountChangesStaysInsideTheArrays) {
  RecordingHost host;
  auto plugin = makeInstance(2);
  std::atomic<bool> done{false};
  std::thread counts([&] {
    for (int round = 0; round < 100; ++round) {
      setInputCount(*plugin, round % 2 == 0 ? 64 : 1);
      setSpeakerCount(*plugin, round % 2 == 0 ? 1 : 64);
    }
    done = true;
  });
  char text[256];
  int passes = 0;
  do {  // indexes up to the longest list the counts ever give
    for (int index = 0; index < parameterCountFor(64, 64); index += 13) {
      setParameterValue(*plugin, index, 0.75f);
      EXPECT_LE(getParameterValue(*plugin, index), 1.0f);
      getParameterName(*plugin, index, text, sizeof text);
      getParameterDisplay(*plugin, index, text, sizeof text, false, 0.0f);
    }
    ++passes;
  } while (!done || passes < 3);
  counts.join();
  EXPECT_EQ(plugin->inputCount(), 1);
  EXPECT_EQ(plugin->speakerCount(), 64);
  EXPECT_EQ(plugin->effect.numParams, parameterCountFor(1, 64));
  EXPECT_EQ(nameOf(*plugin, parameterCountFor(1, 64) - 1), "speaker L3 solo");
}
