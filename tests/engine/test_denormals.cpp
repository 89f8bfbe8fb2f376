// Inside the audio routine subnormal numbers flush to zero and rounding is to nearest; the
// caller's floating-point state comes back unchanged.
#include <gtest/gtest.h>
#include <xmmintrin.h>

#include <cfloat>
#include <cmath>
#include <random>

#include "engine_fixture.h"

namespace {

constexpr unsigned kDefaultState = 0x1f80;  // all exceptions masked, round to nearest
constexpr int kFrames = 512;

Channels constantInputs(int count, double value) {
  return Channels(static_cast<std::size_t>(count),
                  std::vector<double>(static_cast<std::size_t>(kFrames), value));
}

int subnormalSamples(const Channels& outputs) {
  int found = 0;
  for (const auto& channel : outputs) {
    for (double s : channel) found += std::fpclassify(s) == FP_SUBNORMAL ? 1 : 0;
  }
  return found;
}

bool allZero(const Channels& outputs) {
  for (const auto& channel : outputs) {
    for (double s : channel) {
      if (s != 0.0) return false;
    }
  }
  return true;
}

// Four inputs, each on a speaker of the quadraphonic layout: every input sounds at full gain.
std::unique_ptr<PannerPlugin> inputsOnSpeakers() {
  auto plugin = makeEngineInstance(4);
  for (int i = 0; i < 4; ++i) {
    plugin->inputs[i].x = plugin->speakers[i].x;
    plugin->inputs[i].y = plugin->speakers[i].y;
  }
  markInputsDirty(*plugin, -1);
  return plugin;
}

// Runs one block with the caller's state set to `state`; answers the state found afterwards.
unsigned blockUnderState(PannerPlugin& plugin, const Channels& inputs, unsigned state,
                         Channels& outputs) {
  _mm_setcsr(state);
  outputs = processBlock(plugin, inputs, plugin.speakerCount(), kFrames);
  const unsigned after = _mm_getcsr();
  _mm_setcsr(kDefaultState);
  return after;
}

TEST(Denormals, SubnormalInputsAreReadAsZero) {
  RecordingHost host;
  auto plugin = inputsOnSpeakers();
  const Channels audible = processBlock(*plugin, constantInputs(4, 1.0), 4, kFrames);
  ASSERT_FALSE(allZero(audible));  // the same gains pass a normal signal
  const Channels tail = processBlock(*plugin, constantInputs(4, 1e-310), 4, kFrames);
  EXPECT_TRUE(allZero(tail));
  destroyEngine(*plugin);
}

TEST(Denormals, GainsGlidingToZeroLeaveNoSubnormalOutput) {
  RecordingHost host;
  auto plugin = inputsOnSpeakers();
  const Channels quiet = constantInputs(4, 4.0 * DBL_MIN);  // products below DBL_MIN as gains fall
  processBlock(*plugin, quiet, 4, kFrames);
  for (InputChannel& input : plugin->inputs) input.gain = 0.0;
  markInputsDirty(*plugin, -1);
  const Channels gliding = processBlock(*plugin, quiet, 4, kFrames);
  EXPECT_EQ(subnormalSamples(gliding), 0);
  EXPECT_FALSE(allZero(gliding));  // the glide starts audible
  destroyEngine(*plugin);
}

TEST(Denormals, CallersStateIsRestored) {
  const struct {
    const char* name;
    unsigned state;
  } cases[] = {
      {"default", kDefaultState},
      {"round toward zero", kDefaultState | 0x6000},
      {"round up", kDefaultState | 0x4000},
      {"flush and denormals-are-zero already on", kDefaultState | 0x8040},
      {"precision flag already raised", kDefaultState | 0x0020},
  };
  RecordingHost host;
  auto plugin = inputsOnSpeakers();
  Channels outputs;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    plugin->inputs[0].x = -plugin->inputs[0].x;  // a ramp in every block
    markInputsDirty(*plugin, 0);
    EXPECT_EQ(blockUnderState(*plugin, constantInputs(4, 1e-310), c.state, outputs), c.state);
    EXPECT_TRUE(allZero(outputs));
  }
  destroyEngine(*plugin);
}

TEST(Denormals, OutputDoesNotDependOnTheCallersRoundingMode) {
  RecordingHost host;
  std::mt19937 random(3);
  std::uniform_real_distribution<double> sample(-1.0, 1.0);
  Channels noise = constantInputs(6, 0.0);
  for (auto& channel : noise) {
    for (double& s : channel) s = sample(random);
  }
  Channels byMode[2];
  const unsigned modes[2] = {kDefaultState, kDefaultState | 0x6000};
  for (int m = 0; m < 2; ++m) {
    auto plugin = makeEngineInstance(6);
    processBlock(*plugin, noise, 6, kFrames);
    plugin->inputs[2].x = 0.3;  // the second block glides
    plugin->inputs[4].gain = 1.0 / 3.0;
    markInputsDirty(*plugin, -1);
    blockUnderState(*plugin, noise, modes[m], byMode[m]);
    destroyEngine(*plugin);
  }
  EXPECT_FALSE(allZero(byMode[0]));
  EXPECT_EQ(byMode[0], byMode[1]);
}

}  // namespace
