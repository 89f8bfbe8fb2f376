#include "plugin/channel_arrangement.h"

#include <algorithm>

#include "model/channels.h"
#include "model/field_table.h"
#include "model/host_link.h"
#include "model/layouts.h"
#include "platform/host_functions.h"

namespace {

constexpr std::uint32_t kEditorStartedChange = 0x10000;

bool relayoutUsedUp(const PannerPlugin& plugin) {
  return plugin.host.pendingArrangement.load() != 0 || plugin.host.stateLoaded.load() ||
         plugin.host.arrangementApplied.load();
}

bool wantsLargerLayout(const PannerPlugin& plugin, std::int32_t channelCount) {
  return channelCount > plugin.speakerCount() && plugin.model.layoutPreset != kLayoutUserSetup;
}

// Remembers the counts from before the change for the idle report, then lays out the preset.
void applyHostLayout(PannerPlugin& plugin, std::int32_t channelCount) {
  const auto oldCounts =
      static_cast<std::uint32_t>(plugin.speakerCount() << 8 | plugin.inputCount());
  plugin.host.pendingArrangement.store(oldCounts);
  applyLayoutPreset(plugin, layoutPresetForHostChannels(channelCount));
}

void clearMetersAndMatrices(PannerPlugin& plugin) {
  for (auto& peak : plugin.mix.inputPeaks) peak.store(0.0, std::memory_order_relaxed);
  for (auto& peak : plugin.mix.speakerPeaks) peak.store(0.0, std::memory_order_relaxed);
  plugin.model.gainRows = -1;
  plugin.model.gainCols = -1;
}

void notifyParameterList(PannerPlugin& plugin, std::int32_t firstIndex, std::int32_t delta) {
  ParameterListChange change{firstIndex, delta};
  callHost(plugin, audioMasterVendorSpecific, kHostExtensionOpcode, kHostNotifyParameterList,
           &change, 0.0f);
}

void notifyChannelCounts(PannerPlugin& plugin, std::intptr_t packedOrCount) {
  callHost(plugin, audioMasterVendorSpecific, kHostExtensionOpcode, kHostNotifyChannelCounts,
           reinterpret_cast<void*>(packedOrCount), 0.0f);
}

std::intptr_t packedChannelCounts(int speakers, int inputs) {
  return static_cast<std::intptr_t>(speakers) << 20 | static_cast<std::intptr_t>(inputs) << 12 |
         0xF00;
}

}  // namespace

void changeArrangementFromStandardCall(PannerPlugin& plugin, std::int32_t channelCount) {
  if (relayoutUsedUp(plugin) || !wantsLargerLayout(plugin, channelCount)) return;
  plugin.host.arrangementApplied.store(true);
  applyHostLayout(plugin, channelCount);
}

void changeArrangementFromExtension(PannerPlugin& plugin, std::int32_t channelCount) {
  if (relayoutUsedUp(plugin)) return;
  plugin.host.arrangementApplied.store(true);
  if (wantsLargerLayout(plugin, channelCount)) applyHostLayout(plugin, channelCount);
  {
    ModelLock lock(plugin);
    clearMetersAndMatrices(plugin);
  }
  plugin.model.changeFlags.fetch_or(kChangeCounts);
}

void processPendingArrangement(PannerPlugin* plugin) {
  if (plugin == nullptr) return;
  const std::uint32_t pending = plugin->host.pendingArrangement.exchange(0);
  if (pending == 0) return;
  const int oldInputs = static_cast<int>(pending & 0xFF);
  const int oldSpeakers = static_cast<int>((pending >> 8) & 0xFF);
  const bool editorStarted = (pending & kEditorStartedChange) != 0;
  const int newInputs = plugin->inputCount();
  const int newSpeakers = plugin->speakerCount();

  if (oldInputs != newInputs) {
    notifyParameterList(*plugin, parameterCountFor(std::min(oldInputs, newInputs), 0),
                        kParametersPerInput * (newInputs - oldInputs));
  }
  if (oldSpeakers == newSpeakers && oldInputs == newInputs) return;
  {
    ModelLock lock(*plugin);  // setParameter on the automation thread reads it under the lock
    plugin->host.effect.numParams = parameterCountFor(newInputs, newSpeakers);
  }
  notifyChannelCounts(*plugin, packedChannelCounts(newSpeakers, newInputs));
  if (oldSpeakers != newSpeakers && editorStarted) {
    notifyChannelCounts(*plugin, newSpeakers);
    callHost(*plugin, audioMasterIOChanged, 0, 0, nullptr, 0.0f);
  }
}

void resetMeters(PannerPlugin& plugin) {
  ModelLock lock(plugin);
  clearMetersAndMatrices(plugin);
}
