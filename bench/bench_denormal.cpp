// Cost per block of a signal decaying into the subnormal range and of gains gliding to zero,
// each against its steady counterpart. The audio routine flushes denormals, so each pair should
// cost the same; a ratio well above 1 means subnormal arithmetic reached the mix.
#include <benchmark/benchmark.h>

#include <cfloat>
#include <cmath>
#include <memory>
#include <random>
#include <vector>

#include "engine/audio_process.h"
#include "model/counts.h"
#include "model/layouts.h"

namespace {

constexpr int kChannels = 16;
constexpr int kFrames = 512;

// Sixteen inputs, each on one of sixteen speakers, so every input reaches the mix.
class Rig {
 public:
  explicit Rig(double level, double decayPerFrame) : plugin_(std::make_unique<PannerPlugin>()) {
    PannerPlugin& p = *plugin_;
    p.host.effect.object = &p;
    setInputCount(p, kChannels);
    setSpeakerCount(p, kChannels);
    p.host.effect.numInputs = kChannels;
    p.host.effect.numOutputs = kChannels;
    for (int i = 0; i < kChannels; ++i) {
      p.model.inputs[i].x = p.model.speakers[i].x;
      p.model.inputs[i].y = p.model.speakers[i].y;
    }
    createMixEngine(p);
    fill(level, decayPerFrame);
    block();  // sizes the matrices
  }
  ~Rig() { destroyMixEngine(*plugin_); }
  Rig(const Rig&) = delete;
  Rig& operator=(const Rig&) = delete;

  PannerPlugin& plugin() { return *plugin_; }
  void block() { processDoubleReplacing(&plugin_->host.effect, inputs_, outputs_, kFrames); }

  // Every input's gain toward `gain`: the next block glides there.
  void glideTo(double gain) {
    for (InputChannel& input : plugin_->model.inputs) input.gain = gain;
    markInputsDirty(*plugin_, -1);
  }

 private:
  void fill(double level, double decayPerFrame) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> noise(-1.0, 1.0);
    for (int c = 0; c < kChannels; ++c) {
      in_[c].assign(kFrames, 0.0);
      out_[c].assign(kFrames, 0.0);
      double envelope = level;
      for (double& s : in_[c]) {
        s = envelope * noise(random);
        envelope *= decayPerFrame;
      }
      inputs_[c] = in_[c].data();
      outputs_[c] = out_[c].data();
    }
  }

  std::unique_ptr<PannerPlugin> plugin_;
  std::vector<double> in_[kChannels];
  std::vector<double> out_[kChannels];
  double* inputs_[kChannels] = {};
  double* outputs_[kChannels] = {};
};

std::unique_ptr<Rig> makeRig(double level, double decayPerFrame) {
  return std::make_unique<Rig>(level, decayPerFrame);
}

void steadySignal(benchmark::State& state) {
  auto rig = makeRig(0.25, 1.0);
  for (auto _ : state) rig->block();
}

// From 1e-300 down by a factor of 1e-18 over the block: the tail ends deep among subnormals.
void decayingTail(benchmark::State& state) {
  auto rig = makeRig(1e-300, std::pow(1e-18, 1.0 / kFrames));
  for (auto _ : state) rig->block();
}

// Every block glides all gains between 1 and 0, at a normal level.
void gainsGlidingSteadyLevel(benchmark::State& state) {
  auto rig = makeRig(0.25, 1.0);
  bool up = false;
  for (auto _ : state) {
    rig->glideTo(up ? 1.0 : 0.0);
    up = !up;
    rig->block();
  }
}

// The same glides at a level just above the smallest normal number: products fall below it.
void gainsGlidingToZero(benchmark::State& state) {
  auto rig = makeRig(4.0 * DBL_MIN, 1.0);
  bool up = false;
  for (auto _ : state) {
    rig->glideTo(up ? 1.0 : 0.0);
    up = !up;
    rig->block();
  }
}

BENCHMARK(steadySignal);
BENCHMARK(decayingTail);
BENCHMARK(gainsGlidingSteadyLevel);
BENCHMARK(gainsGlidingToZero);

}  // namespace
