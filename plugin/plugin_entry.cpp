#include "plugin/plugin_entry.h"

#include <new>

#include "engine/audio_process.h"
#include "model/counts.h"
#include "model/field_table.h"
#include "model/host_link.h"
#include "model/layouts.h"
#include "model/parameters.h"
#include "platform/host_functions.h"
#include "platform/spatiola_identity.h"
#include "plugin/editor_link.h"
#include "plugin/exports.h"
#include "plugin/host_api.h"
#include "plugin/window_layer.h"

std::int32_t liveInstanceCount = 0;

namespace {

constexpr std::int32_t kDefaultChannels = 2;
constexpr std::int32_t kMaxHostChannels = 63;
constexpr std::int32_t kEffectFlags =
    effFlagsHasEditor | effFlagsCanReplacing | effFlagsProgramChunks | effFlagsCanDoubleReplacing;

// The track's channel count as the host reports it; anything outside 1..63 means stereo.
std::int32_t queryTrackChannels(audioMasterCallback callback) {
  if (callback == nullptr) return kDefaultChannels;
  const VstIntPtr answer = callback(nullptr, kHostExtensionOpcode, kHostChannelCountIndex,
                                    kHostChannelCountQueryValue, nullptr, 0.0f);
  return answer >= 1 && answer <= kMaxHostChannels ? static_cast<std::int32_t>(answer)
                                                   : kDefaultChannels;
}

void fillEffect(PannerPlugin& plugin, std::int32_t channels) {
  AEffect& effect = plugin.host.effect;
  effect = AEffect{};
  effect.magic = kEffectMagic;
  effect.dispatcher = &dispatcher;
  effect.process = &processAccumulating;
  effect.setParameter = &setParameterSlot;
  effect.getParameter = &getParameterSlot;
  effect.numPrograms = 1;
  effect.numParams = parameterCountFor(plugin.inputCount(), plugin.speakerCount());
  effect.numInputs = channels;
  effect.numOutputs = channels;
  effect.flags = kEffectFlags;
  effect.ioRatio = 1.0f;
  effect.object = &plugin;
  effect.uniqueID = kSpatiolaUniqueId;
  effect.version = kSpatiolaVersion;
  effect.processReplacing = &processReplacing;
  effect.processDoubleReplacing = &processDoubleReplacing;
}

void clearMeters(PannerPlugin& plugin) {
  for (auto& peak : plugin.mix.inputPeaks) peak.store(0.0, std::memory_order_relaxed);
  for (auto& peak : plugin.mix.speakerPeaks) peak.store(0.0, std::memory_order_relaxed);
}

void registerFirstInstance() {
  if (liveInstanceCount++ != 0) return;
  if (const PlaskControlCreator creator = spaceViewControlCreator()) {
    plaskCall<PlaskId::PLASK_RegisterCustomControlCreator>(creator);
  }
}

void unregisterLastInstance() {
  if (--liveInstanceCount != 0) return;
  if (const PlaskControlCreator creator = spaceViewControlCreator()) {
    plaskCall<PlaskId::PLASK_UnregisterCustomControlCreator>(creator);
  }
  releaseSharedDrawingResources();
}

PannerPlugin* newInstance() {
  auto* plugin = new (std::nothrow) PannerPlugin;
  if (plugin == nullptr) return nullptr;
  if (!plugin->host.mutexReady || !createMixEngine(*plugin)) {
    delete plugin;
    return nullptr;
  }
  return plugin;
}

AEffect* createInstance(audioMasterCallback callback) {
  hostCallback = callback;
  if (callback != nullptr) fetchHostFunctions(callback);
  if (hostApi.get_ini_file == nullptr) return nullptr;

  PannerPlugin* plugin = newInstance();
  if (plugin == nullptr) return nullptr;
  const std::int32_t channels = queryTrackChannels(callback);
  fillEffect(*plugin, channels);
  setInputCount(*plugin, channels);
  applyDefaultLayout(*plugin, channels);
  clearMeters(*plugin);
  plugin->model.gainRows = -1;
  plugin->model.gainCols = -1;
  registerFirstInstance();
  return &plugin->host.effect;
}

}  // namespace

void destroyInstance(PannerPlugin* plugin) {
  if (plugin->host.editorWindow != nullptr)
    plaskCall<PlaskId::DestroyWindow>(plugin->host.editorWindow);
  unregisterLastInstance();
  ModelLock lock(*plugin);
  plugin->model.inputs.release();
  plugin->model.speakers.release();
  plugin->mix.targetGains.release();
  plugin->mix.appliedGains.release();
  plugin->mix.gainSteps.release();
  destroyMixEngine(*plugin);
}

// [host, UI thread] The only way the host creates an instance.
extern "C" SPATIOLA_EXPORT AEffect* VSTPluginMain(audioMasterCallback callback) noexcept {
  try {
    return createInstance(callback);
  } catch (...) {
    return nullptr;
  }
}
