// A minimal recording host for the conformance tests: loads the built plug-in with dlopen, serves
// the host functions by name and records every other callback.
#pragma once

#include <dlfcn.h>

#include <string>
#include <vector>

#include "host_double.h"
#include "platform/plask_api.h"

struct RecordedCall {
  AEffect* effect;
  std::int32_t opcode;
  std::int32_t index;
  VstIntPtr value;
  float opt;
  ParameterListChange change;  // behind ptr of a parameter-list notification
  VstIntPtr ptrValue;
};

class PluginLibrary {
 public:
  PluginLibrary() {
    handle_ = dlopen(SPATIOLA_PLUGIN_PATH, RTLD_NOW | RTLD_LOCAL);
    if (handle_ == nullptr) return;
    main_ = reinterpret_cast<AEffect* (*)(audioMasterCallback)>(dlsym(handle_, "VSTPluginMain"));
    dllMain_ =
        reinterpret_cast<int (*)(HINSTANCE, DWORD, PlaskGetter)>(dlsym(handle_, "PLASK_dllMain"));
    moduleMain_ = reinterpret_cast<int (*)(HINSTANCE, DWORD)>(dlsym(handle_, "DllMain"));
  }
  bool loaded() const { return handle_ != nullptr && main_ && dllMain_ && moduleMain_; }
  AEffect* create(audioMasterCallback callback) const { return main_(callback); }
  int plaskDllMain(DWORD reason, PlaskGetter getter) const {
    return dllMain_(reinterpret_cast<HINSTANCE>(handle_), reason, getter);
  }
  int dllMain(DWORD reason) const {
    return moduleMain_(reinterpret_cast<HINSTANCE>(handle_), reason);
  }

  static const PluginLibrary& instance() {
    static const PluginLibrary library;
    return library;
  }

 private:
  void* handle_ = nullptr;
  AEffect* (*main_)(audioMasterCallback) = nullptr;
  int (*dllMain_)(HINSTANCE, DWORD, PlaskGetter) = nullptr;
  int (*moduleMain_)(HINSTANCE, DWORD) = nullptr;
};

// The host side of one test. Only one is active at a time (the callback is a plain function).
class TestHost {
 public:
  TestHost() { active_ = this; }
  ~TestHost() { active_ = nullptr; }

  bool serveIniFile = true;
  VstIntPtr channelCount = 2;
  std::vector<std::string> lookups;
  std::vector<RecordedCall> calls;

  static VstIntPtr callback(AEffect* effect, std::int32_t opcode, std::int32_t index,
                            VstIntPtr value, void* ptr, float opt) {
    return active_ ? active_->answer(effect, opcode, index, value, ptr, opt) : 0;
  }

  AEffect* create() const { return PluginLibrary::instance().create(&TestHost::callback); }

 private:
  VstIntPtr answer(AEffect* effect, std::int32_t opcode, std::int32_t index, VstIntPtr value,
                   void* ptr, float opt) {
    if (opcode == kHostExtensionOpcode && index == kHostFunctionLookupIndex) {
      lookups.push_back(static_cast<const char*>(ptr));
      return *hostQueryAnswer(opcode, index, ptr, channelCount, serveIniFile);
    }
    RecordedCall call{effect, opcode, index, value, opt, {}, reinterpret_cast<VstIntPtr>(ptr)};
    if (opcode == audioMasterVendorSpecific && value == kHostNotifyParameterList && ptr) {
      call.change = *static_cast<ParameterListChange*>(ptr);
    }
    calls.push_back(call);
    return hostQueryAnswer(opcode, index, ptr, channelCount).value_or(0);
  }

  static inline TestHost* active_ = nullptr;
};

inline std::string textOf(AEffect* effect, std::int32_t opcode, std::int32_t index = 0) {
  char buffer[256] = "unchanged";
  dispatch(effect, opcode, index, 0, buffer);
  return buffer;
}

inline void closeEffect(AEffect* effect) {
  if (effect != nullptr) dispatch(effect, effClose);
}
