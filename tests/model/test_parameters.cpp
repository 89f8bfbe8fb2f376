// The flat parameter list: names, values, display texts, marks, and reports to the host.
#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <limits>
#include <string>

#include "model/parameters.h"
#include "model_fixture.h"

namespace {

std::string nameOf(PannerPlugin& plugin, int index, std::size_t length = 256) {
  char buffer[256];
  getParameterName(plugin, index, buffer, length);
  return buffer;
}

class Parameters : public ::testing::Test {
 protected:
  RecordingHost host;
  std::unique_ptr<PannerPlugin> plugin = makeInstance(2);  // 2 inputs, stereo
  void clearMarks() {
    plugin->model.dirtyInputs = 0;
    plugin->model.changeFlags = 0;
  }
};

}  // namespace

TEST_F(Parameters, NamesFollowTheIndexLayout) {
  applyLayoutPreset(*plugin, 5);
  EXPECT_EQ(plugin->host.effect.numParams, 66);
  const struct {
    int index;
    const char* name;
  } cases[] = {{0, "scale X"},    {3, "ctr trim"},
               {4, "in 1 gain"},  {8, "in 1 LFE send"},
               {14, "in 2 gain"}, {24, "front left gain"},
               {45, "LFE gain"},  {65, "back right solo"},
               {-1, "resvd"},     {66, ""}};
  for (const auto& c : cases) EXPECT_EQ(nameOf(*plugin, c.index), c.name) << c.index;
  setInputCount(*plugin, 3);
  EXPECT_EQ(nameOf(*plugin, 34), "front left gain");
}

TEST_F(Parameters, LongSpeakerNamesAreCutSoTheWordFits) {
  copyChannelName(plugin->model.speakers[0].name, "a very long speaker name indeed");
  const int gain = 24;
  EXPECT_EQ(nameOf(*plugin, gain, 16), "a very l gain");  // precision 16 - 8
  EXPECT_EQ(nameOf(*plugin, gain, 10), "a very l ");      // short buffers: 8, then cut by size
  EXPECT_EQ(nameOf(*plugin, gain + 4, 24), "a very long spea influe");
}

// Each group's fields reached by index, clamped into their ranges; the mappings' arithmetic is
// checked where they are defined.
TEST(ParameterValues, MapEachFieldBothWaysWithinItsRange) {
  using Field = double (*)(const PannerPlugin&);
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float inf = std::numeric_limits<float>::infinity();
  const struct {
    int index;
    float value;
    Field field;
    double model;
    float readBack;
  } cases[] = {
      {0, 0.0f, [](const PannerPlugin& p) { return p.model.spaceScaleX; }, 2e-6, 1e-6f},  // a floor
      {3, 0.5f, [](const PannerPlugin& p) { return p.model.centerTrim; }, 2.0, 0.5f},
      {4, 7.0f, [](const PannerPlugin& p) { return p.model.inputs[0].gain; }, 4.0, 1.0f},
      {4, nan, [](const PannerPlugin& p) { return p.model.inputs[0].gain; }, 1.0, 0.25f},
      {4, inf, [](const PannerPlugin& p) { return p.model.inputs[0].gain; }, 1.0, 0.25f},
      {5, -3.0f, [](const PannerPlugin& p) { return p.model.inputs[0].x; }, -1.0, 0.0f},
      {8, 0.125f, [](const PannerPlugin& p) { return p.model.inputs[0].lfeSend; }, 0.5, 0.125f},
      {9, 0.5f, [](const PannerPlugin& p) { return p.model.inputs[0].diffuse; }, 0.5, 0.5f},
      {12, 0.5f, [](const PannerPlugin& p) { return double(p.model.inputs[0].mute); }, 1, 1.0f},
      {28, 0.25f, [](const PannerPlugin& p) { return p.model.speakers[0].influence; }, 0.5, 0.25f},
      {30, 0.5f, [](const PannerPlugin& p) { return double(p.model.speakers[0].solo); }, 1, 1.0f},
  };
  RecordingHost host;
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.index << " <- " << c.value);
    auto plugin = makeInstance(2);
    setParameterValue(*plugin, c.index, c.value);
    EXPECT_EQ(c.field(*plugin), c.model);
    EXPECT_EQ(getParameterValue(*plugin, c.index), c.readBack);
  }
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
    EXPECT_EQ(plugin->model.dirtyInputs, c.dirty) << c.index;
    EXPECT_EQ(plugin->model.changeFlags.load(), c.flags) << c.index;
    clearMarks();
    setParameterValue(*plugin, c.index, c.value);  // the same value again marks nothing
    EXPECT_EQ(plugin->model.dirtyInputs, 0u) << c.index;
    EXPECT_EQ(plugin->model.changeFlags.load(), 0u) << c.index;
  }
  EXPECT_TRUE(host.calls().empty());  // a host's own change is never echoed back
}

TEST_F(Parameters, DisplayTextsOfCurrentAndGivenValues) {
  plugin->model.inputs[0].gain = 0.5;
  plugin->model.inputs[0].diffuseAngle = -0.5;  // a group rotation may leave it below 0
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const struct {
    int index;
    bool given;  // a host's value, else the current one
    float value;
    const char* text;
  } cases[] = {
      {4, true, 0.25f, "0.0"},      {4, true, 1.0f, "12.0"},     {4, true, 0.0f, "-inf"},
      {4, true, 2.0f, "12.0"},                                  // clamped as setting it would
      {4, true, nan, "-6.0"},                                   // not a value: the current one
      {8, true, 0.125f, "-6.0"},                                // LFE send 0.5
      {3, true, 1e-9f, "-inf"},                                 // below 2^-25
      {24, true, 0.025f, "-20.0"},                              // speaker gain 0.1
      {5, true, -1.0f, "0.000000"}, {5, false, 0, "0.375000"},  // input 1 at x = -0.25
      {7, false, 0, "0.500000"},    {11, false, 0, "-0.500000"}, {28, false, 0, "0.500000"},
      {999, false, 0, ""},          {999, true, 0.5f, ""},
  };
  for (const auto& c : cases) {
    char text[256];
    getParameterDisplay(*plugin, c.index, text, sizeof text, c.given, c.value);
    EXPECT_STREQ(text, c.text) << c.index << " " << c.value;
  }
  EXPECT_EQ(getParameterValue(*plugin, 11), -0.5f);  // read back as it stands
}

TEST_F(Parameters, EditorReportsAreAutomationThenEndEditOfTheTouchedValues) {
  setInputCount(*plugin, 3);
  plugin->model.inputs[0].selected = plugin->model.inputs[2].selected = 1;
  plugin->model.inputs[2].x = 0.5;
  plugin->model.inputs[2].z = -1.0;
  const int in3 = 4 + 20;
  const struct {
    std::function<void()> edit;
    std::size_t count, at;  // the calls made, and the one looked at
    std::int32_t opcode, index;
    float value;
  } cases[] = {
      // The editor's tests check the mute and solo buttons' and the knob's reports; here the
      // input outside the list and the modes that move z (Low/High, towards a speaker) or not.
      {[&] { notifyMuteSolo(*plugin, 3, true, true); }, 0, 0, 0, 0, 0},
      {[&] { notifyMuteSolo(*plugin, -1, false, true); }, 0, 0, 0, 0, 0},
      {[&] { notifyGroupEdit(*plugin, 0, false); }, 4, 2, audioMasterAutomate, in3 + 1, 0.75f},
      {[&] { notifyGroupEdit(*plugin, 2, true); }, 12, 11, audioMasterEndEdit, in3 + 3, 0},
      {[&] { notifyGroupEdit(*plugin, 12, false); }, 6, 5, audioMasterAutomate, in3 + 3, 0},
  };
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    SCOPED_TRACE(i);
    host.clear();
    cases[i].edit();
    const auto calls = host.calls();
    ASSERT_EQ(calls.size(), cases[i].count);
    if (calls.empty()) continue;
    EXPECT_EQ(calls[cases[i].at].opcode, cases[i].opcode);
    EXPECT_EQ(calls[cases[i].at].index, cases[i].index);
    if (cases[i].opcode == audioMasterAutomate) {
      EXPECT_EQ(calls[cases[i].at].opt, cases[i].value);
    }
  }
}
