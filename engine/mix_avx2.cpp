// Kernels for processors with AVX2 and fused multiply-add (this file is compiled for them).
#include <cstdint>

#define SPATIOLA_VECTOR_AVX2
#include "engine/mix_kernels.h"
#include "engine/vector_ops.h"

namespace {
#if UINTPTR_MAX == 0xffffffffu
constexpr int kSteadySpeakers = 2, kSteadyVectors = 2, kRampSpeakers = 1, kRampVectors = 2;
#else
constexpr int kSteadySpeakers = 4, kSteadyVectors = 3, kRampSpeakers = 2, kRampVectors = 4;
#endif
constexpr int kChunkFrames = 48;
}  // namespace

#include "engine/mix_kernel_template.h"

const MixKernels& avx2MixKernels() {
  static const MixKernels kernels{MixPath::Avx2, "AVX2+FMA", kSteadySpeakers,   kRampSpeakers,
                                  &mixSteady,    &mixRamp,   &largestMagnitude, &rampSteps};
  return kernels;
}
