// The baseline kernels: every x86 processor of both widths runs them.
#include <cstdint>

#define SPATIOLA_VECTOR_SSE2
#include "engine/mix_kernels.h"
#include "engine/vector_ops.h"

namespace {
#if UINTPTR_MAX == 0xffffffffu  // 8 vector registers
constexpr int kSteadySpeakers = 2, kSteadyVectors = 2, kRampSpeakers = 1, kRampVectors = 2;
#else  // 16 vector registers
constexpr int kSteadySpeakers = 4, kSteadyVectors = 2, kRampSpeakers = 2, kRampVectors = 2;
#endif
constexpr int kChunkFrames = 64;
}  // namespace

#include "engine/mix_kernel_template.h"

const MixKernels& sse2MixKernels() {
  static const MixKernels kernels{MixPath::Sse2, "SSE2",   kSteadySpeakers,   kRampSpeakers,
                                  &mixSteady,    &mixRamp, &largestMagnitude, &rampSteps};
  return kernels;
}
