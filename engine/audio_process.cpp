#include "engine/audio_process.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

#include "engine/denormal_guard.h"
#include "engine/gain_law.h"
#include "engine/mix_engine.h"

namespace {

// What a block uses, captured under modelMutex; nothing else of the model is touched outside it.
struct BlockCapture {
  int inputs = 0;   // min(inputCount, numInputs before the block)
  int outputs = 0;  // min(speakerCount, numOutputs before the block)
  int columns = 0;  // row stride of the matrices
  int cells = 0;    // size of the matrices: another thread may mark them for re-sizing meanwhile
  std::uint64_t inputAudible = 0;
  std::uint64_t speakerAudible = 0;
  int inputFaderOffset = 0;
  int speakerFaderOffset = 0;
  double meterGains[kMeterSlots] = {};
  bool rampPrepared = false;  // applied takes target after the block
  bool rampActive = false;    // the block glides along gainSteps
};

PannerPlugin* instanceOf(AEffect* effect) {
  return effect == nullptr ? nullptr : static_cast<PannerPlugin*>(effect->object);
}

bool resizeMatrices(PannerPlugin& plugin) {
  if (plugin.gainRows == plugin.inputCount() && plugin.gainCols == plugin.speakerCount())
    return false;
  const int cells = plugin.inputCount() * plugin.speakerCount();
  if (!plugin.appliedGains.resize(cells) || !plugin.targetGains.resize(cells) ||
      !plugin.gainSteps.resize(cells)) {
    return false;  // keep the old size; the next block tries again
  }
  plugin.gainRows = plugin.inputCount();
  plugin.gainCols = plugin.speakerCount();
  plugin.appliedGains.clearToZero();
  plugin.dirtyInputs = ~std::uint64_t{0};
  return true;
}

void recomputeDirtyRows(PannerPlugin& plugin) {
  for (int i = 0; i < plugin.inputCount(); ++i) {
    if ((plugin.dirtyInputs >> i) & 1) computeInputGains(plugin, i);
  }
}

// A soloed channel sounds whatever its mute; without a solo, every unmuted channel sounds.
template <typename Channel>
std::uint64_t audibleMask(const GrowableArray<Channel>& channels) {
  bool anySolo = false;
  for (const Channel& c : channels) anySolo = anySolo || c.solo;
  std::uint64_t mask = 0;
  for (int i = 0; i < channels.size(); ++i) {
    const bool audible = channels[i].solo || (!anySolo && !channels[i].mute);
    if (audible) mask |= std::uint64_t{1} << i;
  }
  return mask;
}

void prepareRamp(PannerPlugin& plugin, MixEngine& engine, bool resized, int frames,
                 BlockCapture& block) {
  if (plugin.dirtyInputs == 0) return;
  const int cells = plugin.gainRows * plugin.gainCols;
  double* applied = plugin.appliedGains.data();
  const double* target = plugin.targetGains.data();
  if (resized) {
    std::copy(target, target + cells, applied);  // a re-sized matrix starts without a ramp
    ++engine.gainsGeneration;
  } else {
    block.rampPrepared = true;
    block.rampActive = frames >= 1;
    double* steps = plugin.gainSteps.data();
    if (block.rampActive) {
      for (int k = 0; k < cells; ++k) steps[k] = (target[k] - applied[k]) / frames;
    }
  }
  plugin.dirtyInputs = 0;
}

void captureMeters(const PannerPlugin& plugin, BlockCapture& block) {
  block.inputFaderOffset = plugin.inputFaderOffset;
  block.speakerFaderOffset = plugin.speakerFaderOffset;
  for (int j = 0; j < kMeterSlots; ++j) {
    const int i = plugin.inputFaderOffset + j;
    block.meterGains[j] = i >= 0 && i < plugin.inputCount() ? plugin.inputs[i].gain : 1.0;
  }
}

// Steps 1-7 of the block, under modelMutex: bookkeeping and the gain law only.
void captureBlock(PannerPlugin& plugin, MixEngine& engine, int frames, BlockCapture& block) {
  const bool resized = resizeMatrices(plugin);
  if (plugin.gainRows != plugin.inputCount() || plugin.gainCols != plugin.speakerCount()) {
    return;  // no memory for the matrices: this block stays silent
  }
  recomputeDirtyRows(plugin);
  captureMeters(plugin, block);
  block.inputAudible = audibleMask(plugin.inputs);
  block.speakerAudible = audibleMask(plugin.speakers);
  prepareRamp(plugin, engine, resized, frames, block);
  block.columns = plugin.gainCols;
  block.cells = plugin.gainRows * plugin.gainCols;
  block.inputs = std::min(plugin.inputCount(), plugin.effect.numInputs);
  block.outputs = std::min(plugin.speakerCount(), plugin.effect.numOutputs);
  plugin.effect.numInputs = plugin.inputCount();
  plugin.effect.numOutputs = plugin.speakerCount();
}

bool isSet(std::uint64_t mask, int bit) {
  return bit >= 0 && bit < 64 && ((mask >> bit) & 1) != 0;
}

// Packs the audible pairs' gains in tiles of the kernel's width; reused while nothing changed.
void packGains(PannerPlugin& plugin, MixEngine& engine, const BlockCapture& block, int tileWidth) {
  MixPlan& plan = engine.plan;
  const std::uint64_t inputs =
      block.inputAudible & (block.inputs >= 64 ? ~0ull : (1ull << block.inputs) - 1);
  const std::uint64_t speakers =
      block.speakerAudible & (block.outputs >= 64 ? ~0ull : (1ull << block.outputs) - 1);
  const bool reusable = !block.rampActive && engine.packedGeneration == engine.gainsGeneration &&
                        engine.packedInputs == inputs && engine.packedSpeakers == speakers &&
                        engine.packedTileWidth == tileWidth;
  if (reusable) return;
  int inputOf[kMaxInputs];
  int count = 0;
  for (int i = 0; i < block.inputs; ++i) {
    if (isSet(inputs, i)) inputOf[count++] = i;
  }
  plan.inputCount = count;
  plan.outputCount = 0;
  for (int s = 0; s < block.outputs; ++s) {
    if (isSet(speakers, s)) engine.speakerOfOutput[plan.outputCount++] = s;
  }
  plan.tileWidth = tileWidth;
  const double* applied = plugin.appliedGains.data();
  const double* steps = plugin.gainSteps.data();
  for (int first = 0; first < plan.outputCount; first += tileWidth) {
    const int width = std::min(tileWidth, plan.outputCount - first);
    double* gains = engine.packedGains + packedTileOffset(first / tileWidth, tileWidth, count);
    double* packedSteps = engine.packedSteps + (gains - engine.packedGains);
    for (int k = 0; k < count; ++k) {
      for (int s = 0; s < width; ++s) {
        const int cell = inputOf[k] * block.columns + engine.speakerOfOutput[first + s];
        gains[k * width + s] = applied[cell];
        if (block.rampActive) packedSteps[k * width + s] = steps[cell];
      }
    }
  }
  engine.packedInputs = inputs;
  engine.packedSpeakers = speakers;
  engine.packedTileWidth = tileWidth;
  engine.packedGeneration = block.rampActive ? 0 : engine.gainsGeneration;
}

void bindBuffers(MixEngine& engine, const BlockCapture& block, double** inputs, double** outputs,
                 int frames) {
  MixPlan& plan = engine.plan;
  int k = 0;
  for (int i = 0; i < block.inputs; ++i) {
    if (isSet(engine.packedInputs, i)) plan.inputs[k++] = inputs[i];
  }
  for (int j = 0; j < plan.outputCount; ++j) {
    plan.outputs[j] = outputs[engine.speakerOfOutput[j]];
    engine.outputPeaks[j] = 0.0;
  }
  plan.frames = frames;
  plan.gains = engine.packedGains;
  plan.steps = block.rampActive ? engine.packedSteps : nullptr;
  plan.outputPeaks = engine.outputPeaks;
}

double largestMagnitude(const double* samples, int frames) {
  double peak = 0.0;
  for (int n = 0; n < frames; ++n) {
    const double a = std::fabs(samples[n]);
    peak = a > peak ? a : peak;
  }
  return peak;
}

void raisePeak(std::atomic<double>& meter, double peak) {
  if (peak > meter.load(std::memory_order_relaxed)) meter.store(peak, std::memory_order_relaxed);
}

void updateInputMeters(PannerPlugin& plugin, const BlockCapture& block, double** inputs,
                       int frames) {
  for (int j = 0; j < kMeterSlots; ++j) {
    const int i = block.inputFaderOffset + j;
    if (i >= block.inputs || !isSet(block.inputAudible, i)) {
      plugin.inputPeaks[j].store(0.0, std::memory_order_relaxed);
    } else if (frames >= 1) {
      raisePeak(plugin.inputPeaks[j],
                largestMagnitude(inputs[i], frames) * std::fabs(block.meterGains[j]));
    }
  }
}

void updateSpeakerMeters(PannerPlugin& plugin, const MixEngine& engine, const BlockCapture& block,
                         int frames) {
  double peakOf[kMaxSpeakers] = {};
  for (int j = 0; j < engine.plan.outputCount; ++j)
    peakOf[engine.speakerOfOutput[j]] = engine.outputPeaks[j];
  for (int j = 0; j < kMeterSlots; ++j) {
    const int s = block.speakerFaderOffset + j;
    if (s >= block.outputs || !isSet(block.speakerAudible, s)) {
      plugin.speakerPeaks[j].store(0.0, std::memory_order_relaxed);
    } else if (frames >= 1) {
      raisePeak(plugin.speakerPeaks[j], peakOf[s]);
    }
  }
}

// Outputs the kernel does not write (muted speakers) are silent; those past the count stay as they
// are.
void clearSilentOutputs(const MixEngine& engine, const BlockCapture& block, double** outputs,
                        int frames) {
  for (int s = 0; s < block.outputs; ++s) {
    if (!isSet(engine.packedSpeakers, s))
      std::memset(outputs[s], 0, sizeof(double) * static_cast<std::size_t>(frames));
  }
}

// Steps 8-12, outside the lock: the mix reads only the captured block and the engine's own buffers.
void mixBlock(PannerPlugin& plugin, MixEngine& engine, const BlockCapture& block, double** inputs,
              double** outputs, int frames) {
  const MixKernels& kernels = *engine.kernels;
  packGains(plugin, engine, block,
            block.rampActive ? kernels.rampTileWidth : kernels.steadyTileWidth);
  if (frames > 0) {
    bindBuffers(engine, block, inputs, outputs, frames);
    clearSilentOutputs(engine, block, outputs, frames);
    updateInputMeters(plugin, block, inputs, frames);
    (block.rampActive ? kernels.mixRamp : kernels.mixSteady)(engine.plan);
  } else {
    updateInputMeters(plugin, block, inputs, frames);
  }
  updateSpeakerMeters(plugin, engine, block, frames);
  if (block.rampPrepared) {
    std::copy(plugin.targetGains.data(), plugin.targetGains.data() + block.cells,
              plugin.appliedGains.data());
    ++engine.gainsGeneration;
  }
}

}  // namespace

bool createMixEngine(PannerPlugin& plugin) {
  auto* engine = new (std::nothrow) MixEngine;
  if (engine == nullptr) return false;
  engine->kernels = &bestMixKernels();
  delete plugin.mixEngine;
  plugin.mixEngine = engine;
  return true;
}

void destroyMixEngine(PannerPlugin& plugin) {
  delete plugin.mixEngine;
  plugin.mixEngine = nullptr;
}

bool forceMixPath(PannerPlugin& plugin, MixPath path) {
  if (plugin.mixEngine == nullptr || !processorSupports(path)) return false;
  const MixKernels* kernels = path == MixPath::Avx512 ? &avx512MixKernels()
                              : path == MixPath::Avx2 ? &avx2MixKernels()
                                                      : &sse2MixKernels();
  plugin.mixEngine->kernels = kernels;
  plugin.mixEngine->packedTileWidth = 0;
  return true;
}

const MixKernels& mixKernelsOf(const PannerPlugin& plugin) {
  return plugin.mixEngine != nullptr ? *plugin.mixEngine->kernels : bestMixKernels();
}

void processDoubleReplacing(AEffect* effect, double** inputs, double** outputs,
                            std::int32_t sampleFrames) {
  PannerPlugin* plugin = instanceOf(effect);
  if (plugin == nullptr || plugin->mixEngine == nullptr) return;
  const int frames = sampleFrames > 0 ? sampleFrames : 0;
  DenormalGuard guard;
  BlockCapture block;
  {
    ModelLock lock(*plugin);
    captureBlock(*plugin, *plugin->mixEngine, frames, block);
  }
  mixBlock(*plugin, *plugin->mixEngine, block, inputs, outputs, frames);
}

void processReplacing(AEffect* /*effect*/, float** /*inputs*/, float** /*outputs*/,
                      std::int32_t /*sampleFrames*/) {}

void processAccumulating(AEffect* /*effect*/, float** /*inputs*/, float** /*outputs*/,
                         std::int32_t /*sampleFrames*/) {}
