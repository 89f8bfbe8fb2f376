// One block's mix as the kernels see it: only audible inputs and speakers, their buffers, and
// their gains packed in tiles of speakers.
#pragma once

#include <cstdint>

#include "model/channels.h"

struct MixPlan {
  int inputCount = 0;   // audible inputs mixed, in input order
  int outputCount = 0;  // audible speakers written
  int frames = 0;
  const double* inputs[kMaxInputs] = {};
  double* outputs[kMaxSpeakers] = {};
  // Tile t covers outputs [t * tileWidth, ...): its gains are [input][speaker of the tile].
  int tileWidth = 0;
  const double* gains = nullptr;         // applied gains
  const double* steps = nullptr;         // per-sample ramp increments; null for a steady block
  double* outputPeaks = nullptr;         // raised to the largest |output| of each written speaker
  struct MixScratch* scratch = nullptr;  // overwritten by the kernel
};

constexpr int kMixScratchFrames = 128;
constexpr int kMixScratchDoubles = kMaxInputs * kMixScratchFrames;

struct MixScratch {
  alignas(64) double samples[kMixScratchDoubles];         // chunks of the inputs
  alignas(64) double strides[kMaxInputs * kMaxSpeakers];  // a ramp's steps per vector of samples
};

// Offset of tile t's gains in the packed arrays of a plan with `inputs` inputs.
constexpr int packedTileOffset(int tile, int tileWidth, int inputs) {
  return tile * tileWidth * inputs;
}
