// spatiola_engine_bench: the mix against a per-pair loop, a one-thread BLAS product and the core's
// multiply-add peak, the ramp against the steady block, the whole audio routine against the bare
// mix, blocks of a moving scene against steady ones and the gain law against the real-time budget.
// Prints each ratio after the usual table.
#include <benchmark/benchmark.h>
#include <cblas.h>

#include <cmath>
#include <cstdio>

#include "bench/bench_fixture.h"
#include "bench/fma_peak.h"
#include "bench/per_pair_mix.h"
#include "bench/ratio_report.h"
#include "engine/audio_process.h"
#include "engine/gain_law.h"
#include "engine/mix_engine.h"
#include "model/parameters.h"

namespace {

constexpr Shape kDense{64, 64, 512};
constexpr double kBlockBudgetNs = 512.0 / 48000.0 * 1e9;
const char* const kBudget = "budget/512 frames at 48 kHz";

void countMultiplyAdds(benchmark::State& state, Shape shape) {
  state.SetItemsProcessed(state.iterations() * shape.inputs * shape.outputs * shape.frames);
}

void fastMix(benchmark::State& state, Shape shape, MixPath path, bool ramp) {
  MixBuffers buffers(shape);
  const MixKernels& kernels = kernelsFor(path);
  PackedPlan packed(buffers, kernels, ramp);
  const auto mix = ramp ? kernels.mixRamp : kernels.mixSteady;
  for (auto _ : state) {
    mix(packed.plan);
    benchmark::ClobberMemory();
  }
  countMultiplyAdds(state, shape);
}

void perPair(benchmark::State& state, Shape shape) {
  MixBuffers buffers(shape);
  for (auto _ : state) {
    perPairMix(buffers.in.data(), buffers.out.data(), buffers.gains.data(), shape.inputs,
               shape.outputs, shape.frames);
    benchmark::ClobberMemory();
  }
  countMultiplyAdds(state, shape);
}

// out[speaker][frame] = gains[speaker][input] * in[input][frame] on contiguous blocks.
void blasProduct(benchmark::State& state, Shape shape) {
  MixBuffers buffers(shape);
  for (auto _ : state) {
    cblas_dgemm(CblasRowMajor, CblasNoTrans, CblasNoTrans, shape.outputs, shape.frames,
                shape.inputs, 1.0, buffers.gainsBySpeaker.data(), shape.inputs,
                buffers.inputBlock.get(), shape.frames, 0.0, buffers.outputBlock.get(),
                shape.frames);
    benchmark::ClobberMemory();
  }
  countMultiplyAdds(state, shape);
}

// Steady blocks through the host's entry: lock, bookkeeping, masks, meters and the mix.
void wholeBlock(benchmark::State& state, Shape shape) {
  auto plugin = makeBenchInstance(shape.inputs, shape.outputs);
  MixBuffers buffers(shape);
  auto** in = const_cast<double**>(buffers.in.data());
  for (auto _ : state) {
    processDoubleReplacing(&plugin->host.effect, in, buffers.out.data(), shape.frames);
    benchmark::ClobberMemory();
  }
  countMultiplyAdds(state, shape);
  destroyBenchInstance(*plugin);
}

// As many multiply-adds as the dense mix, in registers only.
void fmaPeak(benchmark::State& state, MixPath path) {
  for (auto _ : state) benchmark::DoNotOptimize(fusedMultiplyAddPeak(path));
  countMultiplyAdds(state, kDense);
}

// Every row of a 64 x 64 matrix with diffusion and rotation on every input.
void gainLaw(benchmark::State& state, std::uint32_t optionFlags, MixPath path) {
  auto plugin = makeBenchInstance(64, 64);
  forceMixPath(*plugin, path);
  spreadScene(*plugin, optionFlags);
  for (auto _ : state) {
    computeMarkedInputGains(*plugin, ~std::uint64_t{0});
    benchmark::ClobberMemory();
  }
  destroyBenchInstance(*plugin);
}

// Normalised x of every input before each block, sweeping the room from wall to wall.
class Sweep {
 public:
  Sweep() {
    for (int k = 0; k < kSteps; ++k)
      values_[k] = static_cast<float>(0.5 + 0.5 * std::sin(2.0 * M_PI * k / kSteps));
  }
  float value(int block, int input) const { return values_[(block + 7 * input) % kSteps]; }

 private:
  static constexpr int kSteps = 1000;
  float values_[kSteps];
};

// Whole blocks of the spread scene through the host's entries. Moving: before each block the
// host's automation sets every input's x (setParameter, timed with the block), so every row is
// recomputed and every gain glides.
void sceneBlock(benchmark::State& state, Shape shape, std::uint32_t optionFlags, MixPath path,
                bool moving) {
  auto plugin = makeBenchInstance(shape.inputs, shape.outputs);
  forceMixPath(*plugin, path);
  spreadScene(*plugin, optionFlags);
  MixBuffers buffers(shape);
  auto** in = const_cast<double**>(buffers.in.data());
  AEffect* effect = &plugin->host.effect;
  processDoubleReplacing(effect, in, buffers.out.data(), shape.frames);
  const Sweep sweep;
  int block = 0;
  for (auto _ : state) {
    for (int i = 0; moving && i < shape.inputs; ++i)
      setParameterSlot(effect, kGlobalParameterCount + kParametersPerInput * i + kInX,
                       sweep.value(block, i));
    processDoubleReplacing(effect, in, buffers.out.data(), shape.frames);
    ++block;
    benchmark::ClobberMemory();
  }
  countMultiplyAdds(state, shape);
  destroyBenchInstance(*plugin);
}

std::string mixName(const char* kind, Shape shape, MixPath path) {
  return std::string("mix/") + kind + "/" + shape.label() + "/" + kernelsFor(path).name;
}

// Registers the benchmarks of one kernel path on the dense shape and returns its ratios.
std::vector<Ratio> registerPath(MixPath path) {
  const std::string steady = mixName("steady", kDense, path);
  const std::string ramp = mixName("ramp", kDense, path);
  benchmark::RegisterBenchmark(steady.c_str(), fastMix, kDense, path, false);
  benchmark::RegisterBenchmark(ramp.c_str(), fastMix, kDense, path, true);
  const double held = path == MixPath::Sse2 ? 0.0 : 1.0;  // SSE2 is the fallback: reported only
  const std::string name = kernelsFor(path).name;
  return {{name + ": mix throughput / dgemm", "dgemm/" + kDense.label(), steady, held, true},
          {name + ": mix speed-up over the per-pair loop", "perpair/" + kDense.label(), steady,
           4.0 * held, true},
          {name + ": ramp block / steady block (cost)", ramp, steady, 2.0 * held, false}};
}

std::vector<Ratio> registerProcessCalls(MixPath best) {
  std::vector<Ratio> ratios;
  for (Shape shape : {Shape{2, 6, 512}, Shape{8, 10, 512}, Shape{2, 2, 64}}) {
    const std::string call = "process/" + shape.label();
    const std::string mix = mixName("steady", shape, best);
    benchmark::RegisterBenchmark(call.c_str(), wholeBlock, shape);
    benchmark::RegisterBenchmark(mix.c_str(), fastMix, shape, best, false);
    const double limit = shape.frames == 512 ? 1.5 : 0.0;
    ratios.push_back({"process call / bare mix, " + shape.label(), call, mix, limit, false});
  }
  return ratios;
}

// The spread scene in each influence mode on one path: the gain law alone, steady and moving
// blocks. Held to their targets on the paths a processor ships with (not the SSE2 fallback).
std::vector<Ratio> registerScenes(MixPath path) {
  struct Mode {
    const char* name;
    std::uint32_t flags;
  };
  const double held = path == MixPath::Sse2 ? 0.0 : 1.0;
  const std::string suffix = std::string("/") + kernelsFor(path).name;
  std::vector<Ratio> ratios;
  for (Mode mode :
       {Mode{"absolute", kOptionDefaults}, Mode{"relative", kOptionRelativeInfluence}}) {
    const std::string law = std::string("gainlaw/64x64 spread/") + mode.name + suffix;
    const std::string steady = "scene/steady/" + kDense.label() + "/" + mode.name + suffix;
    const std::string moving = "scene/moving/" + kDense.label() + "/" + mode.name + suffix;
    benchmark::RegisterBenchmark(law.c_str(), gainLaw, mode.flags, path);
    benchmark::RegisterBenchmark(steady.c_str(), sceneBlock, kDense, mode.flags, path, false);
    benchmark::RegisterBenchmark(moving.c_str(), sceneBlock, kDense, mode.flags, path, true);
    const std::string label = kernelsFor(path).name + std::string(", ") + mode.name;
    ratios.push_back(
        {label + ": gain law 64x64 / budget of 512 frames", law, kBudget, 0.10 * held, false});
    ratios.push_back({label + ": moving block / steady block", moving, steady, 2.0 * held, false});
  }
  return ratios;
}

// The fraction of the core's multiply-add peak (its widest vectors) that each path's mix reaches.
std::vector<Ratio> registerPeak() {
  const MixPath widest = processorSupports(MixPath::Avx512) ? MixPath::Avx512 : MixPath::Avx2;
  if (!processorSupports(widest)) return {};
  const std::string peak = std::string("peak/fma/") + kernelsFor(widest).name;
  benchmark::RegisterBenchmark(peak.c_str(), fmaPeak, widest);
  std::vector<Ratio> ratios;
  for (MixPath path : {MixPath::Avx512, MixPath::Avx2, MixPath::Sse2}) {
    if (!processorSupports(path)) continue;
    ratios.push_back({kernelsFor(path).name + std::string(": mix, fraction of the FMA peak"), peak,
                      mixName("steady", kDense, path), 0.0, false});
  }
  return ratios;
}

std::vector<Ratio> registerAll() {
  benchmark::RegisterBenchmark(("perpair/" + kDense.label()).c_str(), perPair, kDense);
  benchmark::RegisterBenchmark(("dgemm/" + kDense.label()).c_str(), blasProduct, kDense);
  std::vector<Ratio> ratios;
  for (MixPath path : {MixPath::Avx512, MixPath::Avx2, MixPath::Sse2}) {
    if (!processorSupports(path)) continue;
    for (Ratio& r : registerPath(path)) ratios.push_back(r);
  }
  for (Ratio& r : registerProcessCalls(bestMixKernels().path)) ratios.push_back(r);
  for (MixPath path : {MixPath::Avx512, MixPath::Avx2, MixPath::Sse2}) {
    if (!processorSupports(path)) continue;
    for (Ratio& r : registerScenes(path)) ratios.push_back(r);
  }
  for (Ratio& r : registerPeak()) ratios.push_back(r);
  return ratios;
}

}  // namespace

int main(int argc, char** argv) {
  openblas_set_num_threads(1);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  std::printf("Mix path of a new instance: %s; OpenBLAS core: %s\n", bestMixKernels().name,
              openblas_get_corename());
  const std::vector<Ratio> ratios = registerAll();
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.record(kBudget, kBlockBudgetNs);
  printRatios(reporter, ratios);
  benchmark::Shutdown();
  return 0;
}
