#include "bench/bench_fixture.h"

#include <random>

#include "engine/audio_process.h"
#include "model/counts.h"
#include "model/layouts.h"

namespace {

double* alignedBlock(int count) {
  const std::size_t bytes = (sizeof(double) * static_cast<std::size_t>(count) + 63) / 64 * 64;
  return static_cast<double*>(std::aligned_alloc(64, bytes > 0 ? bytes : 64));
}

void fill(double* begin, std::size_t count, std::mt19937& random, double low, double high) {
  std::uniform_real_distribution<double> value(low, high);
  for (std::size_t k = 0; k < count; ++k) begin[k] = value(random);
}

// [input][output] gains in the tile layout the kernels read.
std::vector<double> pack(const std::vector<double>& dense, Shape shape, int tileWidth) {
  std::vector<double> packed(dense.size());
  for (int first = 0; first < shape.outputs; first += tileWidth) {
    const int width = std::min(tileWidth, shape.outputs - first);
    const int offset = packedTileOffset(first / tileWidth, tileWidth, shape.inputs);
    for (int k = 0; k < shape.inputs; ++k) {
      for (int s = 0; s < width; ++s)
        packed[offset + k * width + s] = dense[k * shape.outputs + first + s];
    }
  }
  return packed;
}

}  // namespace

std::string Shape::label() const {
  return std::to_string(inputs) + "x" + std::to_string(outputs) + "x" + std::to_string(frames);
}

MixBuffers::MixBuffers(Shape s)
    : shape(s),
      inputBlock(alignedBlock(s.inputs * s.frames)),
      outputBlock(alignedBlock(s.outputs * s.frames)),
      gains(static_cast<std::size_t>(s.inputs * s.outputs)),
      steps(gains.size()),
      gainsBySpeaker(gains.size()) {
  std::mt19937 random(2024);
  fill(inputBlock.get(), static_cast<std::size_t>(s.inputs * s.frames), random, -1.0, 1.0);
  fill(gains.data(), gains.size(), random, 0.0, 1.0);
  fill(steps.data(), steps.size(), random, -1e-3, 1e-3);
  for (int i = 0; i < s.inputs; ++i) {
    in.push_back(inputBlock.get() + i * s.frames);
    for (int o = 0; o < s.outputs; ++o) gainsBySpeaker[o * s.inputs + i] = gains[i * s.outputs + o];
  }
  for (int o = 0; o < s.outputs; ++o) out.push_back(outputBlock.get() + o * s.frames);
}

PackedPlan::PackedPlan(MixBuffers& buffers, const MixKernels& kernels, bool ramp)
    : peaks_(static_cast<std::size_t>(buffers.shape.outputs)) {
  const Shape shape = buffers.shape;
  const int width = ramp ? kernels.rampTileWidth : kernels.steadyTileWidth;
  packedGains_ = pack(buffers.gains, shape, width);
  packedSteps_ = pack(buffers.steps, shape, width);
  plan.inputCount = shape.inputs;
  plan.outputCount = shape.outputs;
  plan.frames = shape.frames;
  for (int i = 0; i < shape.inputs; ++i) plan.inputs[i] = buffers.in[i];
  for (int o = 0; o < shape.outputs; ++o) plan.outputs[o] = buffers.out[o];
  plan.tileWidth = width;
  plan.gains = packedGains_.data();
  plan.steps = ramp ? packedSteps_.data() : nullptr;
  plan.outputPeaks = peaks_.data();
  plan.scratch = scratch_.get();
}

std::unique_ptr<PannerPlugin> makeBenchInstance(int inputs, int outputs) {
  auto plugin = std::make_unique<PannerPlugin>();
  plugin->host.effect.object = plugin.get();
  setInputCount(*plugin, inputs);
  setSpeakerCount(*plugin, outputs);
  plugin->host.effect.numInputs = inputs;
  plugin->host.effect.numOutputs = outputs;
  createMixEngine(*plugin);
  MixBuffers settle(Shape{inputs, outputs, 1});
  processDoubleReplacing(&plugin->host.effect, const_cast<double**>(settle.in.data()),
                         settle.out.data(), 1);
  return plugin;
}

void destroyBenchInstance(PannerPlugin& plugin) {
  destroyMixEngine(plugin);
}

void spreadScene(PannerPlugin& plugin, std::uint32_t optionFlags) {
  Position3 ring[kMaxSpeakers];
  computeRingPositions(plugin.speakerCount(), ring);
  for (int s = 0; s < plugin.speakerCount(); ++s)
    setSpeaker(plugin, s, "ring", ring[s].x, ring[s].y, ring[s].z, 0.5);
  for (int i = 0; i < plugin.inputCount(); ++i) {
    InputChannel& input = plugin.model.inputs[i];
    input.diffuse = 0.1 + 0.01 * i;
    input.diffuseBias = 0.5 - 0.015 * i;
    input.diffuseAngle = 0.03 * i - 0.9;
  }
  plugin.model.optionFlags = optionFlags;
  markInputsDirty(plugin, kDirtyAllInputs);
}

const MixKernels& kernelsFor(MixPath path) {
  return path == MixPath::Avx512 ? avx512MixKernels()
         : path == MixPath::Avx2 ? avx2MixKernels()
                                 : sse2MixKernels();
}
