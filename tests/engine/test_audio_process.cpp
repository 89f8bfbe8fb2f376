// The audio routine: ramps, re-sizing, mute and solo, meters, buffer rules, real-time behaviour.
#include <gtest/gtest.h>
#include <xmmintrin.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <random>

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
  plugin->speakers[1].mute = 1;
  for (int j = 0; j < kMeterSlots; ++j) plugin->inputPeaks[j] = plugin->speakerPeaks[j] = 0.3;
  setParameterValue(*plugin, 4, 0.125f);                         // gain 0.5
  processDoubleReplacing(&plugin->effect, nullptr, nullptr, 0);  // hosts may pass no buffers
  EXPECT_EQ(plugin->appliedGains[0], 0.5);
  EXPECT_EQ(plugin->inputPeaks[0].load(), 0.3);    // audible: left as it was
  EXPECT_EQ(plugin->speakerPeaks[0].load(), 0.3);  // audible: left as it was
  EXPECT_EQ(plugin->speakerPeaks[1].load(), 0.0);  // muted
  for (int j = 2; j < kMeterSlots; ++j) {
    EXPECT_EQ(plugin->inputPeaks[j - 1].load(), 0.0) << j - 1;  // no input there
    EXPECT_EQ(plugin->speakerPeaks[j].load(), 0.0) << j;        // no speaker there
  }
  processDoubleReplacing(&plugin->effect, nullptr, nullptr, -5);  // as good as 0 frames
  EXPECT_EQ(plugin->speakerPeaks[0].load(), 0.3);
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

namespace {

struct BlockShape {
  int inputs, speakers, hostInputs, hostOutputs, frames;
};

// Step 10 of the block as written, pair by pair, from the gains before and after the block.
double perPairOutput(const Channels& in, const std::vector<double>& before,
                     const std::vector<double>& after, const std::vector<bool>& audible,
                     const BlockShape& c, int s, int n, double& scale) {
  double sum = 0.0;
  scale = 0.0;
  for (int i = 0; i < std::min(c.inputs, c.hostInputs); ++i) {
    if (!audible[static_cast<std::size_t>(i)]) continue;
    const std::size_t cell = static_cast<std::size_t>(i * c.speakers + s);
    const double step = (after[cell] - before[cell]) / c.frames;
    const double g = before[cell] + (n + 1.0) * step;
    const double x = in[static_cast<std::size_t>(i)][static_cast<std::size_t>(n)];
    sum += x * g;
    scale += std::fabs(x * g);
  }
  return sum;
}

}  // namespace

// Random rooms through the host's entry on every path: a ramping block with mute and solo, host
// counts below the model's, against the per-pair formula.
TEST(AudioProcessReference, RandomBlocksOnEveryPathMatchThePerPairFormula) {
  RecordingHost host;
  std::mt19937 random(77);
  std::uniform_real_distribution<double> unit(-1.0, 1.0);
  const BlockShape shapes[] = {{1, 1, 1, 1, 64},     {63, 64, 63, 64, 512}, {64, 64, 64, 64, 333},
                               {64, 63, 60, 50, 17}, {1, 64, 1, 64, 1},     {64, 1, 64, 1, 100},
                               {5, 7, 3, 7, 4}};
  for (MixPath path : supportedPaths()) {
    for (const BlockShape& c : shapes) {
      SCOPED_TRACE(testing::Message() << pathName(path) << " " << c.inputs << "x" << c.speakers
                                      << " host " << c.hostInputs << "x" << c.hostOutputs);
      auto plugin = makeEngineInstance(c.inputs);
      setSpeakerCount(*plugin, c.speakers);
      plugin->effect.numOutputs = c.speakers;
      ASSERT_TRUE(forceMixPath(*plugin, path));
      Channels in(static_cast<std::size_t>(c.inputs),
                  std::vector<double>(static_cast<std::size_t>(c.frames)));
      for (auto& channel : in) {
        for (double& x : channel) x = unit(random);
      }
      processBlock(*plugin, in, c.speakers, c.frames);  // settles on the first gains
      std::vector<bool> audible;
      for (InputChannel& input : plugin->inputs) {
        input.x = unit(random);
        input.diffuse = unit(random) > 0 ? 0.3 : 0.0;
        input.mute = unit(random) > 0.6;
        audible.push_back(!input.mute);
      }
      if (c.inputs > 2) plugin->speakers[1 % c.speakers].mute = 1;
      markInputsDirty(*plugin, kDirtyAllInputs);
      plugin->effect.numInputs = c.hostInputs;
      plugin->effect.numOutputs = c.hostOutputs;
      const std::vector<double> before(plugin->appliedGains.begin(), plugin->appliedGains.end());
      const auto out = processBlock(*plugin, in, c.hostOutputs + 1, c.frames, 99.0);
      const std::vector<double> after(plugin->appliedGains.begin(), plugin->appliedGains.end());
      for (int s = 0; s < std::min(c.speakers, c.hostOutputs); ++s) {
        const bool silent = plugin->speakers[s].mute;
        for (int n = 0; n < c.frames; ++n) {
          double scale = 0.0;
          const double expected =
              silent ? 0.0 : perPairOutput(in, before, after, audible, c, s, n, scale);
          ASSERT_NEAR(out[static_cast<std::size_t>(s)][static_cast<std::size_t>(n)], expected,
                      1e-13 * scale)
              << "speaker " << s << " frame " << n;
        }
      }
      EXPECT_EQ(out[static_cast<std::size_t>(c.hostOutputs)][0], 99.0);  // past the host's count
      destroyEngine(*plugin);
    }
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
