#include "engine/audio_process.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

#include "engine/denormal_guard.h"
#include "engine/gain_law.h"
#include "engine/mix_engine.h"

namespace {

// What a block uses of the model, captured under modelMutex: the mix touches nothing else of it.
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
  if (plugin.model.gainRows == plugin.inputCount() &&
      plugin.model.gainCols == plugin.speakerCount())
    return false;
  const int cells = plugin.inputCount() * plugin.speakerCount();
  if (!plugin.mix.appliedGains.resize(cells) || !plugin.mix.targetGains.resize(cells) ||
      !plugin.mix.gainSteps.resize(cells)) {
    return false;  // keep the old size; the next block tries again
  }
  plugin.model.gainRows = plugin.inputCount();
  plugin.model.gainCols = plugin.speakerCount();
  plugin.mix.appliedGains.clearToZero();
  plugin.model.dirtyInputs = ~std::uint64_t{0};
  return true;
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
  if (plugin.model.dirtyInputs == 0) return;
  const int cells = plugin.model.gainRows * plugin.model.gainCols;
  double* applied = plugin.mix.appliedGains.data();
  const double* target = plugin.mix.targetGains.data();
  if (resized) {
    std::copy(target, target + cells, applied);  // a re-sized matrix starts without a ramp
    ++engine.gainsGeneration;
  } else {
    block.rampPrepared = true;
    block.rampActive = frames >= 1;
    if (block.rampActive)
      engine.kernels->rampSteps(target, applied, plugin.mix.gainSteps.data(), cells, frames);
  }
  plugin.model.dirtyInputs = 0;
}

void captureMeters(const PannerPlugin& plugin, BlockCapture& block) {
  block.inputFaderOffset = plugin.editor.inputFaderOffset;
  block.speakerFaderOffset = plugin.editor.speakerFaderOffset;
  for (int j = 0; j < kMeterSlots; ++j) {
    const int i = plugin.editor.inputFaderOffset + j;
    block.meterGains[j] = i >= 0 && i < plugin.inputCount() ? plugin.model.inputs[i].gain : 1.0;
  }
}

// Under modelMutex: re-sizes the matrices, recomputes the dirty rows, prepares the ramp and
// captures what the mix needs of the model. Bookkeeping and the gain law only.
void captureBlock(PannerPlugin& plugin, MixEngine& engine, int frames, BlockCapture& block) {
  const bool resized = resizeMatrices(plugin);
  if (plugin.model.gainRows != plugin.inputCount() ||
      plugin.model.gainCols != plugin.speakerCount()) {
    return;  // no memory for the matrices: this block stays silent
  }
  computeMarkedInputGains(plugin, plugin.model.dirtyInputs);
  captureMeters(plugin, block);
  block.inputAudible = audibleMask(plugin.model.inputs);
  block.speakerAudible = audibleMask(plugin.model.speakers);
  prepareRamp(plugin, engine, resized, frames, block);
  block.columns = plugin.model.gainCols;
  block.cells = plugin.model.gainRows * plugin.model.gainCols;
  block.inputs = std::min(plugin.inputCount(), plugin.host.effect.numInputs);
  block.outputs = std::min(plugin.speakerCount(), plugin.host.effect.numOutputs);
  plugin.host.effect.numInputs = plugin.inputCount();
  plugin.host.effect.numOutputs = plugin.speakerCount();
}

bool isSet(std::uint64_t mask, int bit) {
  return bit >= 0 && bit < 64 && ((mask >> bit) & 1) != 0;
}

// Packs the audible pairs' gains in tiles of the kernel's width; reused while nothing changed.
void packGains(const MixState& mix, MixEngine& engine, const BlockCapture& block, int tileWidth) {
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
  const double* applied = mix.appliedGains.data();
  const double* steps = mix.gainSteps.data();
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
  plan.scratch = &engine.scratch;
}

void raisePeak(std::atomic<double>& meter, double peak) {
  if (peak > meter.load(std::memory_order_relaxed)) meter.store(peak, std::memory_order_relaxed);
}

void updateInputMeters(MixState& mix, const MixKernels& kernels, const BlockCapture& block,
                       double** inputs, int frames) {
  for (int j = 0; j < kMeterSlots; ++j) {
    const int i = block.inputFaderOffset + j;
    if (i >= block.inputs || !isSet(block.inputAudible, i)) {
      mix.inputPeaks[j].store(0.0, std::memory_order_relaxed);
    } else if (frames >= 1) {
      raisePeak(mix.inputPeaks[j],
                kernels.largestMagnitude(inputs[i], frames) * std::fabs(block.meterGains[j]));
    }
  }
}

void updateSpeakerMeters(MixState& mix, const MixEngine& engine, const BlockCapture& block,
                         int frames) {
  double slotPeaks[kMeterSlots] = {};
  for (int j = 0; j < engine.plan.outputCount; ++j) {
    const int slot = engine.speakerOfOutput[j] - block.speakerFaderOffset;
    if (slot >= 0 && slot < kMeterSlots) slotPeaks[slot] = engine.outputPeaks[j];
  }
  for (int j = 0; j < kMeterSlots; ++j) {
    const int s = block.speakerFaderOffset + j;
    if (s >= block.outputs || !isSet(block.speakerAudible, s)) {
      mix.speakerPeaks[j].store(0.0, std::memory_order_relaxed);
    } else if (frames >= 1) {
      raisePeak(mix.speakerPeaks[j], slotPeaks[j]);
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

// Outside the lock: mixes, meters and lands the ramp on its target, from the captured block and the
// audio thread's own mix state alone.
void mixBlock(MixState& mix, const BlockCapture& block, double** inputs, double** outputs,
              int frames) {
  MixEngine& engine = *mix.mixEngine;
  const MixKernels& kernels = *engine.kernels;
  packGains(mix, engine, block, block.rampActive ? kernels.rampTileWidth : kernels.steadyTileWidth);
  if (frames > 0) {
    bindBuffers(engine, block, inputs, outputs, frames);
    clearSilentOutputs(engine, block, outputs, frames);
    updateInputMeters(mix, kernels, block, inputs, frames);
    (block.rampActive ? kernels.mixRamp : kernels.mixSteady)(engine.plan);
  } else {
    updateInputMeters(mix, kernels, block, inputs, frames);
  }
  updateSpeakerMeters(mix, engine, block, frames);
  if (block.rampPrepared) {
    std::copy(mix.targetGains.data(), mix.targetGains.data() + block.cells,
              mix.appliedGains.data());
    ++engine.gainsGeneration;
  }
}

}  // namespace

bool createMixEngine(PannerPlugin& plugin) {
  auto* engine = new (std::nothrow) MixEngine;
  if (engine == nullptr) return false;
  engine->kernels = &bestMixKernels();
  engine->lawKernels = &gainLawKernelsFor(engine->kernels->path);
  delete plugin.mix.mixEngine;
  plugin.mix.mixEngine = engine;
  return true;
}

void destroyMixEngine(PannerPlugin& plugin) {
  delete plugin.mix.mixEngine;
  plugin.mix.mixEngine = nullptr;
}

bool forceMixPath(PannerPlugin& plugin, MixPath path) {
  if (plugin.mix.mixEngine == nullptr || !processorSupports(path)) return false;
  const MixKernels* kernels = path == MixPath::Avx512 ? &avx512MixKernels()
                              : path == MixPath::Avx2 ? &avx2MixKernels()
                                                      : &sse2MixKernels();
  plugin.mix.mixEngine->kernels = kernels;
  plugin.mix.mixEngine->lawKernels = &gainLawKernelsFor(path);
  plugin.mix.mixEngine->packedTileWidth = 0;
  return true;
}

const MixKernels& mixKernelsOf(const PannerPlugin& plugin) {
  return plugin.mix.mixEngine != nullptr ? *plugin.mix.mixEngine->kernels : bestMixKernels();
}

void processDoubleReplacing(AEffect* effect, double** inputs, double** outputs,
                            std::int32_t sampleFrames) {
  PannerPlugin* plugin = instanceOf(effect);
  if (plugin == nullptr || plugin->mix.mixEngine == nullptr) return;
  const int frames = sampleFrames > 0 ? sampleFrames : 0;
  DenormalGuard guard;
  BlockCapture block;
  {
    ModelLock lock(*plugin);
    captureBlock(*plugin, *plugin->mix.mixEngine, frames, block);
  }
  mixBlock(plugin->mix, block, inputs, outputs, frames);
}

void processReplacing(AEffect* /*effect*/, float** /*inputs*/, float** /*outputs*/,
                      std::int32_t /*sampleFrames*/) {}

void processAccumulating(AEffect* /*effect*/, float** /*inputs*/, float** /*outputs*/,
                         std::int32_t /*sampleFrames*/) {}
