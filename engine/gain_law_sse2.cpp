// The baseline gain law: every x86 processor of both widths runs it.
#define SPATIOLA_VECTOR_SSE2
#include "engine/gain_law_kernel_template.h"

const GainLawKernels& sse2GainLawKernels() {
  static const GainLawKernels kernels{MixPath::Sse2, "SSE2", &computeRow, &powersOfTwo};
  return kernels;
}
