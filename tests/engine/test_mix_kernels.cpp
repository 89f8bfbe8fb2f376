// Every kernel the processor runs against the plain per-pair formula, over random shapes.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "engine/mix_kernels.h"
#include "engine_fixture.h"

namespace {

struct Shape {
  int inputs, outputs, frames;
};

// Packs a dense [input][output] matrix in the tile layout of the plan.
std::vector<double> pack(const std::vector<double>& dense, int inputs, int outputs, int tileWidth) {
  std::vector<double> packed(dense.size());
  for (int first = 0; first < outputs; first += tileWidth) {
    const int width = std::min(tileWidth, outputs - first);
    const int offset = packedTileOffset(first / tileWidth, tileWidth, inputs);
    for (int k = 0; k < inputs; ++k) {
      for (int s = 0; s < width; ++s) {
        packed[static_cast<std::size_t>(offset + k * width + s)] =
            dense[static_cast<std::size_t>(k * outputs + first + s)];
      }
    }
  }
  return packed;
}

struct KernelRun {
  Channels out;
  std::vector<double> peaks;
};

KernelRun runKernel(const MixKernels& kernels, const Channels& in, const std::vector<double>& gains,
                    const std::vector<double>* steps, int outputs, int frames) {
  const int inputs = static_cast<int>(in.size());
  const int width = steps ? kernels.rampTileWidth : kernels.steadyTileWidth;
  const auto packedGains = pack(gains, inputs, outputs, width);
  const auto packedSteps = steps ? pack(*steps, inputs, outputs, width) : std::vector<double>();
  KernelRun run{Channels(static_cast<std::size_t>(outputs),
                         std::vector<double>(static_cast<std::size_t>(frames), 99.0)),
                std::vector<double>(static_cast<std::size_t>(outputs), 0.0)};
  MixPlan plan;
  plan.inputCount = inputs;
  plan.outputCount = outputs;
  plan.frames = frames;
  for (int k = 0; k < inputs; ++k) plan.inputs[k] = in[static_cast<std::size_t>(k)].data();
  for (int j = 0; j < outputs; ++j) plan.outputs[j] = run.out[static_cast<std::size_t>(j)].data();
  plan.tileWidth = width;
  plan.gains = packedGains.data();
  plan.steps = steps ? packedSteps.data() : nullptr;
  const auto scratch = std::make_unique<MixScratch>();
  plan.scratch = scratch->samples;
  plan.outputPeaks = run.peaks.data();
  (steps ? kernels.mixRamp : kernels.mixSteady)(plan);
  return run;
}

const std::vector<Shape> kShapes = {{1, 1, 1},   {1, 1, 7},     {2, 6, 512},   {3, 5, 13},
                                    {7, 3, 100}, {64, 64, 512}, {63, 64, 255}, {64, 63, 61},
                                    {1, 64, 33}, {64, 1, 19},   {5, 9, 0},     {0, 4, 16}};

const MixKernels& kernelsFor(MixPath path) {
  return path == MixPath::Avx512 ? avx512MixKernels()
         : path == MixPath::Avx2 ? avx2MixKernels()
                                 : sse2MixKernels();
}

}  // namespace

TEST(MixKernels, EveryPathMatchesThePerPairFormula) {
  std::mt19937 random(1234);
  std::uniform_real_distribution<double> sample(-1.0, 1.0);
  std::uniform_real_distribution<double> level(0.0, 4.0);
  for (MixPath path : supportedPaths()) {
    for (bool ramp : {false, true}) {
      for (const Shape& shape : kShapes) {
        SCOPED_TRACE(testing::Message()
                     << pathName(path) << (ramp ? " ramp " : " steady ") << shape.inputs << "x"
                     << shape.outputs << "x" << shape.frames);
        Channels in(static_cast<std::size_t>(shape.inputs),
                    std::vector<double>(static_cast<std::size_t>(shape.frames)));
        for (auto& channel : in) {
          for (double& x : channel) x = sample(random);
        }
        std::vector<double> gains(static_cast<std::size_t>(shape.inputs * shape.outputs));
        std::vector<double> steps(gains.size());
        for (double& g : gains) g = level(random);
        for (double& d : steps) d = (level(random) - 2.0) / 512;
        const KernelRun run = runKernel(kernelsFor(path), in, gains, ramp ? &steps : nullptr,
                                        shape.outputs, shape.frames);
        for (int j = 0; j < shape.outputs; ++j) {
          double peak = 0.0;
          for (int n = 0; n < shape.frames; ++n) {
            double expected = 0.0;
            double scale = 0.0;
            for (int k = 0; k < shape.inputs; ++k) {
              const std::size_t cell = static_cast<std::size_t>(k * shape.outputs + j);
              const double g = gains[cell] + (ramp ? (n + 1.0) * steps[cell] : 0.0);
              expected += in[static_cast<std::size_t>(k)][static_cast<std::size_t>(n)] * g;
              scale += std::fabs(in[static_cast<std::size_t>(k)][static_cast<std::size_t>(n)] * g);
            }
            const double actual = run.out[static_cast<std::size_t>(j)][static_cast<std::size_t>(n)];
            ASSERT_NEAR(actual, expected, 1e-14 * (scale + 1e-300))
                << "output " << j << " frame " << n;
            peak = std::max(peak, std::fabs(actual));
          }
          EXPECT_EQ(run.peaks[static_cast<std::size_t>(j)], peak) << "output " << j;
        }
      }
    }
  }
}

TEST(MixKernels, BaselineWithoutFusedMultiplyAddIsBitExact) {
  const Channels in = {{0.1, 0.2, 0.3, 0.7, -0.5}, {1e-3, -2.5, 0.25, 3.0, 0.125}};
  const std::vector<double> gains = {0.3, 1.7, 2.2, 0.01};  // [input][output]
  const KernelRun run = runKernel(sse2MixKernels(), in, gains, nullptr, 2, 5);
  for (int j = 0; j < 2; ++j) {
    for (int n = 0; n < 5; ++n) {
      double sum = 0.0;
      for (int k = 0; k < 2; ++k)
        sum += in[static_cast<std::size_t>(k)][static_cast<std::size_t>(n)] *
               gains[static_cast<std::size_t>(k * 2 + j)];
      EXPECT_EQ(run.out[static_cast<std::size_t>(j)][static_cast<std::size_t>(n)], sum);
    }
  }
}

TEST(MixKernels, ThePreferredPathIsTheWidestTheProcessorRuns) {
  const MixKernels& best = bestMixKernels();
  EXPECT_TRUE(processorSupports(best.path));
  if (processorSupports(MixPath::Avx2)) {
    EXPECT_NE(best.path, MixPath::Sse2);
  }
  if (!processorSupports(MixPath::Avx512)) {
    std::cout
        << "[ INFO ] this processor has no AVX-512: that path is built but not exercised here\n";
  }
}
