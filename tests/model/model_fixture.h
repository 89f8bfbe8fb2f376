// A recording host and instances made the way the plug-in's entry point makes them.
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "model/counts.h"
#include "model/field_table.h"
#include "model/host_link.h"
#include "model/layouts.h"
#include "platform/host_functions.h"

struct HostCall {
  std::int32_t opcode;
  std::int32_t index;
  VstIntPtr value;
  float opt;
  ParameterListChange change;  // the record behind ptr of a parameter-list notification
  VstIntPtr ptrValue;          // ptr as an integer (channel-count notifications)
  AEffect* effect;
};

inline HostCall recordOf(AEffect* effect, std::int32_t opcode, std::int32_t index, VstIntPtr value,
                         void* ptr, float opt) {
  HostCall call{opcode, index, value, opt, {}, reinterpret_cast<VstIntPtr>(ptr), effect};
  if (opcode == audioMasterVendorSpecific && value == kHostNotifyParameterList && ptr) {
    call.change = *static_cast<ParameterListChange*>(ptr);
  }
  return call;
}

// Records every call the model makes through hostCallback. Install one per test.
class RecordingHost {
 public:
  RecordingHost() {
    active_ = this;
    hostCallback = &RecordingHost::callback;
  }
  ~RecordingHost() {
    hostCallback = nullptr;
    active_ = nullptr;
  }
  std::vector<HostCall> calls() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return calls_;
  }
  void clear() {
    std::lock_guard<std::mutex> lock(mutex_);
    calls_.clear();
  }

 private:
  static VstIntPtr callback(AEffect* effect, std::int32_t opcode, std::int32_t index,
                            VstIntPtr value, void* ptr, float opt) {
    std::lock_guard<std::mutex> lock(active_->mutex_);
    active_->calls_.push_back(recordOf(effect, opcode, index, value, ptr, opt));
    return 0;
  }

  static inline RecordingHost* active_ = nullptr;
  mutable std::mutex mutex_;
  std::vector<HostCall> calls_;
};

// An instance with `channels` inputs and the default layout, as a host would receive it; the
// channel count is taken as it stands (construction turns counts outside 1..63 into 2).
inline std::unique_ptr<PannerPlugin> makeInstance(int channels) {
  auto plugin = std::make_unique<PannerPlugin>();
  plugin->host.effect.object = plugin.get();
  plugin->host.effect.numInputs = channels;
  plugin->host.effect.numOutputs = channels;
  plugin->host.effect.numParams = parameterCountFor(0, 0);
  setInputCount(*plugin, channels);
  applyDefaultLayout(*plugin, channels);
  return plugin;
}
