// The gain law for processors with AVX2 and fused multiply-add (this file is compiled for them).
#define SPATIOLA_VECTOR_AVX2
#include "engine/gain_law_kernel_template.h"

const GainLawKernels& avx2GainLawKernels() {
  static const GainLawKernels kernels{MixPath::Avx2, "AVX2+FMA", &computeRow, &powersOfTwo};
  return kernels;
}
