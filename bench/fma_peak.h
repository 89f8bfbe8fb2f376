// The core's peak of multiply-adds: independent chains of fused multiply-adds that never leave
// the registers, as many as the 64 x 64 x 512 mix performs.
#pragma once

#include "engine/mix_kernels.h"

constexpr long kPeakMultiplyAdds = 64L * 64 * 512;

// [benchmarks] Runs kPeakMultiplyAdds multiply-adds in vectors of `path` (AVX2+FMA or AVX-512;
// the processor must have it) and returns a value that depends on all of them.
double fusedMultiplyAddPeak(MixPath path);
