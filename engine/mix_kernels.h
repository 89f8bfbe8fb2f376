// The mixing kernels of each instruction set, chosen once per instance.
#pragma once

#include "engine/mix_plan.h"

enum class MixPath { Sse2, Avx2, Avx512 };

struct MixKernels {
  MixPath path;
  const char* name;
  int steadyTileWidth;  // speakers per tile the plan must be packed for
  int rampTileWidth;
  // Writes every planned output for the whole block (no need to clear them first).
  void (*mixSteady)(const MixPlan& plan);
  // As mixSteady, with gain g + (n + 1) * step on sample n.
  void (*mixRamp)(const MixPlan& plan);
  // The largest |sample| of one channel (NaN samples count as 0).
  double (*largestMagnitude)(const double* samples, int frames);
  // steps[k] = (target[k] - applied[k]) / frames for k < cells: a ramp's per-sample increments.
  void (*rampSteps)(const double* target, const double* applied, double* steps, int cells,
                    int frames);
};

const MixKernels& sse2MixKernels();
const MixKernels& avx2MixKernels();
const MixKernels& avx512MixKernels();

// Whether this processor (and its operating system) runs `path`.
bool processorSupports(MixPath path);

// The fastest kernels this processor runs.
const MixKernels& bestMixKernels();
