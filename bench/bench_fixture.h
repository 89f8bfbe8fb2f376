// Buffers, gains and instances shared by the engine's benchmarks.
#pragma once

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "engine/mix_kernels.h"
#include "model/panner_plugin.h"

struct Shape {
  int inputs;
  int outputs;
  int frames;
  std::string label() const;  // "64x64x512"
};

struct FreeDeleter {
  void operator()(double* p) const { std::free(p); }
};

// One contiguous, cache-line aligned block per direction, as a matrix product wants it, with
// channel pointers into it for the mixes; random samples and gains in the audio range.
class MixBuffers {
 public:
  explicit MixBuffers(Shape shape);
  Shape shape;
  std::unique_ptr<double[], FreeDeleter> inputBlock;   // [input][frame]
  std::unique_ptr<double[], FreeDeleter> outputBlock;  // [output][frame]
  std::vector<const double*> in;
  std::vector<double*> out;
  std::vector<double> gains;           // [input][output]
  std::vector<double> steps;           // [input][output], non-zero: every gain ramps
  std::vector<double> gainsBySpeaker;  // [output][input], for the matrix product
};

// A plan over every pair of the buffers, packed for `kernels`; owns its packed gains.
class PackedPlan {
 public:
  PackedPlan(MixBuffers& buffers, const MixKernels& kernels, bool ramp);
  MixPlan plan;

 private:
  std::vector<double> packedGains_;
  std::vector<double> packedSteps_;
  std::vector<double> peaks_;
  std::unique_ptr<MixScratch> scratch_ = std::make_unique<MixScratch>();
};

// An instance with `inputs` inputs and `outputs` speakers of a generated layout, its engine made
// and its matrices settled by one block. Destroy with destroyBenchInstance.
std::unique_ptr<PannerPlugin> makeBenchInstance(int inputs, int outputs);
void destroyBenchInstance(PannerPlugin& plugin);

// Every input diffused, biased and turned differently, the speakers on the plug-in's ring (radius
// 0.5, influence 0.5), `optionFlags` as given; all rows marked dirty.
void spreadScene(PannerPlugin& plugin, std::uint32_t optionFlags);

const MixKernels& kernelsFor(MixPath path);
