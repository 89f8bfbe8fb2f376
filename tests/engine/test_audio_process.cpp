// The audio routine: ramps, re-sizing, mute and solo, meters, buffer rules, real-time behaviour.
#include <gtest/gtest.h>
#include <xmmintrin.h>

#include <atomic>
#include <cmath>
#include <limits>

#include "engine_fixture.h"
#include "model/parameters.h"

namespace {

class AudioProcess : public ::testing::Test {
 protected:
  RecordingHost host;
  std::unique_ptr<PannerPlugin> plugin = makeEngineInstance(1);  // one input, stereo speakers
  ~AudioProcess() override { destroyEngine(*plugin); }

  // The one input sits on the left speaker: its gain reaches the left output unchanged.
  void inputOnLeftSpeaker(double gain) {
    plugin->inputs[0].x = -1;
    plugin->inputs[0].y = 0;
    plugin->inputs[0].gain = gain;
    markInputsDirty(*plugin, 0);
  }
  // Expected output s from the gains the routine settled on, for the given audible inputs.
  double settled(const Channels& in, int s, int n, std::initializer_list<int> audible) {
    double sum = 0.0;
    for (int i : audible) {
      sum += in[static_cast<std::size_t>(i)][static_cast<std::size_t>(n)] *
             plugin->appliedGains[i * plugin->gainCols + s];
    }
    return sum;
  }
};

Channels constant(std::initializer_list<double> levels, int frames) {
  Channels c;
  for (double level : levels) c.emplace_back(static_cast<std::size_t>(frames), level);
  return c;
}

}  // namespace

TEST_F(AudioProcess, AGainChangeGlidesAcrossExactlyOneBlock) {
  inputOnLeftSpeaker(0.0);
  auto out = processBlock(*plugin, constant({1.0}, 4), 2, 4);
  EXPECT_EQ(out[0], std::vector<double>(4, 0.0));
  setParameterValue(*plugin, 4, 0.25f);  // input gain 1
  out = processBlock(*plugin, constant({1.0}, 4), 2, 4);
  EXPECT_EQ(out[0], (std::vector<double>{0.25, 0.5, 0.75, 1.0}));
  out = processBlock(*plugin, constant({1.0}, 4), 2, 4);
  EXPECT_EQ(out[0], std::vector<double>(4, 1.0));
  EXPECT_EQ(out[1], std::vector<double>(4, 0.0));
}

TEST_F(AudioProcess, ACountChangeAppliesTheNewGainsAtOnce) {
  inputOnLeftSpeaker(1.0);
  plugin->inputs[0].x = -0.5;
  plugin->inputs[0].y = 0.5;
  processBlock(*plugin, constant({1.0}, 8), 2, 8);
  applyLayoutPreset(*plugin, 5);  // 5.1: the input now sits nearest the front left
  plugin->effect.numOutputs = 6;
  const auto out = processBlock(*plugin, constant({1.0}, 8), 6, 8);
  ASSERT_EQ(plugin->gainCols, 6);
  for (int s = 0; s < 6; ++s) {
    EXPECT_EQ(out[static_cast<std::size_t>(s)][0], plugin->targetGains[s]) << s;  // no fade in
  }
  EXPECT_GT(out[0][0], 0.0);
}

TEST_F(AudioProcess, SoloBeatsMuteAndSilencesTheRest) {
  setInputCount(*plugin, 3);
  plugin->effect.numInputs = 3;
  const Channels in = constant({1.0, 10.0, 100.0}, 16);
  plugin->inputs[0].solo = 1;
  plugin->inputs[0].mute = 1;
  auto out = processBlock(*plugin, in, 2, 16);
  for (int s = 0; s < 2; ++s)
    EXPECT_EQ(out[static_cast<std::size_t>(s)][5], settled(in, s, 5, {0}));
  plugin->inputs[0].solo = 0;  // no solo left: the muted input drops out, the others sound
  out = processBlock(*plugin, in, 2, 16);
  for (int s = 0; s < 2; ++s)
    EXPECT_DOUBLE_EQ(out[static_cast<std::size_t>(s)][5], settled(in, s, 5, {1, 2}));
  plugin->speakers[1].mute = 1;
  out = processBlock(*plugin, in, 2, 16, 99.0);
  EXPECT_EQ(out[1], std::vector<double>(16, 0.0));
  plugin->speakers[1].mute = 0;
  plugin->inputs[0].mute = 0;
  plugin->speakers[0].solo = 1;
  out = processBlock(*plugin, in, 2, 16, 99.0);
  EXPECT_EQ(out[1], std::vector<double>(16, 0.0));
  EXPECT_GT(out[0][0], 0.0);
}

TEST_F(AudioProcess, MetersShowInputAfterItsGainAndOutputsAfterTheMix) {
  inputOnLeftSpeaker(2.0);
  Channels in = constant({0.25}, 32);
  in[0][7] = -0.5;
  plugin->inputPeaks[5] = 0.7;  // a slot past the inputs is cleared
  processBlock(*plugin, in, 2, 32);
  EXPECT_EQ(plugin->inputPeaks[0].load(), 1.0);
  EXPECT_EQ(plugin->inputPeaks[5].load(), 0.0);
  EXPECT_EQ(plugin->speakerPeaks[0].load(), 1.0);
  EXPECT_EQ(plugin->speakerPeaks[1].load(), 0.0);
  processBlock(*plugin, constant({0.1}, 32), 2, 32);  // meters hold their peak
  EXPECT_EQ(plugin->inputPeaks[0].load(), 1.0);
  plugin->inputs[0].mute = 1;
  processBlock(*plugin, in, 2, 32);
  EXPECT_EQ(plugin->inputPeaks[0].load(), 0.0);    // not audible
  EXPECT_EQ(plugin->speakerPeaks[0].load(), 1.0);  // audible, silent this block: the peak holds
  plugin->speakers[0].mute = 1;
  processBlock(*plugin, in, 2, 32);
  EXPECT_EQ(plugin->speakerPeaks[0].load(), 0.0);
}

TEST_F(AudioProcess, AZeroFrameBlockWritesNothingAndSettlesPendingGains) {
  inputOnLeftSpeaker(1.0);
  processBlock(*plugin, constant({1.0}, 8), 2, 8);
  plugin->inputPeaks[0] = 0.3;
  plugin->inputPeaks[3] = 0.3;
  setParameterValue(*plugin, 4, 0.125f);  // gain 0.5
  processBlock(*plugin, constant({}, 0), 2, 0);
  EXPECT_EQ(plugin->appliedGains[0], 0.5);
  EXPECT_EQ(plugin->inputPeaks[0].load(), 0.3);  // audible slot: left as it was
  EXPECT_EQ(plugin->inputPeaks[3].load(), 0.0);  // no input there
  const auto out = processBlock(*plugin, constant({1.0}, 4), 2, 4);
  EXPECT_EQ(out[0], std::vector<double>(4, 0.5));  // no ramp left over
}

TEST_F(AudioProcess, OnlyTheHostsBuffersUpToTheSpeakerCountAreWritten) {
  inputOnLeftSpeaker(1.0);
  plugin->effect.numOutputs = 1;  // the host has not followed the count yet
  auto out = processBlock(*plugin, constant({1.0}, 8), 3, 8, 99.0);
  EXPECT_EQ(out[0], std::vector<double>(8, 1.0));
  EXPECT_EQ(out[1], std::vector<double>(8, 99.0));
  EXPECT_EQ(plugin->effect.numOutputs, 2);
  out = processBlock(*plugin, constant({1.0}, 8), 3, 8, 99.0);
  EXPECT_EQ(out[1], std::vector<double>(8, 0.0));
  EXPECT_EQ(out[2], std::vector<double>(8, 99.0));  // past the speakers: untouched
}

TEST_F(AudioProcess, AMutedInputFullOfInfinitiesCannotReachTheOutputs) {
  setInputCount(*plugin, 2);
  plugin->effect.numInputs = 2;
  Channels in = constant({std::numeric_limits<double>::infinity(), 0.5}, 64);
  in[0][3] = std::numeric_limits<double>::quiet_NaN();
  plugin->inputs[0].mute = 1;
  for (int block = 0; block < 2; ++block) {
    const auto out = processBlock(*plugin, in, 2, 64);
    for (const auto& channel : out) {
      for (double x : channel) ASSERT_TRUE(std::isfinite(x));
    }
  }
}

TEST_F(AudioProcess, EveryPathGivesTheSameBlock) {
  setInputCount(*plugin, 5);
  applyLayoutPreset(*plugin, 7);
  plugin->effect.numInputs = 5;
  plugin->effect.numOutputs = 10;
  Channels in(5, std::vector<double>(203));
  for (std::size_t i = 0; i < in.size(); ++i) {
    for (std::size_t n = 0; n < in[i].size(); ++n)
      in[i][n] = std::sin(0.01 * static_cast<double>((i + 1) * n));
  }
  Channels reference;
  for (MixPath path : supportedPaths()) {
    auto instance = makeEngineInstance(5);
    applyLayoutPreset(*instance, 7);
    instance->effect.numOutputs = 10;
    ASSERT_TRUE(forceMixPath(*instance, path));
    processBlock(*instance, in, 10, 203);
    instance->inputs[2].x = 0.3;  // the second block ramps
    markInputsDirty(*instance, 2);
    const auto out = processBlock(*instance, in, 10, 203);
    if (reference.empty()) reference = out;
    for (std::size_t s = 0; s < out.size(); ++s) {
      for (std::size_t n = 0; n < out[s].size(); ++n) {
        ASSERT_NEAR(out[s][n], reference[s][n], 1e-13) << pathName(path) << " " << s << ":" << n;
      }
    }
    destroyEngine(*instance);
  }
}

TEST_F(AudioProcess, DenormalsAreFlushedInsideAndTheCallersStateRestored) {
  inputOnLeftSpeaker(1.0);
  const unsigned callerState = _mm_getcsr();
  const auto out = processBlock(*plugin, constant({1e-310}, 8), 2, 8);
  EXPECT_EQ(out[0][0], 0.0);
  EXPECT_EQ(_mm_getcsr(), callerState);
}

TEST_F(AudioProcess, TheSinglePrecisionSlotsLeaveBuffersAlone) {
  std::vector<float> in(8, 1.0f);
  std::vector<float> out(8, 42.0f);
  float* ins[] = {in.data()};
  float* outs[] = {out.data(), out.data()};
  processReplacing(&plugin->effect, ins, outs, 8);
  processAccumulating(&plugin->effect, ins, outs, 8);
  EXPECT_EQ(out, std::vector<float>(8, 42.0f));
}

TEST_F(AudioProcess, NoInstanceNoWork) {
  AEffect orphan{};
  processDoubleReplacing(&orphan, nullptr, nullptr, 64);
  processDoubleReplacing(nullptr, nullptr, nullptr, 64);
}
