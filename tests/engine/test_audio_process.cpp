// The audio routine: ramps, re-sizing, mute and solo, meters, buffer rules, real-time behaviour.
#include <gtest/gtest.h>
#include <xmmintrin.h>

#include <cfloat>
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
    plugin->model.inputs[0].x = -1;
    plugin->model.inputs[0].y = 0;
    plugin->model.inputs[0].gain = gain;
    markInputsDirty(*plugin, 0);
  }
  // Expected output s from the gains the routine settled on, for the given audible inputs.
  double settled(const Channels& in, int s, int n, std::initializer_list<int> audible) {
    double sum = 0.0;
    for (int i : audible) {
      sum += in[static_cast<std::size_t>(i)][static_cast<std::size_t>(n)] *
             plugin->mix.appliedGains[i * plugin->model.gainCols + s];
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

TEST_F(AudioProcess, SoloBeatsMuteAndSilencesTheRest) {
  setInputCount(*plugin, 3);
  plugin->host.effect.numInputs = 3;
  const Channels in = constant({1.0, 10.0, 100.0}, 16);
  plugin->model.inputs[0].solo = 1;
  plugin->model.inputs[0].mute = 1;
  auto out = processBlock(*plugin, in, 2, 16);
  for (int s = 0; s < 2; ++s)
    EXPECT_EQ(out[static_cast<std::size_t>(s)][5], settled(in, s, 5, {0}));
  // Muted inputs and speakers without solo: the random blocks below.
  plugin->model.inputs[0].solo = plugin->model.inputs[0].mute = 0;
  plugin->model.speakers[0].solo = 1;
  out = processBlock(*plugin, in, 2, 16, 99.0);
  EXPECT_EQ(out[1], std::vector<double>(16, 0.0));
  EXPECT_GT(out[0][0], 0.0);
}

TEST_F(AudioProcess, MetersShowInputAfterItsGainAndOutputsAfterTheMix) {
  inputOnLeftSpeaker(2.0);
  Channels in = constant({0.25}, 32);
  in[0][7] = -0.5;
  plugin->mix.inputPeaks[5] = 0.7;  // a slot past the inputs is cleared
  const MixState& mix = plugin->mix;
  const auto peaks = [&] {
    processBlock(*plugin, in, 2, 32);
    return std::tuple(mix.inputPeaks[0].load(), mix.inputPeaks[5].load(),
                      mix.speakerPeaks[0].load(), mix.speakerPeaks[1].load());
  };
  EXPECT_EQ(peaks(), std::tuple(1.0, 0.0, 1.0, 0.0));
  in = constant({0.1}, 32);
  EXPECT_EQ(peaks(), std::tuple(1.0, 0.0, 1.0, 0.0));  // meters hold their peak
  plugin->model.inputs[0].mute = 1;  // not audible: cleared; the speaker is, silent: held
  EXPECT_EQ(peaks(), std::tuple(0.0, 0.0, 1.0, 0.0));
  plugin->model.speakers[0].mute = 1;
  EXPECT_EQ(peaks(), std::tuple(0.0, 0.0, 0.0, 0.0));
}

TEST_F(AudioProcess, MetersFollowTheScrolledStripsAndOnlyTheHostsInputs) {
  setSpeakerCount(*plugin, 20);
  plugin->host.effect.numOutputs = 20;
  plugin->editor.speakerFaderOffset = 4;
  plugin->model.inputs[0].x = plugin->model.speakers[5].x;  // loudest on speaker 5, slot 1
  plugin->model.inputs[0].y = plugin->model.speakers[5].y;
  markInputsDirty(*plugin, 0);
  const auto out = processBlock(*plugin, constant({0.5}, 8), 20, 8);
  EXPECT_EQ(plugin->mix.speakerPeaks[1].load(), 0.5);
  for (int j = 0; j < kMeterSlots; ++j)
    EXPECT_EQ(plugin->mix.speakerPeaks[j].load(), std::fabs(out[4 + j][7])) << j;
  plugin->model.speakers[5].mute = 1;  // its slot clears: speaker 5's mute, not speaker 1's
  processBlock(*plugin, constant({0.5}, 8), 20, 8);
  EXPECT_EQ(plugin->mix.speakerPeaks[1].load(), 0.0);
  setInputCount(*plugin, 3);  // the host still gives one buffer: the others are never read
  plugin->host.effect.numInputs = 1;
  plugin->editor.inputFaderOffset = 0;
  processBlock(*plugin, constant({0.75, 9.0, 9.0}, 8), 20, 8);
  EXPECT_EQ(plugin->mix.inputPeaks[0].load(), 0.75);
  EXPECT_EQ(plugin->mix.inputPeaks[1].load(), 0.0);
  EXPECT_EQ(plugin->mix.inputPeaks[2].load(), 0.0);
}

TEST_F(AudioProcess, AZeroFrameBlockWritesNothingAndSettlesPendingGains) {
  inputOnLeftSpeaker(1.0);
  processBlock(*plugin, constant({1.0}, 8), 2, 8);
  plugin->model.speakers[1].mute = 1;
  for (int j = 0; j < kMeterSlots; ++j)
    plugin->mix.inputPeaks[j] = plugin->mix.speakerPeaks[j] = 0.3;
  setParameterValue(*plugin, 4, 0.125f);                              // gain 0.5
  processDoubleReplacing(&plugin->host.effect, nullptr, nullptr, 0);  // hosts may pass no buffers
  const MixState& mix = plugin->mix;  // audible meters left as they were, the muted one cleared
  EXPECT_EQ(std::tuple(mix.appliedGains[0], mix.inputPeaks[0].load(), mix.speakerPeaks[0].load(),
                       mix.speakerPeaks[1].load()),
            std::tuple(0.5, 0.3, 0.3, 0.0));
  for (int j = 2; j < kMeterSlots; ++j) {
    EXPECT_EQ(plugin->mix.inputPeaks[j - 1].load(), 0.0) << j - 1;  // no input there
    EXPECT_EQ(plugin->mix.speakerPeaks[j].load(), 0.0) << j;        // no speaker there
  }
  processDoubleReplacing(&plugin->host.effect, nullptr, nullptr, -5);  // as good as 0 frames
  EXPECT_EQ(plugin->mix.speakerPeaks[0].load(), 0.3);
  const auto out = processBlock(*plugin, constant({1.0}, 4), 2, 4);
  EXPECT_EQ(out[0], std::vector<double>(4, 0.5));  // no ramp left over
}

TEST_F(AudioProcess, AMutedInputFullOfInfinitiesCannotReachTheOutputs) {
  setInputCount(*plugin, 2);
  plugin->host.effect.numInputs = 2;
  Channels in = constant({std::numeric_limits<double>::infinity(), 0.5}, 64);
  in[0][3] = std::numeric_limits<double>::quiet_NaN();
  plugin->model.inputs[0].mute = 1;
  for (int block = 0; block < 2; ++block) {
    for (const auto& channel : processBlock(*plugin, in, 2, 64))
      for (double x : channel) ASSERT_TRUE(std::isfinite(x));
  }
}

namespace {

struct BlockShape {
  int inputs, speakers, hostInputs, hostOutputs, frames;
};

// The mix pair by pair, each gain ramping linearly from `before` to `after` over the block; the
// baseline path must match the plain sequential sum bit for bit.
void expectPerPairMix(const PannerPlugin& plugin, const Channels& in, const Channels& out,
                      const std::vector<double>& before, const std::vector<double>& after,
                      const std::vector<bool>& audible, int inputs, int outputs, bool exact) {
  const int frames = static_cast<int>(in[0].size());
  for (int s = 0; s < outputs; ++s) {
    for (int n = 0; n < frames; ++n) {
      double sum = 0.0;
      double scale = 0.0;
      for (int i = 0; i < inputs && !plugin.model.speakers[s].mute; ++i) {
        if (!audible[static_cast<std::size_t>(i)]) continue;
        const std::size_t cell = static_cast<std::size_t>(i * plugin.model.gainCols + s);
        const double g = before[cell] + (n + 1.0) * ((after[cell] - before[cell]) / frames);
        sum += in[static_cast<std::size_t>(i)][static_cast<std::size_t>(n)] * g;
        scale += std::fabs(in[static_cast<std::size_t>(i)][static_cast<std::size_t>(n)] * g);
      }
      const double actual = out[static_cast<std::size_t>(s)][static_cast<std::size_t>(n)];
      if (exact) {
        ASSERT_EQ(actual, sum) << "speaker " << s << " frame " << n;
      }
      ASSERT_NEAR(actual, sum, 1e-13 * scale) << "speaker " << s << " frame " << n;
    }
  }
}

std::vector<double> appliedGains(const PannerPlugin& plugin) {
  return {plugin.mix.appliedGains.begin(), plugin.mix.appliedGains.end()};
}

}  // namespace

// Random rooms through the host's entry on every path: a steady block, then a ramping block with
// mute and solo and host counts below the model's, against the per-pair formula.
TEST(AudioProcessReference, RandomBlocksOnEveryPathMatchThePerPairFormula) {
  RecordingHost host;
  std::mt19937 random(77);
  std::uniform_real_distribution<double> unit(-1.0, 1.0);
  const BlockShape shapes[] = {{1, 1, 1, 1, 64},     {63, 64, 63, 64, 512}, {64, 64, 64, 64, 333},
                               {64, 63, 60, 50, 17}, {1, 64, 1, 64, 1},     {64, 1, 64, 1, 100},
                               {5, 7, 3, 7, 4}};
  for (MixPath path : supportedPaths()) {
    for (const BlockShape& c : shapes) {
      SCOPED_TRACE(testing::Message()
                   << "path " << static_cast<int>(path) << " " << c.inputs << "x" << c.speakers
                   << " host " << c.hostInputs << "x" << c.hostOutputs);
      auto plugin = makeEngineInstance(c.inputs);
      setSpeakerCount(*plugin, c.speakers);
      plugin->host.effect.numOutputs = c.speakers;
      ASSERT_TRUE(forceMixPath(*plugin, path));
      Channels in(static_cast<std::size_t>(c.inputs),
                  std::vector<double>(static_cast<std::size_t>(c.frames)));
      for (auto& channel : in)
        for (double& x : channel) x = unit(random);
      std::vector<bool> audible(static_cast<std::size_t>(c.inputs), true);
      // The first block after a count change applies its gains at once, without a glide.
      auto out = processBlock(*plugin, in, c.speakers, c.frames);
      const std::vector<double> before = appliedGains(*plugin);
      expectPerPairMix(*plugin, in, out, before, before, audible, c.inputs, c.speakers,
                       path == MixPath::Sse2);
      for (std::size_t i = 0; i < audible.size(); ++i) {
        plugin->model.inputs[i].x = unit(random);
        plugin->model.inputs[i].diffuse = unit(random) > 0 ? 0.3 : 0.0;
        plugin->model.inputs[i].mute = unit(random) > 0.6;
        audible[i] = !plugin->model.inputs[i].mute;
      }
      if (c.inputs > 2) plugin->model.speakers[1 % c.speakers].mute = 1;
      markInputsDirty(*plugin, kDirtyAllInputs);
      plugin->host.effect.numInputs = c.hostInputs;
      plugin->host.effect.numOutputs = c.hostOutputs;
      out = processBlock(*plugin, in, c.hostOutputs + 1, c.frames, 99.0);
      expectPerPairMix(*plugin, in, out, before, appliedGains(*plugin), audible,
                       std::min(c.inputs, c.hostInputs), std::min(c.speakers, c.hostOutputs),
                       false);
      EXPECT_EQ(out[static_cast<std::size_t>(c.hostOutputs)][0], 99.0);  // past the host's count
      EXPECT_EQ(std::pair(plugin->host.effect.numInputs, plugin->host.effect.numOutputs),
                std::pair(c.inputs, c.speakers));  // the next block may use every channel
      destroyEngine(*plugin);
    }
  }
}

TEST_F(AudioProcess, SubnormalsFlushToZeroEvenWhileGainsGlideDown) {
  inputOnLeftSpeaker(1.0);
  EXPECT_EQ(processBlock(*plugin, constant({1e-310}, 8), 2, 8)[0], std::vector<double>(8, 0.0));
  const Channels quiet = constant({4.0 * DBL_MIN}, 512);  // products fall below DBL_MIN
  setParameterValue(*plugin, 4, 0.0f);
  const auto out = processBlock(*plugin, quiet, 2, 512);
  EXPECT_GT(out[0][0], 0.0);  // the glide starts audible
  for (double x : out[0]) ASSERT_NE(std::fpclassify(x), FP_SUBNORMAL);
}

// Inside the block rounding is to nearest and subnormals flush, whatever the caller set; the
// caller's state comes back unchanged.
TEST(AudioProcessFloatingPoint, TheCallersStateNeitherLeaksInNorIsLost) {
  constexpr unsigned kDefault = 0x1f80;  // all exceptions masked, round to nearest
  const unsigned states[] = {kDefault, kDefault | 0x6000 /* toward zero */,
                             kDefault | 0x4000 /* up */, kDefault | 0x8040 /* flush already on */,
                             kDefault | 0x0020 /* precision flag raised */};
  RecordingHost host;
  std::mt19937 random(3);
  std::uniform_real_distribution<double> sample(-1.0, 1.0);
  Channels noise(3, std::vector<double>(512, 1e-310));
  for (double& x : noise[0]) x = sample(random);
  std::vector<Channels> outputs;
  for (unsigned state : states) {
    SCOPED_TRACE(state);
    auto plugin = makeEngineInstance(3);
    const int speakers = plugin->speakerCount();
    processBlock(*plugin, noise, speakers, 512);
    plugin->model.inputs[0].x = plugin->model.speakers[0].x + 0.1;  // the block glides
    plugin->model.inputs[0].y = plugin->model.speakers[0].y;
    plugin->model.inputs[0].gain = 1.0 / 3.0;
    markInputsDirty(*plugin, kDirtyAllInputs);
    _mm_setcsr(state);
    outputs.push_back(processBlock(*plugin, noise, speakers, 512));
    const unsigned after = _mm_getcsr();
    _mm_setcsr(kDefault);
    EXPECT_EQ(after, state);
    EXPECT_EQ(outputs.back(), outputs.front());
    destroyEngine(*plugin);
  }
  EXPECT_NE(outputs[0], Channels(outputs[0].size(), std::vector<double>(512, 0.0)));
}
