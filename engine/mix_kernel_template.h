// The output-stationary mix, written once for every instruction set. A tile of speakers x sample
// vectors stays in registers while the loop runs over all inputs; sample chunks are outermost so
// that each chunk of every input stays in the first-level cache while all tiles read it. With many
// inputs each chunk is first copied into the plan's scratch rows: host buffers a page apart would
// otherwise all fall into the same few cache sets and evict each other.
//
// Included by one file per instruction set after vector_ops.h and the tile constants
// kSteadySpeakers, kSteadyVectors, kRampSpeakers, kRampVectors and kChunkFrames; everything here
// has internal linkage (see vector_ops.h).
#pragma once

#include "engine/mix_plan.h"

namespace {

using Ops = VectorOps;
using Vec = Ops::V;
constexpr int kWidth = Ops::kWidth;

// Local helpers instead of library templates: a library function instantiated in a file compiled
// for a wide instruction set could be shared by the linker with the baseline kernels.
inline int smaller(int a, int b) {
  return a < b ? a : b;
}
inline double larger(double a, double b) {
  return a < b ? b : a;
}
inline double magnitude(double a) {
  return a < 0 ? -a : a;
}

static_assert(kChunkFrames <= kMixScratchFrames && kChunkFrames % kWidth == 0);

struct TileJob {
  const MixPlan* plan;
  const double* const* rows;  // samples of each input, frame `rowOrigin` first
  int rowOrigin;
  const double* gains;    // this tile's packed gains, [input][speaker of the tile]
  const double* strides;  // kWidth steps of each of these gains
  double* const* outputs;
  Vec* highs;  // running maximum and minimum of each output: no sign mask has to stay in a
  Vec* lows;   // register while the tile runs
};

// The register tile's loops must be unrolled whatever the optimisation level: only then do the
// accumulators live in registers.
#define SPATIOLA_TILE_LOOP _Pragma("GCC unroll 16")

template <int S, int V>
inline void clearTile(Vec (&acc)[S][V]) {
  SPATIOLA_TILE_LOOP
  for (int s = 0; s < S; ++s) {
    SPATIOLA_TILE_LOOP
    for (int v = 0; v < V; ++v) acc[s][v] = Ops::zero();
  }
}

template <int V>
inline void loadSamples(Vec (&xv)[V], const double* x) {
  SPATIOLA_TILE_LOOP
  for (int v = 0; v < V; ++v) xv[v] = Ops::load(x + v * kWidth);
}

template <int S, int V>
inline void storeTile(const TileJob& job, int n0, const Vec (&acc)[S][V]) {
  SPATIOLA_TILE_LOOP
  for (int s = 0; s < S; ++s) {
    SPATIOLA_TILE_LOOP
    for (int v = 0; v < V; ++v) {
      Ops::store(job.outputs[s] + n0 + v * kWidth, acc[s][v]);
      job.highs[s] = Ops::max(acc[s][v], job.highs[s]);  // a NaN leaves both as they are
      job.lows[s] = Ops::min(acc[s][v], job.lows[s]);
    }
  }
}

// Every input summed into S outputs over V vectors of samples from n0, in input order.
template <int S, int V>
inline void steadySpan(const TileJob& job, int n0) {
  Vec acc[S][V];
  clearTile(acc);
  const MixPlan& plan = *job.plan;
  const double* g = job.gains;
  for (int k = 0; k < plan.inputCount; ++k, g += S) {
    Vec xv[V];
    loadSamples(xv, job.rows[k] + (n0 - job.rowOrigin));
    SPATIOLA_TILE_LOOP
    for (int s = 0; s < S; ++s) {
      const Vec gain = Ops::broadcast(g + s);
      SPATIOLA_TILE_LOOP
      for (int v = 0; v < V; ++v) acc[s][v] = Ops::mulAdd(xv[v], gain, acc[s][v]);
    }
  }
  storeTile(job, n0, acc);
}

// As steadySpan with the gain of sample n at applied + (n + 1) * step. Only the first vector's
// gains take a multiply-add; the next vectors add a stride of kWidth steps, which runs on the
// adders while the multiply-add units accumulate. (n + 1) / kWidth * stride is exactly
// (n + 1) * step: both factors are scaled by a power of two.
template <int S, int V>
inline void rampSpan(const TileJob& job, int n0) {
  Vec acc[S][V];
  clearTile(acc);
  const Vec position = Ops::mul(Ops::ramp(n0 + 1.0), Ops::set(1.0 / kWidth));
  const MixPlan& plan = *job.plan;
  const double* g = job.gains;
  const double* d = job.strides;
  for (int k = 0; k < plan.inputCount; ++k, g += S, d += S) {
    Vec xv[V];
    loadSamples(xv, job.rows[k] + (n0 - job.rowOrigin));
    SPATIOLA_TILE_LOOP
    for (int s = 0; s < S; ++s) {
      const Vec stride = Ops::broadcast(d + s);
      Vec gain = Ops::mulAdd(position, stride, Ops::broadcast(g + s));
      SPATIOLA_TILE_LOOP
      for (int v = 0; v < V; ++v) {
        acc[s][v] = Ops::mulAdd(xv[v], gain, acc[s][v]);
        gain = Ops::add(gain, stride);
      }
    }
  }
  storeTile(job, n0, acc);
}

// Spans of V vectors, then of half as many for what is left, down to single vectors.
template <bool Ramp, int S, int V>
void tileRange(const TileJob& job, int begin, int end) {
  int n = begin;
  for (; n + V * kWidth <= end; n += V * kWidth) {
    if constexpr (Ramp) {
      rampSpan<S, V>(job, n);
    } else {
      steadySpan<S, V>(job, n);
    }
  }
  if constexpr (V > 1) tileRange<Ramp, S, V / 2>(job, n, end);
}

// Tiles are as wide as the instruction set allows; the last one takes what is left.
template <bool Ramp, int MaxS, int V>
void tileRangeOfWidth(int width, const TileJob& job, int begin, int end) {
  if constexpr (MaxS > 0) {
    if (width == MaxS) {
      tileRange<Ramp, MaxS, V>(job, begin, end);
    } else {
      tileRangeOfWidth<Ramp, MaxS - 1, V>(width, job, begin, end);
    }
  }
}

// The last frames that do not fill a vector, pair by pair in input order.
template <bool Ramp>
void scalarTail(const MixPlan& plan, int begin) {
  for (int j = 0; j < plan.outputCount; ++j) {
    const int tile = j / plan.tileWidth;
    const int width = smaller(plan.tileWidth, plan.outputCount - tile * plan.tileWidth);
    const int base = packedTileOffset(tile, plan.tileWidth, plan.inputCount) + j % plan.tileWidth;
    double peak = plan.outputPeaks[j];
    for (int n = begin; n < plan.frames; ++n) {
      double sum = 0.0;
      for (int k = 0; k < plan.inputCount; ++k) {
        double gain = plan.gains[base + k * width];
        if constexpr (Ramp) gain += (n + 1.0) * plan.steps[base + k * width];
        sum += plan.inputs[k][n] * gain;
      }
      plan.outputs[j][n] = sum;
      peak = larger(peak, magnitude(sum));
    }
    plan.outputPeaks[j] = peak;
  }
}

// Few inputs share the cache without conflicts: they are read where they are.
constexpr int kCopyFromInputs = 9;

// Frames [begin, end) of every input into its scratch row.
void copyChunk(const MixPlan& plan, int begin, int end) {
  for (int k = 0; k < plan.inputCount; ++k) {
    const double* from = plan.inputs[k] + begin;
    double* to = plan.scratch->samples + k * kMixScratchFrames;
    for (int n = 0; n < end - begin; n += kWidth) Ops::storeAligned(to + n, Ops::load(from + n));
  }
}

// Every tile over frames [begin, end), reading the inputs from `rows` (frame `rowOrigin` first).
template <bool Ramp>
void mixChunk(const MixPlan& plan, const double* const* rows, int rowOrigin, Vec* highs, Vec* lows,
              int begin, int end) {
  constexpr int kTileSpeakers = Ramp ? kRampSpeakers : kSteadySpeakers;
  constexpr int kTileVectors = Ramp ? kRampVectors : kSteadyVectors;
  for (int first = 0; first < plan.outputCount; first += plan.tileWidth) {
    const int offset = packedTileOffset(first / plan.tileWidth, plan.tileWidth, plan.inputCount);
    const TileJob job{&plan,
                      rows,
                      rowOrigin,
                      plan.gains + offset,
                      Ramp ? plan.scratch->strides + offset : nullptr,
                      plan.outputs + first,
                      highs + first,
                      lows + first};
    const int width = smaller(plan.tileWidth, plan.outputCount - first);
    tileRangeOfWidth<Ramp, kTileSpeakers, kTileVectors>(width, job, begin, end);
  }
}

// kWidth steps of every packed pair, computed once for the block instead of once per span.
void prepareStrides(const MixPlan& plan) {
  const int pairs = plan.inputCount * plan.outputCount;
  double* strides = plan.scratch->strides;
  int k = 0;
  for (; k + kWidth <= pairs; k += kWidth)
    Ops::storeAligned(strides + k, Ops::mul(Ops::load(plan.steps + k), Ops::set(kWidth)));
  for (; k < pairs; ++k) strides[k] = plan.steps[k] * kWidth;
}

template <bool Ramp>
void mix(const MixPlan& plan) {
  if constexpr (Ramp) prepareStrides(plan);
  Vec highs[kMaxSpeakers];
  Vec lows[kMaxSpeakers];
  for (int j = 0; j < plan.outputCount; ++j) highs[j] = lows[j] = Ops::zero();
  const bool copying = plan.inputCount >= kCopyFromInputs;
  const double* scratchRows[kMaxInputs];
  for (int k = 0; copying && k < plan.inputCount; ++k)
    scratchRows[k] = plan.scratch->samples + k * kMixScratchFrames;
  const int vectorEnd = plan.frames - plan.frames % kWidth;
  for (int begin = 0; begin < vectorEnd; begin += kChunkFrames) {
    const int end = smaller(begin + kChunkFrames, vectorEnd);
    if (copying) copyChunk(plan, begin, end);
    mixChunk<Ramp>(plan, copying ? scratchRows : plan.inputs, copying ? begin : 0, highs, lows,
                   begin, end);
  }
  for (int j = 0; j < plan.outputCount; ++j)
    plan.outputPeaks[j] =
        larger(plan.outputPeaks[j], Ops::horizontalMax(Ops::max(highs[j], Ops::negate(lows[j]))));
  scalarTail<Ramp>(plan, vectorEnd);
}

// The largest |sample| of a channel; NaN samples are passed over.
double largestMagnitude(const double* samples, int frames) {
  constexpr int kLanes = 4;
  Vec peak[kLanes] = {Ops::zero(), Ops::zero(), Ops::zero(), Ops::zero()};
  int n = 0;
  for (; n + kLanes * kWidth <= frames; n += kLanes * kWidth) {
    SPATIOLA_TILE_LOOP
    for (int v = 0; v < kLanes; ++v)
      peak[v] = Ops::max(Ops::abs(Ops::load(samples + n + v * kWidth)), peak[v]);
  }
  for (; n + kWidth <= frames; n += kWidth)
    peak[0] = Ops::max(Ops::abs(Ops::load(samples + n)), peak[0]);
  double result =
      Ops::horizontalMax(Ops::max(Ops::max(peak[0], peak[1]), Ops::max(peak[2], peak[3])));
  for (; n < frames; ++n) result = larger(result, magnitude(samples[n]));
  return result;
}

void rampSteps(const double* target, const double* applied, double* steps, int cells, int frames) {
  const Vec divisor = Ops::set(frames);
  int k = 0;
  for (; k + kWidth <= cells; k += kWidth)
    Ops::store(steps + k,
               Ops::div(Ops::sub(Ops::load(target + k), Ops::load(applied + k)), divisor));
  for (; k < cells; ++k) steps[k] = (target[k] - applied[k]) / frames;
}

void mixSteady(const MixPlan& plan) {
  mix<false>(plan);
}
void mixRamp(const MixPlan& plan) {
  mix<true>(plan);
}

}  // namespace
