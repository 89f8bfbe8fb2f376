// spatiola_scene_bench: steady and moving blocks of the 64 x 64 spread scene through
// processDoubleReplacing on each mix path, with no library but the engine's, so that it also runs
// as a 32-bit program (through qemu-i386 where the kernel runs none). Prints CPU microseconds per
// block, medians of interleaved rounds, and the moving / steady ratio.
//   spatiola_scene_bench [rounds]
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <vector>

#include "engine/audio_process.h"
#include "engine/mix_engine.h"
#include "model/counts.h"
#include "model/field_table.h"
#include "model/layouts.h"
#include "model/parameters.h"

namespace {

constexpr int kChannels = 64;
constexpr int kFrames = 512;
constexpr int kBlocksPerRound = 40;

double cpuSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// The bench fixture's spread scene: speakers on a ring, every input diffused, biased and rotated.
struct Scene {
  Scene(MixPath path, std::uint32_t optionFlags)
      : input(kChannels * kFrames), output(input.size()) {
    plugin->host.effect.object = plugin.get();
    setInputCount(*plugin, kChannels);
    setSpeakerCount(*plugin, kChannels);
    plugin->host.effect.numInputs = kChannels;
    plugin->host.effect.numOutputs = kChannels;
    createMixEngine(*plugin);
    forceMixPath(*plugin, path);
    Position3 ring[kMaxSpeakers];
    computeRingPositions(kChannels, ring);
    for (int s = 0; s < kChannels; ++s)
      setSpeaker(*plugin, s, "ring", ring[s].x, ring[s].y, ring[s].z, 0.5);
    for (int i = 0; i < kChannels; ++i) {
      InputChannel& in = plugin->model.inputs[i];
      in.diffuse = 0.1 + 0.01 * i;
      in.diffuseBias = 0.5 - 0.015 * i;
      in.diffuseAngle = 0.03 * i - 0.9;
    }
    plugin->model.optionFlags = optionFlags;
    markInputsDirty(*plugin, kDirtyAllInputs);
    for (std::size_t k = 0; k < input.size(); ++k)
      input[k] = std::sin(0.001 * static_cast<double>(k));
    for (int c = 0; c < kChannels; ++c) {
      inputs[c] = input.data() + c * kFrames;
      outputs[c] = output.data() + c * kFrames;
    }
    block(false);
  }
  ~Scene() { destroyMixEngine(*plugin); }

  // Moving: the host's automation sets every input's x before the block.
  void block(bool moving) {
    AEffect* effect = &plugin->host.effect;
    for (int i = 0; moving && i < kChannels; ++i) {
      const double phase = 2.0 * M_PI * ((count + 7 * i) % 1000) / 1000.0;
      setParameterSlot(effect, kGlobalParameterCount + kParametersPerInput * i + kInX,
                       static_cast<float>(0.5 + 0.5 * std::sin(phase)));
    }
    processDoubleReplacing(effect, inputs, outputs, kFrames);
    ++count;
  }

  double microsecondsPerBlock(bool moving) {
    const double start = cpuSeconds();
    for (int b = 0; b < kBlocksPerRound; ++b) block(moving);
    return (cpuSeconds() - start) * 1e6 / kBlocksPerRound;
  }

  std::unique_ptr<PannerPlugin> plugin = std::make_unique<PannerPlugin>();
  std::vector<double> input, output;
  double* inputs[kChannels]{};
  double* outputs[kChannels]{};
  int count = 0;
};

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
  const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 9;
  std::printf("%-10s %-9s %12s %12s %8s\n", "path", "mode", "steady us", "moving us", "ratio");
  for (MixPath path : {MixPath::Avx512, MixPath::Avx2, MixPath::Sse2}) {
    if (!processorSupports(path)) continue;
    for (bool relative : {false, true}) {
      Scene scene(path, relative ? kOptionRelativeInfluence : kOptionDefaults);
      std::vector<double> steady, moving;
      for (int r = 0; r < rounds; ++r) {
        steady.push_back(scene.microsecondsPerBlock(false));
        moving.push_back(scene.microsecondsPerBlock(true));
      }
      const char* name = path == MixPath::Avx512 ? "AVX-512"
                         : path == MixPath::Avx2 ? "AVX2+FMA"
                                                 : "SSE2";
      std::printf("%-10s %-9s %12.1f %12.1f %8.2f\n", name, relative ? "relative" : "absolute",
                  median(steady), median(moving), median(moving) / median(steady));
    }
  }
  return 0;
}
