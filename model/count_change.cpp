#include "model/count_change.h"

#include <algorithm>
#include <cstdio>

#include "model/field_table.h"
#include "model/host_link.h"
#include "platform/host_functions.h"

namespace {

// The strip shows 16 rows; once the count no longer reaches past the offset, start over at 0.
void resetFaderOffset(std::int32_t& offset, int count) {
  if (count - 11 <= offset) offset = 0;
}

}  // namespace

void finishCountChange(PannerPlugin& plugin, const CountChange& change) {
  plugin.model.changeFlags.fetch_or(kChangeCounts);
  if (change.kind == CountKind::Inputs) {
    plugin.model.gainRows = -1;
    resetFaderOffset(plugin.editor.inputFaderOffset, change.newCount);
  } else {
    plugin.model.gainCols = -1;
    resetFaderOffset(plugin.editor.speakerFaderOffset, change.newCount);
  }
  plugin.host.effect.numParams = parameterCountFor(plugin.inputCount(), plugin.speakerCount());
}

void notifyCountChange(PannerPlugin& plugin, const CountChange& change) {
  if (change.oldCount == change.newCount) return;
  const int firstCount = std::min(change.oldCount, change.newCount);
  const int delta = change.newCount - change.oldCount;
  ParameterListChange moved{};
  if (change.kind == CountKind::Inputs) {
    moved = {parameterCountFor(firstCount, 0), kParametersPerInput * delta};
  } else {
    moved = {parameterCountFor(change.inputCount, firstCount), kParametersPerSpeaker * delta};
  }
  callHost(plugin, audioMasterVendorSpecific, kHostExtensionOpcode, kHostNotifyParameterList,
           &moved, 0.0f);
  callHost(plugin, audioMasterIOChanged, 0, 0, nullptr, 0.0f);
  if (change.kind == CountKind::Speakers) {
    // The host takes the speaker count in the pointer argument itself.
    void* count = reinterpret_cast<void*>(  // NOLINT(performance-no-int-to-ptr)
        static_cast<std::intptr_t>(change.newCount));
    callHost(plugin, audioMasterVendorSpecific, kHostExtensionOpcode, kHostNotifyChannelCounts,
             count, 0.0f);
  }
}

void speakerNameFor(int index, char* name, int capacity) {
  const char letter = static_cast<char>('A' + index % 26);
  if (index > 25) {
    std::snprintf(name, static_cast<std::size_t>(capacity), "speaker %c%d", letter, index / 26 + 1);
  } else {
    std::snprintf(name, static_cast<std::size_t>(capacity), "speaker %c", letter);
  }
}
