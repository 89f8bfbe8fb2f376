// The gain law for processors with AVX-512 (this file is compiled for them).

// GCC 12's own AVX-512 intrinsics start from an "undefined" vector that its warnings mistake for an
// uninitialised one.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

#define SPATIOLA_VECTOR_AVX512
#include "engine/gain_law_kernel_template.h"

const GainLawKernels& avx512GainLawKernels() {
  static const GainLawKernels kernels{MixPath::Avx512, "AVX-512", &computeRow, &powersOfTwo};
  return kernels;
}
