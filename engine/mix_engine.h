// The engine's per-instance working storage: the kernels chosen for this processor and the packed
// gains of the audible pairs, reused while nothing changes.
#pragma once

#include <cstdint>

#include "engine/gain_law_kernels.h"
#include "engine/mix_kernels.h"
#include "model/panner_plugin.h"

struct MixEngine {
  const MixKernels* kernels = nullptr;
  const GainLawKernels* lawKernels = nullptr;  // of the same instruction set
  MixPlan plan;
  // Packed gains are reused while the audible pairs, the tile width and the applied gains stay.
  std::uint64_t gainsGeneration = 1;  // raised whenever appliedGains changes
  std::uint64_t packedGeneration = 0;
  std::uint64_t packedInputs = 0;
  std::uint64_t packedSpeakers = 0;
  int packedTileWidth = 0;
  alignas(64) double packedGains[kMaxInputs * kMaxSpeakers];
  alignas(64) double packedSteps[kMaxInputs * kMaxSpeakers];
  MixScratch scratch;
  double outputPeaks[kMaxSpeakers];
  int speakerOfOutput[kMaxSpeakers];  // model speaker of each planned output
};

// [tests] Mixes and computes gains with the kernels of `path`; false (and nothing changed) when
// this processor lacks it.
bool forceMixPath(PannerPlugin& plugin, MixPath path);

// [tests, benchmarks] The kernels this instance mixes with.
const MixKernels& mixKernelsOf(const PannerPlugin& plugin);
