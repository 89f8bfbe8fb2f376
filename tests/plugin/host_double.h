// The host side every test of the plug-in shell needs: the lookup by name, the channel-count query
// and the dispatcher's calling convention.
#pragma once

#include <errno.h>  // program_invocation_short_name

#include <cstring>
#include <optional>
#include <string>

#include "model/panner_plugin.h"
#include "platform/host_functions.h"
#include "platform/vst2.h"

// A settings file per test binary: binaries run side by side share none.
inline const char* testIniFile() {
  static const std::string path =
      std::string("/tmp/spatiola-") + program_invocation_short_name + ".ini";
  return path.c_str();
}

// [any thread] The answer to the lookup by name (the ini file only) and to the channel-count query;
// nothing for every other call, which is the caller's to handle.
inline std::optional<VstIntPtr> hostQueryAnswer(std::int32_t opcode, std::int32_t index, void* ptr,
                                                VstIntPtr channels, bool serveIniFile = true) {
  if (opcode != kHostExtensionOpcode) return std::nullopt;
  if (index == kHostChannelCountIndex) return channels;
  if (index != kHostFunctionLookupIndex) return std::nullopt;
  const bool ini = serveIniFile && std::strcmp(static_cast<const char*>(ptr), "get_ini_file") == 0;
  return ini ? reinterpret_cast<VstIntPtr>(&testIniFile) : 0;
}

// What the plug-in answers a host's "can do" questions; the empty text and near misses answer 0.
struct CanDoAnswer {
  const char* text;
  VstIntPtr answer;
};
inline constexpr CanDoAnswer kCanDoAnswers[] = {
    {"hasTolvekExtensions", static_cast<std::int32_t>(0xbeef0000u)},
    {"hasTolvekViewAsConfig", static_cast<std::int32_t>(0xbeef0000u)},
    {"wantsChannelCountNotifications", 1},
    {"hasTolvekEmbeddedUI", static_cast<std::int32_t>(0xbeef0000u)},
    {"hasTolvekExtensionsX", 0},
    {"receiveVstEvents", 0},
    {"", 0}};

inline VstIntPtr dispatch(AEffect* effect, std::int32_t opcode, std::int32_t index = 0,
                          VstIntPtr value = 0, void* ptr = nullptr, float opt = 0.0f) {
  return effect->dispatcher(effect, opcode, index, value, ptr, opt);
}

inline PannerPlugin& pluginOf(AEffect* effect) {
  return *static_cast<PannerPlugin*>(effect->object);
}
