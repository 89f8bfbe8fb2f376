#include "host/runtime/host_callback.h"

#include <atomic>
#include <cstring>

#include "host/runtime/crash_guard.h"
#include "host/runtime/host_call_log.h"
#include "host/runtime/plugin_instance.h"
#include "host/services/host_function_table.h"
#include "platform/host_functions.h"

namespace {

std::atomic<PluginInstance*> constructingInstance{nullptr};
constexpr int kVstMaxVendorStringLength = 64;
constexpr int kDefaultTrackChannels = 2;

VstIntPtr copyString(void* ptr, const char* text) {
  if (ptr == nullptr) return 0;
  std::strncpy(static_cast<char*>(ptr), text, kVstMaxVendorStringLength - 1);
  static_cast<char*>(ptr)[kVstMaxVendorStringLength - 1] = '\0';
  return 1;
}

// 1 for what this host does, 0 (not known) for everything else.
VstIntPtr canDo(const void* ptr) {
  if (ptr == nullptr) return 0;
  static constexpr const char* kSupported[] = {"sendVstTimeInfo", "acceptIOChanges", "supplyIdle",
                                               "startStopProcess"};
  for (const char* feature : kSupported) {
    if (std::strcmp(static_cast<const char*>(ptr), feature) == 0) return 1;
  }
  return 0;
}

VstIntPtr answerExtension(std::int32_t index, void* ptr, int trackChannels) {
  if (index == kHostFunctionLookupIndex) {
    return reinterpret_cast<VstIntPtr>(findHostFunction(static_cast<const char*>(ptr)));
  }
  if (index == kHostChannelCountIndex) return trackChannels;
  return 0;
}

PluginInstance* instanceFor(AEffect* effect) {
  if (effect != nullptr && effect->user != nullptr) {
    return static_cast<PluginInstance*>(effect->user);
  }
  return constructingInstance.load();
}

}  // namespace

VstIntPtr answerHostRequest(std::int32_t opcode, std::int32_t index, VstIntPtr /*value*/, void* ptr,
                            int trackChannels) {
  if (opcode == kHostExtensionOpcode) return answerExtension(index, ptr, trackChannels);
  switch (opcode) {
    case audioMasterVersion:
      return kHostVstVersion;
    case audioMasterGetVendorString:
      return copyString(ptr, kHostVendorString);
    case audioMasterGetProductString:
      return copyString(ptr, kHostProductString);
    case audioMasterGetVendorVersion:
      return kHostVendorVersion;
    case audioMasterCanDo:
      return canDo(ptr);
    case audioMasterGetLanguage:         // 1: English
    case audioMasterGetAutomationState:  // 1: off, the host does not record
      return 1;
    default:
      return 0;
  }
}

VstIntPtr hostCallbackEntry(AEffect* effect, std::int32_t opcode, std::int32_t index,
                            VstIntPtr value, void* ptr, float opt) {
  const PluginCall hostSide(nullptr, nullptr);  // a fault in here is the host's, not the plug-in's
  if (PluginInstance* instance = instanceFor(effect)) {
    if (std::ostream* log = instance->config().callLog) {
      writeHostCall(*log, opcode, index, value, ptr, opt);
    }
    return instance->answer(opcode, index, value, ptr, opt);
  }
  return answerHostRequest(opcode, index, value, ptr, kDefaultTrackChannels);
}

ConstructionScope::ConstructionScope(PluginInstance* instance)
    : previous_(constructingInstance.exchange(instance)) {}

ConstructionScope::~ConstructionScope() {
  constructingInstance.store(previous_);
}
