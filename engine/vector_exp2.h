// 2^x on whole vectors: the relative law's 2^(-4 d) for a vector of speakers at once. Included by
// a kernel file that defines its SPATIOLA_VECTOR_ macro; internal linkage, like vector_ops.h.
#pragma once

#include "engine/vector_ops.h"

namespace {

// Taylor coefficients of 2^f = e^(f ln 2): on |f| <= 1/2 the terms past the 13th power add less
// than 1e-17 relative.
constexpr int kExp2Degree = 13;

struct Exp2Coefficients {
  double c[kExp2Degree + 1];
};

constexpr Exp2Coefficients exp2Coefficients() {
  constexpr double kLn2 = 0.693147180559945309417232121458176568;
  Exp2Coefficients result{};
  result.c[0] = 1.0;
  for (int k = 1; k <= kExp2Degree; ++k) result.c[k] = result.c[k - 1] * kLn2 / k;
  return result;
}

constexpr Exp2Coefficients kExp2 = exp2Coefficients();
static_assert(kExp2.c[1] == 0.6931471805599453 && kExp2.c[2] > 0.2402265 && kExp2.c[2] < 0.2402266);

// 2^x within a few ulp for x <= 1023 under round-to-nearest. Results below the normal range
// (x < -1022, -inf included) are 0, as the audio routine flushes them anyway. x is split into the
// nearest integer n, which goes into the exponent, and f = x - n in [-1/2, 1/2].
inline VectorOps::V exp2Vector(VectorOps::V x) {
  using Ops = VectorOps;
  constexpr double kRoundingShift = 0x1.8p52;  // adding it leaves round(x) in the low bits
  constexpr double kLowest = -1022.0;
  const Ops::V clamped = Ops::max(x, Ops::set(kLowest));
  const Ops::V shifted = Ops::add(clamped, Ops::set(kRoundingShift));
  const Ops::V f = Ops::sub(clamped, Ops::sub(shifted, Ops::set(kRoundingShift)));
  Ops::V p = Ops::set(kExp2.c[kExp2Degree]);
  for (int k = kExp2Degree - 1; k >= 0; --k) p = Ops::mulAdd(p, f, Ops::set(kExp2.c[k]));
  const Ops::V result = Ops::mul(p, Ops::powerOfTwo(shifted));
  return Ops::select(Ops::less(x, Ops::set(kLowest)), Ops::zero(), result);
}

}  // namespace
