// The host callback every plug-in instance receives. Requests made with the instance's effect go
// to its PluginInstance; requests without one (the function lookups and the channel-count query
// that an entry point makes before its effect exists) are answered for the instance being
// created.
#pragma once

#include <cstdint>

#include "platform/spatiola_identity.h"
#include "platform/vst2.h"

class PluginInstance;

constexpr std::int32_t kHostVstVersion = 2400;
// The host comes with the plug-in: same vendor, same version.
constexpr std::int32_t kHostVendorVersion = kSpatiolaVersion;
constexpr const char* kHostVendorString = kSpatiolaVendor;
constexpr const char* kHostProductString = "Spatiola Host";

VstIntPtr hostCallbackEntry(AEffect* effect, std::int32_t opcode, std::int32_t index,
                            VstIntPtr value, void* ptr, float opt);

// Answers that need no instance: the version, strings, capabilities and the extension lookups.
// `trackChannels` is answered to the channel-count query.
VstIntPtr answerHostRequest(std::int32_t opcode, std::int32_t index, VstIntPtr value, void* ptr,
                            int trackChannels);

// [UI thread] Marks the instance being created, for the requests of its entry point.
class ConstructionScope {
 public:
  explicit ConstructionScope(PluginInstance* instance);
  ~ConstructionScope();
  ConstructionScope(const ConstructionScope&) = delete;
  ConstructionScope& operator=(const ConstructionScope&) = delete;

 private:
  PluginInstance* previous_;
};
