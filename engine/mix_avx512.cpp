// Kernels for processors with AVX-512 (this file is compiled for them).
#include <cstdint>

// GCC 12's own AVX-512 intrinsics start from an "undefined" vector that its warnings mistake for an
// uninitialised one.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

#define SPATIOLA_VECTOR_AVX512
#include "engine/mix_kernels.h"
#include "engine/vector_ops.h"

namespace {
#if UINTPTR_MAX == 0xffffffffu
constexpr int kSteadySpeakers = 2, kSteadyVectors = 2, kRampSpeakers = 1, kRampVectors = 2;
#else  // 32 vector registers
constexpr int kSteadySpeakers = 4, kSteadyVectors = 6, kRampSpeakers = 4, kRampVectors = 6;
#endif
constexpr int kChunkFrames = 96;
}  // namespace

#include "engine/mix_kernel_template.h"

const MixKernels& avx512MixKernels() {
  static const MixKernels kernels{MixPath::Avx512, "AVX-512", kSteadySpeakers,   kRampSpeakers,
                                  &mixSteady,      &mixRamp,  &largestMagnitude, &rampSteps};
  return kernels;
}
