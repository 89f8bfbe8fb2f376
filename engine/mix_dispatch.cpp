#include "engine/mix_kernels.h"

bool processorSupports(MixPath path) {
  switch (path) {
    case MixPath::Sse2:
      return true;
    case MixPath::Avx2:
      return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
    case MixPath::Avx512:
      return __builtin_cpu_supports("avx512f");
  }
  return false;
}

const MixKernels& bestMixKernels() {
  if (processorSupports(MixPath::Avx512)) return avx512MixKernels();
  if (processorSupports(MixPath::Avx2)) return avx2MixKernels();
  return sse2MixKernels();
}
