// The panning law for a vector of speakers at a time, written once for every instruction set: the
// law of gain_law_scalar.cpp lane by lane. The diamond is turned by the input's cosine and sine
// instead of an angle per speaker, and 2^(-4 d) comes from vector_exp2.h.
//
// Included by one file per instruction set, which first defines its SPATIOLA_VECTOR_ macro;
// everything here has internal linkage (see vector_ops.h).
#pragma once

#include "engine/gain_law_kernels.h"
#include "engine/vector_exp2.h"
#include "engine/vector_ops.h"

namespace {

using Ops = VectorOps;
using Vec = Ops::V;
using Mask = Ops::M;
constexpr int kWidth = Ops::kWidth;
constexpr double kOutOfReach = __builtin_inf();
static_assert(kMaxSpeakers % kWidth == 0, "the scene's arrays hold whole vectors");

// One input's constants in every lane.
struct InputLanes {
  explicit InputLanes(const LawInput& in)
      : x(Ops::set(in.x)),
        y(Ops::set(in.y)),
        z(Ops::set(in.z)),
        cosTurn(Ops::set(in.cosTurn)),
        sinTurn(Ops::set(in.sinTurn)),
        a(Ops::set(in.halfDepth)),
        b(Ops::set(in.halfWidth)),
        inverseSpan(Ops::set(in.inverseSpan)) {}
  Vec x, y, z, cosTurn, sinTurn, a, b, inverseSpan;
};

struct Offsets {
  Vec dx, dy, dz;
};

// From the input to the speakers s .. s + kWidth - 1.
inline Offsets offsetsAt(const LawScene& scene, int s, const InputLanes& in) {
  return {Ops::sub(Ops::loadAligned(scene.x + s), in.x),
          Ops::sub(Ops::loadAligned(scene.y + s), in.y),
          Ops::sub(Ops::loadAligned(scene.z + s), in.z)};
}

inline Mask pannedAt(const LawScene& scene, int s) {
  return Ops::less(Ops::zero(), Ops::loadAligned(scene.panned + s));
}

inline Vec square(Vec a) {
  return Ops::mul(a, a);
}

struct PointDistance {
  Vec operator()(const Offsets& o, const InputLanes& /*in*/) const {
    return Ops::sqrt(Ops::add(Ops::add(square(o.dx), square(o.dy)), square(o.dz)));
  }
};

// From the edge of the input's diamond (half-diagonals a along y, b along x); height only adds.
template <bool Turned>
struct DiamondDistance {
  Vec operator()(const Offsets& o, const InputLanes& in) const {
    const Vec h2 = Ops::add(square(o.dx), square(o.dy));
    const Vec h = Ops::sqrt(h2);
    const Vec v = Ops::sub(Ops::sqrt(Ops::add(h2, square(o.dz))), h);
    Vec dx = o.dx;
    Vec dy = o.dy;
    if constexpr (Turned) {
      dx = Ops::sub(Ops::mul(o.dx, in.cosTurn), Ops::mul(o.dy, in.sinTurn));
      dy = Ops::add(Ops::mul(o.dx, in.sinTurn), Ops::mul(o.dy, in.cosTurn));
    }
    const Vec ax = Ops::abs(dx);
    const Vec ay = Ops::abs(dy);
    // u places the nearest point along the edge from (0, a) to (b, 0): before its start the
    // corner (0, a) is nearest, past its end the corner (b, 0); from inside only height counts.
    const Vec ey = Ops::sub(ay, in.a);
    const Vec u = Ops::mul(Ops::sub(Ops::mul(ax, in.b), Ops::mul(in.a, ey)), in.inverseSpan);
    const Vec qx = Ops::sub(Ops::mul(in.b, u), ax);
    const Vec qy = Ops::sub(Ops::sub(in.a, Ops::mul(u, in.a)), ay);
    const Mask outside = Ops::both(Ops::less(qx, Ops::zero()), Ops::less(qy, Ops::zero()));
    Vec squared = Ops::select(outside, Ops::add(square(qx), square(qy)), Ops::zero());
    squared = Ops::select(Ops::less(u, Ops::zero()), Ops::add(square(ey), square(ax)), squared);
    squared = Ops::select(Ops::less(Ops::set(1.0), u),
                          Ops::add(square(ay), square(Ops::sub(ax, in.b))), squared);
    return Ops::add(Ops::sqrt(squared), v);
  }
};

// The distance past the dead zone in units of the speaker's reach (kDeadZoneDivisor * influence);
// a speaker without reach, or a distance without end, is out of reach.
inline Vec reachDistance(Vec r, Vec reach) {
  const Vec beyond =
      Ops::select(Ops::less(Ops::set(kDeadZone), r), Ops::sub(r, Ops::set(kDeadZone)), Ops::zero());
  const Mask reachable =
      Ops::both(Ops::less(Ops::zero(), reach), Ops::less(beyond, Ops::set(kOutOfReach)));
  return Ops::select(reachable, Ops::div(beyond, reach), Ops::set(kOutOfReach));
}

// Each speaker's distance into d; returns the smallest, the panned speakers' only.
template <class Distance>
double measureDistances(const LawScene& scene, const InputLanes& in, double* d) {
  Vec nearest = Ops::set(kOutOfReach);
  for (int s = 0; s < scene.speakers; s += kWidth) {
    const Vec r = Distance()(offsetsAt(scene, s, in), in);
    const Vec ds =
        Ops::select(pannedAt(scene, s), reachDistance(r, Ops::loadAligned(scene.reach + s)),
                    Ops::set(kOutOfReach));
    Ops::storeAligned(d + s, ds);
    nearest = Ops::min(ds, nearest);
  }
  return Ops::horizontalMin(nearest);
}

// Speakers against a wall fade out as the input reaches the opposite wall: e = |offset| on one
// axis against the wall's distance W = 2 * room scale.
inline Vec wallFade(Vec f, Vec e, double wall) {
  const Vec fading = Ops::mul(f, Ops::mul(Ops::sub(Ops::set(wall), e), Ops::set(1.0 / kNear)));
  const Vec faded = Ops::select(Ops::less(e, Ops::set(wall)), fading, Ops::zero());
  return Ops::select(Ops::lessOrEqual(e, Ops::set(wall - kNear)), f, faded);
}

// Most vectors of speakers have none within kNear of the far wall: they skip the fades.
inline Vec wallFades(const LawScene& scene, const Offsets& o, Vec f) {
  const Vec ex = Ops::abs(o.dx);
  const Vec ey = Ops::abs(o.dy);
  const Vec ez = Ops::abs(o.dz);
  const Mask near = Ops::either(Ops::either(Ops::less(Ops::set(scene.walls[0] - kNear), ex),
                                            Ops::less(Ops::set(scene.walls[1] - kNear), ey)),
                                Ops::less(Ops::set(scene.walls[2] - kNear), ez));
  if (!Ops::any(near)) return f;
  f = wallFade(f, ex, scene.walls[0]);
  f = wallFade(f, ey, scene.walls[1]);
  return wallFade(f, ez, scene.walls[2]);
}

inline Vec relativeWeight(const LawScene& scene, const Offsets& o, Vec d, Vec nearFade) {
  const Vec f = Ops::select(Ops::less(d, Ops::set(kNear)), Ops::set(1.0), nearFade);
  return Ops::mul(wallFades(scene, o, f), exp2Vector(Ops::mul(Ops::set(-kRelativeSlope), d)));
}

// The distances in w become the trimmed weights; returns their sum.
double weigh(const LawScene& scene, const InputLanes& in, double dmin, double* w) {
  // Within kNear of some speaker, the speakers that are not that close fade out with the input.
  const Vec nearFade = Ops::set(dmin >= kNear ? 1.0 : dmin / kNear);
  Vec total = Ops::zero();
  for (int s = 0; s < scene.speakers; s += kWidth) {
    const Vec d = Ops::loadAligned(w + s);
    Vec weight = scene.relative ? relativeWeight(scene, offsetsAt(scene, s, in), d, nearFade)
                                : Ops::max(Ops::zero(), Ops::sub(Ops::set(1.0), d));
    weight = Ops::mul(weight, Ops::loadAligned(scene.trim + s));
    weight = Ops::select(pannedAt(scene, s), weight, Ops::zero());
    Ops::storeAligned(w + s, weight);
    total = Ops::add(total, weight);
  }
  return Ops::horizontalSum(total);
}

// Normalised (LFE speakers never are), both gains applied, anything not finite silenced.
void writeRow(const LawScene& scene, const LawInput& input, double total, const double* w,
              double* row) {
  const bool divide = scene.normalises && total != 1.0 && total > 0.0;
  const Vec divisor = Ops::set(divide ? total : 1.0);
  const Vec lfeValue = Ops::set(input.lfeValue);
  const Vec inputGain = Ops::set(input.gain);
  for (int s = 0; s < scene.speakers; s += kWidth) {
    Vec value =
        Ops::select(pannedAt(scene, s), Ops::div(Ops::loadAligned(w + s), divisor), lfeValue);
    value = Ops::mul(value, Ops::mul(Ops::loadAligned(scene.gain + s), inputGain));
    value = Ops::select(Ops::less(Ops::abs(value), Ops::set(kOutOfReach)), value, Ops::zero());
    if (s + kWidth <= scene.speakers) {
      Ops::store(row + s, value);
    } else {
      alignas(64) double lanes[kWidth];
      Ops::storeAligned(lanes, value);
      for (int k = 0; s + k < scene.speakers; ++k) row[s + k] = lanes[k];
    }
  }
}

void powersOfTwo(const double* x, double* result, int count) {
  for (int k = 0; k < count; k += kWidth) {
    alignas(64) double lanes[kWidth] = {};
    for (int j = 0; j < kWidth && k + j < count; ++j) lanes[j] = x[k + j];
    Ops::storeAligned(lanes, exp2Vector(Ops::loadAligned(lanes)));
    for (int j = 0; j < kWidth && k + j < count; ++j) result[k + j] = lanes[j];
  }
}

void computeRow(const LawScene& scene, const LawInput& input, double* row) {
  alignas(64) double lanes[kMaxSpeakers];  // the distances, then the weights
  const InputLanes in(input);
  const double dmin = !input.diffused ? measureDistances<PointDistance>(scene, in, lanes)
                      : input.turned  ? measureDistances<DiamondDistance<true>>(scene, in, lanes)
                                      : measureDistances<DiamondDistance<false>>(scene, in, lanes);
  writeRow(scene, input, weigh(scene, in, dmin, lanes), lanes, row);
}

}  // namespace
