#include "host/live/live_engine.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <thread>

#include "host/live/file_player.h"
#include "host/runtime/crash_guard.h"

namespace {

constexpr auto kRetireTimeout = std::chrono::seconds(2);
constexpr auto kRetirePoll = std::chrono::microseconds(200);

// Set on the audio thread while it is inside a block, so that a report made from inside the
// plug-in's process call is placed in that block.
thread_local std::int64_t blockStartOnThisThread = -1;

}  // namespace

RtConfig::RtConfig(int inputCapacity, int outputCapacity, int blockFrames_, int filePlayerChannels)
    : blockFrames(std::max(blockFrames_, 1)),
      inputs(static_cast<std::size_t>(inputCapacity),
             std::vector<double>(static_cast<std::size_t>(blockFrames), 0.0)),
      outputs(static_cast<std::size_t>(outputCapacity),
              std::vector<double>(static_cast<std::size_t>(blockFrames), 0.0)),
      fileFrames(static_cast<std::size_t>(blockFrames) *
                 static_cast<std::size_t>(std::max(filePlayerChannels, 0))) {
  for (auto& channel : inputs) inputPointers.push_back(channel.data());
  for (auto& channel : outputs) outputPointers.push_back(channel.data());
}

LiveEngine::LiveEngine(AEffect& effect, const char* pluginPath)
    : effect_(effect), pluginPath_(pluginPath) {
  pluginInputs_.store(effect.numInputs);
  pluginOutputs_.store(effect.numOutputs);
}

bool LiveEngine::waitUntilOutOfCycle(std::uint64_t cycleSeen) const {
  const auto deadline = std::chrono::steady_clock::now() + kRetireTimeout;
  while (inCycle_.load() && cycles_.load() == cycleSeen) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(kRetirePoll);
  }
  return true;
}

bool LiveEngine::exchange(std::unique_ptr<RtConfig> config) {
  config->inputPortBuffers.assign(config->inputPorts.size(), nullptr);
  config->outputPortBuffers.assign(config->outputPorts.size(), nullptr);
  std::unique_ptr<RtConfig> previous = std::move(current_);
  current_ = std::move(config);
  const std::uint64_t seen = cycles_.load();
  config_.store(current_.get());
  if (waitUntilOutOfCycle(seen)) return true;
  (void)previous.release();  // the callback may still read it: never freed
  return false;
}

bool LiveEngine::suspend() {
  suspended_.store(true);
  return waitUntilOutOfCycle(cycles_.load());
}

void LiveEngine::resume() {
  suspended_.store(false);
}

std::int64_t LiveEngine::nextBlockStart() const {
  if (blockStartOnThisThread >= 0) return blockStartOnThisThread;
  return cycleEnd_.load();
}

void LiveEngine::process(jack_nframes_t frames) {
  const std::int64_t started = monotonicNs();
  const std::int64_t startedCpu = threadCpuNs();
  inCycle_.store(true);
  RtConfig* config = config_.load();
  const std::int64_t position = position_.load(std::memory_order_relaxed);
  cycleEnd_.store(position + frames);
  if (config != nullptr) {
    for (std::size_t c = 0; c < config->inputPorts.size(); ++c) {
      config->inputPortBuffers[c] =
          static_cast<float*>(jack_port_get_buffer(config->inputPorts[c], frames));
    }
    for (std::size_t c = 0; c < config->outputPorts.size(); ++c) {
      config->outputPortBuffers[c] =
          static_cast<float*>(jack_port_get_buffer(config->outputPorts[c], frames));
    }
    if (suspended_.load()) {
      playSilence(*config, frames);
      if (player_ != nullptr) player_->skip(frames);  // the file keeps time with the clock
    } else {
      processPieces(*config, frames);
    }
  }
  position_.store(position + frames, std::memory_order_release);
  cycles_.fetch_add(1);
  inCycle_.store(false);
  timing_.add(monotonicNs() - started);
  cpuTiming_.add(threadCpuNs() - startedCpu);
}

void LiveEngine::processPieces(RtConfig& config, jack_nframes_t frames) {
  std::int64_t position = position_.load(std::memory_order_relaxed);
  for (int offset = 0; offset < static_cast<int>(frames);) {
    const int piece = std::min(config.blockFrames, static_cast<int>(frames) - offset);
    const int inputs = effect_.numInputs;
    const int outputs = effect_.numOutputs;
    if (inputs < 0 || outputs < 0 || inputs > static_cast<int>(config.inputs.size()) ||
        outputs > static_cast<int>(config.outputs.size())) {
      // More channels than the buffers prepared: silence until the UI thread has grown them.
      skipped_.fetch_add(1, std::memory_order_relaxed);
      pluginInputs_.store(inputs, std::memory_order_release);
      pluginOutputs_.store(outputs, std::memory_order_release);
      playSilence(config, frames);
      if (player_ != nullptr) player_->skip(frames - static_cast<jack_nframes_t>(offset));
      return;
    }
    readInputs(config, inputs, offset, piece);
    if (player_ != nullptr) addFile(config, inputs, piece);
    applyPending(position);
    if (hook_ != nullptr) hook_(hookContext_, position, piece);
    blockStartOnThisThread = position;
    {
      const PluginCall call(pluginPath_, "processDoubleReplacing");
      effect_.processDoubleReplacing(&effect_, config.inputPointers.data(),
                                     config.outputPointers.data(), piece);
    }
    blockStartOnThisThread = -1;
    writeOutputs(config, outputs, offset, piece);
    pluginInputs_.store(effect_.numInputs, std::memory_order_release);
    pluginOutputs_.store(effect_.numOutputs, std::memory_order_release);
    position += piece;
    offset += piece;
  }
}

void LiveEngine::applyPending(std::int64_t position) {
  ParameterChange change{};
  while (pending_.pop(change)) {
    if (effect_.setParameter != nullptr) {
      const PluginCall call(pluginPath_, "setParameter");
      effect_.setParameter(&effect_, change.parameter, change.value);
    }
    if (changeHook_ != nullptr)
      changeHook_(changeContext_, position, change.parameter, change.value);
  }
}

void LiveEngine::readInputs(RtConfig& config, int channels, int offset, int frames) {
  const int ports = static_cast<int>(config.inputPorts.size());
  for (int c = 0; c < channels; ++c) {
    double* to = config.inputPointers[static_cast<std::size_t>(c)];
    if (c < ports) {
      const float* from = config.inputPortBuffers[static_cast<std::size_t>(c)] + offset;
      for (int f = 0; f < frames; ++f) to[f] = from[f];
    } else {
      std::fill_n(to, frames, 0.0);
    }
  }
}

void LiveEngine::addFile(RtConfig& config, int channels, int frames) {
  const int fileChannels = player_->channels();
  const std::size_t wanted =
      static_cast<std::size_t>(frames) * static_cast<std::size_t>(fileChannels);
  float* samples = config.fileFrames.data();
  const std::size_t got = player_->read(samples, wanted);
  if (got < wanted) {
    underruns_.fetch_add(1, std::memory_order_relaxed);
    std::fill(samples + got, samples + wanted, 0.0f);
  }
  const int used = std::min(channels, fileChannels);
  for (int c = 0; c < used; ++c) {
    double* to = config.inputPointers[static_cast<std::size_t>(c)];
    for (int f = 0; f < frames; ++f) to[f] += samples[f * fileChannels + c];
  }
}

void LiveEngine::writeOutputs(RtConfig& config, int channels, int offset, int frames) {
  const int ports = static_cast<int>(config.outputPorts.size());
  for (int c = 0; c < ports; ++c) {
    float* to = config.outputPortBuffers[static_cast<std::size_t>(c)] + offset;
    if (c < channels) {
      const double* from = config.outputPointers[static_cast<std::size_t>(c)];
      for (int f = 0; f < frames; ++f) to[f] = static_cast<float>(from[f]);
    } else {
      std::fill_n(to, frames, 0.0f);
    }
  }
}

void LiveEngine::playSilence(RtConfig& config, jack_nframes_t frames) {
  for (float* buffer : config.outputPortBuffers) std::fill_n(buffer, frames, 0.0f);
}
