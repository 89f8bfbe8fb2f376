// One instance of a loaded plug-in: the AEffect, the host's answers to its callback, its audio
// buffers and the record of what it reported (automation, list and count changes).
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "host/runtime/plugin_module.h"
#include "platform/vst2.h"

struct HostConfig {
  double sampleRate = 48000.0;
  int blockSize = 512;
  // Answered to the channel-count query: the track's channels, the input file's when rendering.
  int trackChannels = 2;
  // Answered to audioMasterGetCurrentProcessLevel while processing: 4 offline, 2 real time.
  int processLevel = 4;
  // Every call the plug-in makes to the host is written here (host_call_log.h) when set.
  std::ostream* callLog = nullptr;
};

enum class HostEventKind {
  Automate,            // index, value
  BeginEdit,           // index
  EndEdit,             // index
  ParameterListMoved,  // index = first moved, value = number added (negative when removed)
  ChannelCounts,       // index = the packed word or the bare speaker count
  IOChanged,
};

struct HostEvent {
  HostEventKind kind;
  std::int32_t index;
  float value;
  std::int64_t samplePosition;  // the render position when it was reported
};

class PluginInstance {
 public:
  // Creates the effect through the module's entry point and checks it; throws HostError when the
  // plug-in refuses or hands back something that is not an effect.
  PluginInstance(const PluginModule& module, const HostConfig& config);
  ~PluginInstance();  // suspends when running, then effClose
  PluginInstance(const PluginInstance&) = delete;
  PluginInstance& operator=(const PluginInstance&) = delete;

  const PluginModule& module() const { return module_; }
  const HostConfig& config() const { return config_; }
  AEffect& effect() { return *effect_; }
  int inputCount() const { return inputCount_; }
  int outputCount() const { return outputCount_; }
  int parameterCount() const { return effect_->numParams; }
  bool hasDoublePrecision() const;

  // Every call into the plug-in goes through here so that a crash names it.
  VstIntPtr dispatch(const char* callName, std::int32_t opcode, std::int32_t index = 0,
                     VstIntPtr value = 0, void* ptr = nullptr, float opt = 0.0f);

  std::string effectName();
  std::string vendorString();
  std::string productString();
  std::int32_t vendorVersion();
  std::int32_t vstVersion();
  std::string parameterName(int index);
  std::string parameterDisplay(int index);
  std::string parameterLabel(int index);
  float parameter(int index);
  void setParameter(int index, float value);
  // -1 when no parameter has that exact name.
  int findParameter(const std::string& name);

  // Throws HostError when the plug-in keeps no chunks or hands back none.
  std::vector<unsigned char> chunk();
  void setChunk(const std::vector<unsigned char>& bytes);

  // effOpen, sample rate, block size, precision; then switched on and started, and given an
  // empty block so that counts and gains are settled before the first sample.
  void start();
  void stop();
  bool running() const { return running_; }

  // [render thread] Processes `frames` (0..blockSize) samples from the input buffers into the
  // output buffers, re-reads the channel counts, then gives the plug-in its idle call when it
  // asked for one.
  void process(int frames);
  double* inputBuffer(int channel) { return inputs_[channel].data(); }
  const double* outputBuffer(int channel) const { return outputs_[channel].data(); }
  void setSamplePosition(std::int64_t samplePosition);
  std::int64_t samplePosition() const { return samplePosition_; }
  // effIdle when the plug-in asked for idle calls (audioMasterNeedIdle).
  void idle();
  bool wantsIdle() const { return wantsIdle_; }

  const std::vector<HostEvent>& events() const { return events_; }

  // [the instance's thread] The answer to one callback request of this instance's plug-in, which
  // calls back inside dispatch, process and idle; the commands make all of those on one thread.
  // The event record and the channel counts take no lock: requests from other threads are not
  // supported.
  VstIntPtr answer(std::int32_t opcode, std::int32_t index, VstIntPtr value, void* ptr, float opt);

 private:
  void refreshChannelCounts();
  void processDouble(int frames);
  void processFloat(int frames);
  const VstTimeInfo* currentTimeInfo();
  void record(HostEventKind kind, std::int32_t index, float value);
  VstIntPtr answerVendorSpecific(std::int32_t index, VstIntPtr value, void* ptr);
  std::string dispatchString(const char* callName, std::int32_t opcode, std::int32_t index);

  const PluginModule& module_;
  HostConfig config_;
  AEffect* effect_ = nullptr;
  int inputCount_ = 0;
  int outputCount_ = 0;
  bool running_ = false;
  bool opened_ = false;
  bool inProcess_ = false;
  bool countsChanged_ = false;
  bool wantsIdle_ = false;
  std::int64_t samplePosition_ = 0;
  VstTimeInfo timeInfo_{};
  std::vector<std::vector<double>> inputs_;
  std::vector<std::vector<double>> outputs_;
  std::vector<double*> inputPointers_;
  std::vector<double*> outputPointers_;
  std::vector<std::vector<float>> floatInputs_;
  std::vector<std::vector<float>> floatOutputs_;
  std::vector<float*> floatInputPointers_;
  std::vector<float*> floatOutputPointers_;
  std::vector<HostEvent> events_;
};
