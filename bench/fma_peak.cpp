#include "bench/fma_peak.h"

#include <immintrin.h>

namespace {

// Sixteen chains hide the latency of two multiply-add units; the factors keep every value normal.
constexpr int kChains = 16;
constexpr double kFactor = 0.999999;
constexpr double kAddend = 1e-3;

__attribute__((target("avx512f"))) double peakAvx512() {
  __m512d acc[kChains];
  for (__m512d& a : acc) a = _mm512_set1_pd(1.0);
  const __m512d factor = _mm512_set1_pd(kFactor);
  const __m512d addend = _mm512_set1_pd(kAddend);
  for (long n = 0; n < kPeakMultiplyAdds / (8 * kChains); ++n) {
#pragma GCC unroll 16
    for (__m512d& a : acc) a = _mm512_fmadd_pd(a, factor, addend);
  }
  __m512d sum = acc[0];
  for (int k = 1; k < kChains; ++k) sum = _mm512_add_pd(sum, acc[k]);
  alignas(64) double lanes[8];
  _mm512_store_pd(lanes, sum);
  return lanes[0] + lanes[7];
}

// Twelve chains of the sixteen registers, four multiply-adds each per round.
__attribute__((target("avx2,fma"))) double peakAvx2() {
  constexpr int kAvx2Chains = 12;
  __m256d acc[kAvx2Chains];
  for (__m256d& a : acc) a = _mm256_set1_pd(1.0);
  const __m256d factor = _mm256_set1_pd(kFactor);
  const __m256d addend = _mm256_set1_pd(kAddend);
  long done = 0;
  for (; done + 4 * kAvx2Chains <= kPeakMultiplyAdds; done += 4 * kAvx2Chains) {
#pragma GCC unroll 12
    for (__m256d& a : acc) a = _mm256_fmadd_pd(a, factor, addend);
  }
  for (; done < kPeakMultiplyAdds; done += 4) acc[0] = _mm256_fmadd_pd(acc[0], factor, addend);
  __m256d sum = acc[0];
  for (int k = 1; k < kAvx2Chains; ++k) sum = _mm256_add_pd(sum, acc[k]);
  alignas(32) double lanes[4];
  _mm256_store_pd(lanes, sum);
  return lanes[0] + lanes[3];
}

}  // namespace

double fusedMultiplyAddPeak(MixPath path) {
  return path == MixPath::Avx512 ? peakAvx512() : peakAvx2();
}
