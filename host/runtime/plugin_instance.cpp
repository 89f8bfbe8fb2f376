#include "host/runtime/plugin_instance.h"

#include <algorithm>
#include <cstring>

#include "host/runtime/crash_guard.h"
#include "host/runtime/host_callback.h"
#include "host/runtime/host_error.h"
#include "platform/host_functions.h"

namespace {

constexpr int kTextBufferBytes = 256;  // more than the 8..64 the interface allows: plug-ins overrun
constexpr VstIntPtr kProcessPrecision64 = 1;
constexpr int kProcessLevelUser = 1;
constexpr int kMaxChannels = 1024;

void checkEffect(const AEffect* effect, const std::string& path) {
  if (effect == nullptr) {
    throw HostError("the plug-in " + path +
                    " refused to create an instance (its entry point returned null)");
  }
  if (effect->magic != kEffectMagic) {
    throw HostError("the plug-in " + path + " returned something that is not a VST 2.x effect");
  }
  if (effect->numInputs < 0 || effect->numOutputs < 0 || effect->numInputs > kMaxChannels ||
      effect->numOutputs > kMaxChannels) {
    throw HostError("the plug-in " + path + " reports impossible channel counts");
  }
}

}  // namespace

PluginInstance::PluginInstance(const PluginModule& module, const HostConfig& config)
    : module_(module), config_(config) {
  load();
  open();
}

PluginInstance::~PluginInstance() {
  if (running_) stop();
  close();
}

void PluginInstance::load() {
  const ConstructionScope scope(this);
  effect_ = module_.createEffect(hostCallbackEntry);
  checkEffect(effect_, module_.path());
  effect_->user = this;
}

void PluginInstance::open() {
  dispatch("effOpen", effOpen);
  dispatch("effSetSampleRate", effSetSampleRate, 0, 0, nullptr,
           static_cast<float>(config_.sampleRate));
  dispatch("effSetBlockSize", effSetBlockSize, 0, config_.blockSize);
  if (hasDoublePrecision()) {
    dispatch("effSetProcessPrecision", effSetProcessPrecision, 0, kProcessPrecision64);
  }
  refreshChannelCounts();  // plug-ins may settle their counts only once open
}

void PluginInstance::close() {
  dispatch("effClose", effClose);
}

bool PluginInstance::hasDoublePrecision() const {
  return (effect_->flags & effFlagsCanDoubleReplacing) != 0 &&
         effect_->processDoubleReplacing != nullptr;
}

VstIntPtr PluginInstance::dispatch(const char* callName, std::int32_t opcode, std::int32_t index,
                                   VstIntPtr value, void* ptr, float opt) {
  if (effect_->dispatcher == nullptr) return 0;
  const PluginCall call(module_.path().c_str(), callName);
  return effect_->dispatcher(effect_, opcode, index, value, ptr, opt);
}

std::string PluginInstance::dispatchString(const char* callName, std::int32_t opcode,
                                           std::int32_t index) {
  char text[kTextBufferBytes] = {};
  dispatch(callName, opcode, index, 0, text);
  text[kTextBufferBytes - 1] = '\0';
  return text;
}

std::string PluginInstance::effectName() {
  return dispatchString("effGetEffectName", effGetEffectName, 0);
}

std::string PluginInstance::vendorString() {
  return dispatchString("effGetVendorString", effGetVendorString, 0);
}

std::string PluginInstance::productString() {
  return dispatchString("effGetProductString", effGetProductString, 0);
}

std::int32_t PluginInstance::vendorVersion() {
  return static_cast<std::int32_t>(dispatch("effGetVendorVersion", effGetVendorVersion));
}

std::int32_t PluginInstance::vstVersion() {
  return static_cast<std::int32_t>(dispatch("effGetVstVersion", effGetVstVersion));
}

std::string PluginInstance::parameterName(int index) {
  return dispatchString("effGetParamName", effGetParamName, index);
}

std::string PluginInstance::parameterDisplay(int index) {
  return dispatchString("effGetParamDisplay", effGetParamDisplay, index);
}

std::string PluginInstance::parameterLabel(int index) {
  return dispatchString("effGetParamLabel", effGetParamLabel, index);
}

float PluginInstance::parameter(int index) {
  if (effect_->getParameter == nullptr) return 0.0f;
  const PluginCall call(module_.path().c_str(), "getParameter");
  return effect_->getParameter(effect_, index);
}

void PluginInstance::setParameter(int index, float value) {
  if (effect_->setParameter == nullptr) return;
  const PluginCall call(module_.path().c_str(), "setParameter");
  effect_->setParameter(effect_, index, value);
}

int PluginInstance::findParameter(const std::string& name) {
  for (int i = 0; i < parameterCount(); ++i) {
    if (parameterName(i) == name) return i;
  }
  return -1;
}

std::vector<unsigned char> PluginInstance::chunk() {
  if ((effect_->flags & effFlagsProgramChunks) == 0) {
    throw HostError("the plug-in " + module_.path() + " keeps no state block");
  }
  void* data = nullptr;
  const VstIntPtr length = dispatch("effGetChunk", effGetChunk, 0, 0, &data);
  if (length < 0 || (length > 0 && data == nullptr)) {
    throw HostError("the plug-in " + module_.path() + " handed back no state block");
  }
  const auto* bytes = static_cast<const unsigned char*>(data);
  return {bytes, bytes + length};
}

void PluginInstance::setChunk(const std::vector<unsigned char>& bytes) {
  if ((effect_->flags & effFlagsProgramChunks) == 0) {
    throw HostError("the plug-in " + module_.path() + " keeps no state block");
  }
  std::vector<unsigned char> copy = bytes;  // the plug-in may keep or modify the pointer's bytes
  dispatch("effSetChunk", effSetChunk, 0, static_cast<VstIntPtr>(copy.size()), copy.data());
  refreshChannelCounts();  // a loaded setup may bring other counts without telling the host
}

void PluginInstance::start() {
  if (running_) return;
  dispatch("effMainsChanged", effMainsChanged, 0, 1);
  dispatch("effStartProcess", effStartProcess);
  running_ = true;
}

void PluginInstance::stop() {
  if (!running_) return;
  dispatch("effStopProcess", effStopProcess);
  dispatch("effMainsChanged", effMainsChanged, 0, 0);
  running_ = false;
  idle();
}

void PluginInstance::process(int frames) {
  frames = std::min(frames, config_.blockSize);
  if (frames < 1) return;
  inProcess_ = true;
  if (hasDoublePrecision()) {
    processDouble(frames);
  } else {
    processFloat(frames);
  }
  inProcess_ = false;
  // Plug-ins may publish new counts in the block itself, without telling the host.
  if (countsChanged_ || effect_->numInputs != inputCount_ || effect_->numOutputs != outputCount_) {
    refreshChannelCounts();
  }
  idle();
}

void PluginInstance::processDouble(int frames) {
  for (auto& channel : outputs_) std::fill(channel.begin(), channel.end(), 0.0);
  const PluginCall call(module_.path().c_str(), "processDoubleReplacing");
  effect_->processDoubleReplacing(effect_, inputPointers_.data(), outputPointers_.data(), frames);
}

void PluginInstance::processFloat(int frames) {
  for (int c = 0; c < inputCount_; ++c) {
    std::copy_n(inputs_[c].begin(), frames, floatInputs_[c].begin());
  }
  for (auto& channel : floatOutputs_) std::fill(channel.begin(), channel.end(), 0.0f);
  if (effect_->processReplacing != nullptr) {
    const PluginCall call(module_.path().c_str(), "processReplacing");
    effect_->processReplacing(effect_, floatInputPointers_.data(), floatOutputPointers_.data(),
                              frames);
  }
  for (int c = 0; c < outputCount_; ++c) {
    std::copy_n(floatOutputs_[c].begin(), frames, outputs_[c].begin());
  }
}

void PluginInstance::setSamplePosition(std::int64_t samplePosition) {
  samplePosition_ = samplePosition;
}

void PluginInstance::idle() {
  if (wantsIdle_) dispatch("effIdle", effIdle);
}

void PluginInstance::refreshChannelCounts() {
  if (effect_ == nullptr) return;  // the entry point reports counts before it hands the effect
  countsChanged_ = false;
  inputCount_ = std::clamp(effect_->numInputs, 0, kMaxChannels);
  outputCount_ = std::clamp(effect_->numOutputs, 0, kMaxChannels);
  const auto frames = static_cast<std::size_t>(std::max(config_.blockSize, 1));
  // Plug-ins may write one buffer more than they announce; never to memory of another channel.
  inputs_.assign(inputCount_, std::vector<double>(frames, 0.0));
  outputs_.assign(outputCount_, std::vector<double>(frames, 0.0));
  floatInputs_.assign(inputCount_, std::vector<float>(frames, 0.0f));
  floatOutputs_.assign(outputCount_, std::vector<float>(frames, 0.0f));
  inputPointers_.clear();
  outputPointers_.clear();
  floatInputPointers_.clear();
  floatOutputPointers_.clear();
  for (auto& channel : inputs_) inputPointers_.push_back(channel.data());
  for (auto& channel : outputs_) outputPointers_.push_back(channel.data());
  for (auto& channel : floatInputs_) floatInputPointers_.push_back(channel.data());
  for (auto& channel : floatOutputs_) floatOutputPointers_.push_back(channel.data());
}

// Playing from the render position at 120 beats per minute in 4/4: plug-ins that sync to a
// tempo get a steady grid.
const VstTimeInfo* PluginInstance::currentTimeInfo() {
  const double seconds = static_cast<double>(samplePosition_) / config_.sampleRate;
  timeInfo_ = VstTimeInfo{};
  timeInfo_.samplePos = static_cast<double>(samplePosition_);
  timeInfo_.sampleRate = config_.sampleRate;
  timeInfo_.nanoSeconds = seconds * 1e9;
  timeInfo_.tempo = 120.0;
  timeInfo_.ppqPos = seconds * timeInfo_.tempo / 60.0;
  timeInfo_.timeSigNumerator = 4;
  timeInfo_.timeSigDenominator = 4;
  timeInfo_.flags =
      kVstTransportPlaying | kVstNanosValid | kVstPpqPosValid | kVstTempoValid | kVstTimeSigValid;
  return &timeInfo_;
}

void PluginInstance::record(HostEventKind kind, std::int32_t index, float value) {
  events_.push_back(HostEvent{kind, index, value, samplePosition_});
}

VstIntPtr PluginInstance::answerVendorSpecific(std::int32_t index, VstIntPtr value, void* ptr) {
  if (index != kHostExtensionOpcode) return 0;
  if (value == kHostNotifyParameterList && ptr != nullptr) {
    const auto* change = static_cast<const ParameterListChange*>(ptr);
    record(HostEventKind::ParameterListMoved, change->firstIndex,
           static_cast<float>(change->delta));
    return 1;
  }
  if (value == kHostNotifyChannelCounts) {
    record(HostEventKind::ChannelCounts,
           static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(ptr)), 0.0f);
    countsChanged_ = true;
    if (!inProcess_) refreshChannelCounts();
    return 1;
  }
  return 0;
}

VstIntPtr PluginInstance::answer(std::int32_t opcode, std::int32_t index, VstIntPtr value,
                                 void* ptr, float opt) {
  switch (opcode) {
    case audioMasterAutomate:
      record(HostEventKind::Automate, index, opt);
      return 1;
    case audioMasterBeginEdit:
      record(HostEventKind::BeginEdit, index, 0.0f);
      return 1;
    case audioMasterEndEdit:
      record(HostEventKind::EndEdit, index, 0.0f);
      return 1;
    case audioMasterIdle:
      return 1;
    case audioMasterPinConnected:  // 0 means connected
      return index >= 0 && index < (value != 0 ? outputCount_ : inputCount_) ? 0 : 1;
    case audioMasterGetTime:
      return reinterpret_cast<VstIntPtr>(currentTimeInfo());
    case audioMasterIOChanged:
      record(HostEventKind::IOChanged, 0, 0.0f);
      countsChanged_ = true;
      if (!inProcess_) refreshChannelCounts();
      return 1;
    case audioMasterNeedIdle:
      wantsIdle_ = true;
      return 1;
    case audioMasterGetSampleRate:
      return static_cast<VstIntPtr>(config_.sampleRate);
    case audioMasterGetBlockSize:
      return config_.blockSize;
    case audioMasterGetCurrentProcessLevel:
      return inProcess_ ? config_.processLevel : kProcessLevelUser;
    case audioMasterUpdateDisplay:
      return 1;
    case audioMasterVendorSpecific:
      return answerVendorSpecific(index, value, ptr);
    default:
      return answerHostRequest(opcode, index, value, ptr, config_.trackChannels);
  }
}
