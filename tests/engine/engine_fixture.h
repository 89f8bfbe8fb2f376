// An instance with its engine, and a per-pair reference for the mix.
#pragma once

#include <vector>

#include "../model/model_fixture.h"
#include "engine/audio_process.h"
#include "engine/mix_engine.h"

using Channels = std::vector<std::vector<double>>;

inline std::unique_ptr<PannerPlugin> makeEngineInstance(int channels) {
  auto plugin = makeInstance(channels);
  plugin->host.effect.numInputs = plugin->inputCount();
  plugin->host.effect.numOutputs = plugin->speakerCount();
  createMixEngine(*plugin);
  return plugin;
}

inline void destroyEngine(PannerPlugin& plugin) {
  destroyMixEngine(plugin);
}

// Runs one block; outputs start as `fill` so that untouched samples show.
inline Channels processBlock(PannerPlugin& plugin, Channels inputs, int outputCount, int frames,
                             double fill = 0.0) {
  Channels outputs(static_cast<std::size_t>(outputCount),
                   std::vector<double>(static_cast<std::size_t>(frames), fill));
  std::vector<double*> in;
  std::vector<double*> out;
  for (auto& c : inputs) in.push_back(c.data());
  for (auto& c : outputs) out.push_back(c.data());
  processDoubleReplacing(&plugin.host.effect, in.data(), out.data(), frames);
  return outputs;
}

inline std::vector<MixPath> supportedPaths() {
  std::vector<MixPath> paths;
  for (MixPath path : {MixPath::Sse2, MixPath::Avx2, MixPath::Avx512}) {
    if (processorSupports(path)) paths.push_back(path);
  }
  return paths;
}
