// The gain law as the vector kernels see it: the room's speakers prepared once per block, one
// input's constants per row, and the kernels of each instruction set.
#pragma once

#include "engine/gain_law_constants.h"
#include "engine/mix_kernels.h"
#include "model/channels.h"

// The speakers, one array per quantity, padded with lanes that take no part in the panning. The
// settings of the room that the law reads are folded in.
struct LawScene {
  int speakers = 0;
  bool relative = false;               // the relative law; else the absolute one
  bool normalises = false;             // the panned gains of an input are divided by their sum
  double walls[3] = {};                // 2 * room scale: x, y, z
  alignas(64) double x[kMaxSpeakers];  // position scaled by the room
  alignas(64) double y[kMaxSpeakers];
  alignas(64) double z[kMaxSpeakers];
  alignas(64) double reach[kMaxSpeakers];  // kDeadZoneDivisor * influence
  alignas(64) double trim[kMaxSpeakers];   // the centre trim's factor, 1 outside its band
  alignas(64) double gain[kMaxSpeakers];
  alignas(64) double panned[kMaxSpeakers];  // 1 for a panned speaker, 0 for LFE and padding
};

// One input's constants for a row.
struct LawInput {
  double x;
  double y;
  double z;
  bool diffused;  // diffuse != 0: distances are to the edge of a diamond
  bool turned;    // the diamond is turned by diffuseAngle * pi
  double cosTurn;
  double sinTurn;
  double halfDepth;    // a: the diamond's half-diagonal along y
  double halfWidth;    // b: along x
  double inverseSpan;  // 1 / (a^2 + b^2)
  double lfeValue;     // what every LFE speaker gets before the gains
  double gain;
};

struct GainLawKernels {
  MixPath path;
  const char* name;
  // Writes row[0 .. scene.speakers - 1].
  void (*computeRow)(const LawScene& scene, const LawInput& input, double* row);
  // [tests] result[k] = 2^x[k] as the relative law computes it, for k < count.
  void (*powersOfTwo)(const double* x, double* result, int count);
};

const GainLawKernels& sse2GainLawKernels();
const GainLawKernels& avx2GainLawKernels();
const GainLawKernels& avx512GainLawKernels();
const GainLawKernels& gainLawKernelsFor(MixPath path);
