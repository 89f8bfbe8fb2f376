// A minimal recording host for the conformance tests: loads the built plug-in with dlopen, serves
// the host functions by name and records every other callback.
#pragma once

#include <dlfcn.h>

#include <string>
#include <vector>

#include "../model/model_fixture.h"
#include "host_double.h"
#include "platform/plask_api.h"

// The built plug-in, loaded once per process; its exports are null when it failed to load.
struct PluginLibrary {
  void* handle = dlopen(SPATIOLA_PLUGIN_PATH, RTLD_NOW | RTLD_LOCAL);
  AEffect* (*create)(audioMasterCallback) =
      symbol<AEffect* (*)(audioMasterCallback)>("VSTPluginMain");
  int (*plaskMain)(HINSTANCE, DWORD,
                   PlaskGetter) = symbol<int (*)(HINSTANCE, DWORD, PlaskGetter)>("PLASK_dllMain");

  template <typename Function>
  Function symbol(const char* name) const {
    return handle ? reinterpret_cast<Function>(dlsym(handle, name)) : nullptr;
  }
  bool loaded() const { return create && plaskMain; }
  int plaskDllMain(DWORD reason, PlaskGetter getter) const {
    return plaskMain(static_cast<HINSTANCE>(handle), reason, getter);
  }
  static const PluginLibrary& instance() {
    static const PluginLibrary library;
    return library;
  }
};

// The host side of one test. Only one is active at a time (the callback is a plain function).
class TestHost {
 public:
  TestHost() { active_ = this; }
  ~TestHost() { active_ = nullptr; }

  bool serveIniFile = true;
  VstIntPtr channelCount = 2;
  std::vector<std::string> lookups;
  std::vector<HostCall> calls;

  static VstIntPtr callback(AEffect* effect, std::int32_t opcode, std::int32_t index,
                            VstIntPtr value, void* ptr, float) {
    return active_ ? active_->answer(effect, opcode, index, value, ptr) : 0;
  }

  AEffect* create() const { return PluginLibrary::instance().create(&TestHost::callback); }

 private:
  VstIntPtr answer(AEffect* effect, std::int32_t opcode, std::int32_t index, VstIntPtr value,
                   void* ptr) {
    if (opcode == kHostExtensionOpcode && index == kHostFunctionLookupIndex) {
      lookups.push_back(static_cast<const char*>(ptr));
      return *hostQueryAnswer(opcode, index, ptr, channelCount, serveIniFile);
    }
    calls.push_back(recordOf(effect, opcode, index, value, ptr, 0.0f));
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
