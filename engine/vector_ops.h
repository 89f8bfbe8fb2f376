// Thin wrappers over one instruction set's double vectors. Included only by the kernel file of that
// instruction set, which is compiled for it; everything here has internal linkage so that no
// function compiled for a wider set can leak into code that runs on a narrower one.
#pragma once

#include <immintrin.h>

namespace {

#if defined(SPATIOLA_VECTOR_SSE2)
struct VectorOps {
  using V = __m128d;
  static constexpr int kWidth = 2;
  static V zero() { return _mm_setzero_pd(); }
  static V load(const double* p) { return _mm_loadu_pd(p); }
  static void store(double* p, V v) { _mm_storeu_pd(p, v); }
  static void storeAligned(double* p, V v) { _mm_store_pd(p, v); }
  static V broadcast(const double* p) { return _mm_set1_pd(*p); }
  static V set(double x) { return _mm_set1_pd(x); }
  static V add(V a, V b) { return _mm_add_pd(a, b); }
  static V mul(V a, V b) { return _mm_mul_pd(a, b); }
  // Without fused multiply-add the products round first, exactly as a plain loop does.
  static V mulAdd(V a, V b, V c) { return _mm_add_pd(c, _mm_mul_pd(a, b)); }
  static V abs(V a) { return _mm_andnot_pd(_mm_set1_pd(-0.0), a); }
  static V max(V a, V b) { return _mm_max_pd(a, b); }
  static V min(V a, V b) { return _mm_min_pd(a, b); }
  static V negate(V a) { return _mm_sub_pd(_mm_setzero_pd(), a); }
  static double horizontalMax(V a) { return _mm_cvtsd_f64(_mm_max_sd(a, _mm_unpackhi_pd(a, a))); }
  static V ramp(double first) { return _mm_set_pd(first + 1, first); }
  // For the gain law.
  using M = __m128d;  // all bits set in the lanes where a comparison holds
  static V loadAligned(const double* p) { return _mm_load_pd(p); }
  static V sub(V a, V b) { return _mm_sub_pd(a, b); }
  static V div(V a, V b) { return _mm_div_pd(a, b); }
  static V sqrt(V a) { return _mm_sqrt_pd(a); }
  static M less(V a, V b) { return _mm_cmplt_pd(a, b); }
  static M lessOrEqual(V a, V b) { return _mm_cmple_pd(a, b); }
  static M both(M a, M b) { return _mm_and_pd(a, b); }
  static M either(M a, M b) { return _mm_or_pd(a, b); }
  static bool any(M m) { return _mm_movemask_pd(m) != 0; }
  static V select(M m, V a, V b) { return _mm_or_pd(_mm_and_pd(m, a), _mm_andnot_pd(m, b)); }
  static double horizontalSum(V a) { return _mm_cvtsd_f64(_mm_add_sd(a, _mm_unpackhi_pd(a, a))); }
  static double horizontalMin(V a) { return _mm_cvtsd_f64(_mm_min_sd(a, _mm_unpackhi_pd(a, a))); }
  // 2^n, n in -1022..1023 held in the low bits of the mantissa of `shifted` (n + 0x1.8p52).
  static V powerOfTwo(V shifted) {
    const __m128i bits = _mm_add_epi64(_mm_castpd_si128(shifted), _mm_set1_epi64x(1023));
    return _mm_castsi128_pd(_mm_slli_epi64(bits, 52));
  }
};
#elif defined(SPATIOLA_VECTOR_AVX2)
struct VectorOps {
  using V = __m256d;
  static constexpr int kWidth = 4;
  static V zero() { return _mm256_setzero_pd(); }
  static V load(const double* p) { return _mm256_loadu_pd(p); }
  static void store(double* p, V v) { _mm256_storeu_pd(p, v); }
  static void storeAligned(double* p, V v) { _mm256_store_pd(p, v); }
  static V broadcast(const double* p) { return _mm256_broadcast_sd(p); }
  static V set(double x) { return _mm256_set1_pd(x); }
  static V add(V a, V b) { return _mm256_add_pd(a, b); }
  static V mul(V a, V b) { return _mm256_mul_pd(a, b); }
  static V mulAdd(V a, V b, V c) { return _mm256_fmadd_pd(a, b, c); }
  static V abs(V a) { return _mm256_andnot_pd(_mm256_set1_pd(-0.0), a); }
  static V max(V a, V b) { return _mm256_max_pd(a, b); }
  static V min(V a, V b) { return _mm256_min_pd(a, b); }
  static V negate(V a) { return _mm256_sub_pd(_mm256_setzero_pd(), a); }
  static double horizontalMax(V a) {
    const __m128d half = _mm_max_pd(_mm256_castpd256_pd128(a), _mm256_extractf128_pd(a, 1));
    return _mm_cvtsd_f64(_mm_max_sd(half, _mm_unpackhi_pd(half, half)));
  }
  static V ramp(double first) { return _mm256_set_pd(first + 3, first + 2, first + 1, first); }
  // For the gain law.
  using M = __m256d;  // all bits set in the lanes where a comparison holds
  static V loadAligned(const double* p) { return _mm256_load_pd(p); }
  static V sub(V a, V b) { return _mm256_sub_pd(a, b); }
  static V div(V a, V b) { return _mm256_div_pd(a, b); }
  static V sqrt(V a) { return _mm256_sqrt_pd(a); }
  static M less(V a, V b) { return _mm256_cmp_pd(a, b, _CMP_LT_OQ); }
  static M lessOrEqual(V a, V b) { return _mm256_cmp_pd(a, b, _CMP_LE_OQ); }
  static M both(M a, M b) { return _mm256_and_pd(a, b); }
  static M either(M a, M b) { return _mm256_or_pd(a, b); }
  static bool any(M m) { return _mm256_movemask_pd(m) != 0; }
  static V select(M m, V a, V b) { return _mm256_blendv_pd(b, a, m); }
  static double horizontalSum(V a) {
    const __m128d half = _mm_add_pd(_mm256_castpd256_pd128(a), _mm256_extractf128_pd(a, 1));
    return _mm_cvtsd_f64(_mm_add_sd(half, _mm_unpackhi_pd(half, half)));
  }
  static double horizontalMin(V a) {
    const __m128d half = _mm_min_pd(_mm256_castpd256_pd128(a), _mm256_extractf128_pd(a, 1));
    return _mm_cvtsd_f64(_mm_min_sd(half, _mm_unpackhi_pd(half, half)));
  }
  // 2^n, n in -1022..1023 held in the low bits of the mantissa of `shifted` (n + 0x1.8p52).
  static V powerOfTwo(V shifted) {
    const __m256i bits = _mm256_add_epi64(_mm256_castpd_si256(shifted), _mm256_set1_epi64x(1023));
    return _mm256_castsi256_pd(_mm256_slli_epi64(bits, 52));
  }
};
#elif defined(SPATIOLA_VECTOR_AVX512)
struct VectorOps {
  using V = __m512d;
  static constexpr int kWidth = 8;
  static V zero() { return _mm512_setzero_pd(); }
  static V load(const double* p) { return _mm512_loadu_pd(p); }
  static void store(double* p, V v) { _mm512_storeu_pd(p, v); }
  static void storeAligned(double* p, V v) { _mm512_store_pd(p, v); }
  static V broadcast(const double* p) { return _mm512_set1_pd(*p); }
  static V set(double x) { return _mm512_set1_pd(x); }
  static V add(V a, V b) { return _mm512_add_pd(a, b); }
  static V mul(V a, V b) { return _mm512_mul_pd(a, b); }
  static V mulAdd(V a, V b, V c) { return _mm512_fmadd_pd(a, b, c); }
  static V abs(V a) { return _mm512_abs_pd(a); }
  static V max(V a, V b) { return _mm512_max_pd(a, b); }
  static V min(V a, V b) { return _mm512_min_pd(a, b); }
  static V negate(V a) { return _mm512_sub_pd(_mm512_setzero_pd(), a); }
  static double horizontalMax(V a) { return _mm512_reduce_max_pd(a); }
  static V ramp(double first) {
    return _mm512_add_pd(_mm512_set1_pd(first), _mm512_set_pd(7, 6, 5, 4, 3, 2, 1, 0));
  }
  // For the gain law.
  using M = __mmask8;  // one bit per lane where a comparison holds
  static V loadAligned(const double* p) { return _mm512_load_pd(p); }
  static V sub(V a, V b) { return _mm512_sub_pd(a, b); }
  static V div(V a, V b) { return _mm512_div_pd(a, b); }
  static V sqrt(V a) { return _mm512_sqrt_pd(a); }
  static M less(V a, V b) { return _mm512_cmp_pd_mask(a, b, _CMP_LT_OQ); }
  static M lessOrEqual(V a, V b) { return _mm512_cmp_pd_mask(a, b, _CMP_LE_OQ); }
  static M both(M a, M b) { return static_cast<M>(a & b); }
  static M either(M a, M b) { return static_cast<M>(a | b); }
  static bool any(M m) { return m != 0; }
  static V select(M m, V a, V b) { return _mm512_mask_blend_pd(m, b, a); }
  static double horizontalSum(V a) { return _mm512_reduce_add_pd(a); }
  static double horizontalMin(V a) { return _mm512_reduce_min_pd(a); }
  // 2^n, n in -1022..1023 held in the low bits of the mantissa of `shifted` (n + 0x1.8p52).
  static V powerOfTwo(V shifted) {
    const __m512i bits = _mm512_add_epi64(_mm512_castpd_si512(shifted), _mm512_set1_epi64(1023));
    return _mm512_castsi512_pd(_mm512_slli_epi64(bits, 52));
  }
};
#else
#error "define the instruction set of this kernel file"
#endif

}  // namespace
