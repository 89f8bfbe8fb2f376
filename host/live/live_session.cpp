#include "host/live/live_session.h"

#include <algorithm>
#include <cstring>

#include "host/runtime/host_error.h"

namespace {

constexpr int kRenameCheckEvery = 20;  // idle calls between looks at the outputs' names
constexpr VstIntPtr kMainsOn = 1;

// What VST 2.x itself tells of the outputs' names: effGetOutputProperties, else nothing.
std::vector<std::string> pinLabels(PluginInstance& instance, int outputs) {
  std::vector<std::string> labels;
  for (int c = 0; c < outputs; ++c) {
    VstPinProperties pin{};
    if (instance.dispatch("effGetOutputProperties", effGetOutputProperties, c, 0, &pin) == 0) {
      return {};
    }
    pin.label[sizeof pin.label - 1] = '\0';
    labels.emplace_back(pin.label);
  }
  return labels;
}

}  // namespace

LiveSession::LiveSession(const LiveOptions& options)
    : options_(options), client_(options.clientName, options.serverName) {
  if (!options.connectInputs.empty()) {
    checkConnectionPattern(options.connectInputs, "--connect-inputs");
  }
  if (!options.connectOutputs.empty()) {
    checkConnectionPattern(options.connectOutputs, "--connect-outputs");
  }
}

LiveSession::~LiveSession() {
  stop();
}

void LiveSession::start(PluginInstance& instance, OutputNamer namer, std::ostream& notes) {
  instance_ = &instance;
  namer_ = std::move(namer);
  pluginBlockFrames_ = bufferSize();
  pluginSampleRate_ = sampleRate();
  serverBufferSize_.store(pluginBlockFrames_);
  serverSampleRate_.store(pluginSampleRate_);
  if (!options_.playPath.empty()) {
    player_ = std::make_unique<FilePlayer>(options_.playPath, sampleRate());
  }
  engine_ = std::make_unique<LiveEngine>(instance.effect(), instance.module().path().c_str());
  engine_->setFilePlayer(player_.get());
  engine_->setBlockHook(blockHook_, blockHookContext_);
  if (!options_.recordPath.empty()) {
    const LiveEngine* engine = engine_.get();
    recorder_ =
        std::make_unique<AutomationRecorder>(options_.recordPath, sampleRate(), pluginBlockFrames_,
                                             [engine] { return engine->nextBlockStart(); });
  }
  if (recorder_ != nullptr) {
    // The plug-in's own reports (its editor's gestures) take effect at the next block; the
    // host's changes where the audio thread applied them.
    instance.setAutomationListener(
        [](void* recorder, std::int32_t parameter, float value) {
          static_cast<AutomationRecorder*>(recorder)->report(parameter, value);
        },
        recorder_.get());
    engine_->setChangeHook(
        [](void* recorder, std::int64_t sample, std::int32_t parameter, float value) {
          static_cast<AutomationRecorder*>(recorder)->reportAt(sample, parameter, value);
        },
        recorder_.get());
  }
  ports_ = std::make_unique<LivePorts>(client_, options_.connectInputs, options_.connectOutputs);
  instance.setAudioElsewhere(true);
  followChannels(notes, true);
  client_.setEvents(this);
  engineReady_.store(true);
  client_.activate();
  running_ = true;
  const std::string missing = ports_->connectNew();
  if (!missing.empty()) notes << missing << "\n";
}

void LiveSession::stop() {
  if (!running_) return;
  running_ = false;
  client_.deactivate();
  engineReady_.store(false);
  if (instance_ != nullptr) {
    instance_->setAutomationListener(nullptr, nullptr);
    instance_->setAudioElsewhere(false);
  }
  recorder_.reset();  // writes what is queued
}

std::string LiveSession::stopReason() const {
  return stopReason_.data();
}

std::string LiveSession::status() const {
  return std::to_string(sampleRate()) + " Hz, " + std::to_string(pluginBlockFrames_) + " frames, " +
         std::to_string(xruns()) + (xruns() == 1 ? " xrun" : " xruns");
}

bool LiveSession::idle(std::ostream& notes) {
  if (serverStopped()) {
    client_.markServerGone();
    return false;
  }
  if (!running_) return true;
  followServerSettings();
  followChannels(notes, ++idleCalls_ % kRenameCheckEvery == 0);
  return true;
}

std::vector<std::string> LiveSession::outputNames(int outputs) {
  std::vector<std::string> names = pinLabels(*instance_, outputs);
  if (names.empty() && namer_) names = namer_(*instance_);
  names.resize(static_cast<std::size_t>(outputs));  // the rest are named by number
  return names;
}

// Ports after the counts the audio thread saw the plug-in publish; with `force`, also after the
// outputs' names.
void LiveSession::followChannels(std::ostream& notes, bool force) {
  const int inputs = std::max(engine_->pluginInputs(), 0);
  const int outputs = std::max(engine_->pluginOutputs(), 0);
  const bool countsChanged = inputs != static_cast<int>(ports_->inputs().size()) ||
                             outputs != static_cast<int>(ports_->outputs().size());
  if (!countsChanged && !force) return;
  instance_->adoptChannelCounts(inputs, outputs);
  std::vector<std::string> names = outputNames(outputs);
  if (!countsChanged && names == namedOutputs_) return;
  namedOutputs_ = names;
  inputCapacity_ = std::max(inputCapacity_, inputs);
  outputCapacity_ = std::max(outputCapacity_, outputs);
  const std::vector<jack_port_t*> dropped = ports_->update(inputs, names);
  handOver(makeConfig(pluginBlockFrames_), dropped);
  if (running_) {
    const std::string missing = ports_->connectNew();
    if (!missing.empty()) notes << missing << "\n";
  }
}

std::unique_ptr<RtConfig> LiveSession::makeConfig(int blockFrames) const {
  auto config = std::make_unique<RtConfig>(inputCapacity_, outputCapacity_, blockFrames,
                                           player_ != nullptr ? player_->channels() : 0);
  config->inputPorts = ports_->inputs();
  config->outputPorts = ports_->outputs();
  return config;
}

void LiveSession::handOver(std::unique_ptr<RtConfig> config,
                           const std::vector<jack_port_t*>& dropped) {
  // A port is unregistered only once the callback has let go of the configuration naming it.
  if (engine_->exchange(std::move(config))) ports_->release(dropped);
}

void LiveSession::setParameter(std::int32_t parameter, float value) {
  if (!engine_->queueParameter(parameter, value)) {
    throw HostError(
        "the audio thread is not taking parameter changes (is the JACK server "
        "running?)");
  }
}

void LiveSession::whileSuspended(const std::function<void()>& change) {
  if (!engine_->suspend()) {
    engine_->resume();
    throw HostError("the audio thread does not come back from the plug-in " +
                    instance_->module().path());
  }
  try {
    change();
  } catch (...) {
    engine_->resume();
    throw;
  }
  engine_->resume();
}

void LiveSession::reconfigure(const std::function<void()>& change) {
  whileSuspended([&] {
    instance_->dispatch("effStopProcess", effStopProcess);
    instance_->dispatch("effMainsChanged", effMainsChanged, 0, 0);
    change();
    instance_->dispatch("effMainsChanged", effMainsChanged, 0, kMainsOn);
    instance_->dispatch("effStartProcess", effStartProcess);
  });
}

// The server's block size and sample rate reach the plug-in as a host sends them: switched off,
// told, switched on again.
void LiveSession::followServerSettings() {
  const int frames = serverBufferSize_.load();
  if (frames > 0 && frames != pluginBlockFrames_) {
    reconfigure([&] {
      instance_->dispatch("effSetBlockSize", effSetBlockSize, 0, frames);
      pluginBlockFrames_ = frames;
      handOver(makeConfig(frames), {});
    });
  }
  const int rate = serverSampleRate_.load();
  if (rate > 0 && rate != pluginSampleRate_) {
    reconfigure([&] {
      instance_->dispatch("effSetSampleRate", effSetSampleRate, 0, 0, nullptr,
                          static_cast<float>(rate));
      pluginSampleRate_ = rate;
    });
  }
}

void LiveSession::process(jack_nframes_t frames) {
  if (engineReady_.load(std::memory_order_acquire)) engine_->process(frames);
}

void LiveSession::bufferSizeChanged(jack_nframes_t frames) {
  serverBufferSize_.store(static_cast<int>(frames));
}

void LiveSession::sampleRateChanged(jack_nframes_t rate) {
  serverSampleRate_.store(static_cast<int>(rate));
}

void LiveSession::xrun() {
  xruns_.fetch_add(1, std::memory_order_relaxed);
}

void LiveSession::serverStopped(const char* reason) {
  if (!stopped_.load()) {
    std::strncpy(stopReason_.data(), reason != nullptr ? reason : "", stopReason_.size() - 1);
  }
  stopped_.store(true);
}
