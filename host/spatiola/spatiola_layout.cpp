#include "host/spatiola/spatiola_layout.h"

#include "host/runtime/host_error.h"
#include "host/runtime/plugin_instance.h"
#include "model/counts.h"
#include "model/host_link.h"
#include "model/layouts.h"
#include "platform/win32_types.h"
#include "plugin/state_chunk.h"

namespace {

constexpr int kRingMinimum = 32;
constexpr const char* kRingSuffix = " ring";

bool isCount(const std::string& text) {
  return !text.empty() && text.size() <= 3 &&
         text.find_first_not_of("0123456789") == std::string::npos;
}

short shiftHeld(int virtualKey) {
  return virtualKey == VK_SHIFT ? static_cast<short>(0x8000) : 0;
}

// A user setup of `count` speakers on the sphere: the model places them so while Shift is held,
// as the editor's count box does.
void setRingSpeakerCount(PannerPlugin& model, int count) {
  short (*const saved)(int) = asyncKeyState;
  asyncKeyState = shiftHeld;
  setSpeakerCount(model, count);
  asyncKeyState = saved;
}

int userSpeakerCount(const std::string& layout, const std::string& count) {
  const int n = std::stoi(count);
  if (n < 1 || n > kMaxSpeakers) {
    throw UsageError("--layout " + layout + ": a user setup has 1 to 64 speakers");
  }
  return n;
}

bool relayoutRing(PannerPlugin& model, const std::string& layout) {
  if (!layout.ends_with(kRingSuffix)) return false;
  const std::string count = layout.substr(0, layout.size() - std::string(kRingSuffix).size());
  if (!isCount(count)) return false;
  const int n = userSpeakerCount(layout, count);
  if (n < kRingMinimum) {
    throw UsageError("--layout '" + layout + "': a ring has 32 to 64 speakers");
  }
  setRingSpeakerCount(model, n);
  return true;
}

std::string presetList() {
  std::string list;
  for (int i = 1; i < kLayoutPresetCount; ++i) {
    list += std::string(i > 1 ? ", " : "") + "\"" + kLayoutPresetNames[i] + "\"";
  }
  return list;
}

// The preset index of a name, or a user setup of a count; throws for anything else.
void relayout(PannerPlugin& model, const std::string& layout) {
  if (isCount(layout)) {
    setSpeakerCount(model, userSpeakerCount(layout, layout));
    return;
  }
  if (relayoutRing(model, layout)) return;
  if (layout == kLayoutPresetNames[kLayoutUserSetup]) {
    setSpeakerCount(model, model.speakerCount());
    return;
  }
  for (int i = 1; i < kLayoutPresetCount; ++i) {
    if (layout == kLayoutPresetNames[i]) {
      applyLayoutPreset(model, i);
      return;
    }
  }
  throw UsageError("--layout '" + layout +
                   "' is neither a speaker count (\"12\", \"40 ring\") nor one of " + presetList());
}

// Reads the plug-in's state block into a model, changes it there and loads it back, so that
// everything the change does not touch is kept.
template <typename Change>
void reshape(PluginInstance& instance, Change change) {
  const std::vector<unsigned char> current = instance.chunk();
  PannerPlugin model;
  readStateChunk(model, current.data(), static_cast<std::int32_t>(current.size()));
  change(model);
  void* data = nullptr;
  const std::int32_t length = writeStateChunk(model, &data);
  const auto* bytes = static_cast<const unsigned char*>(data);
  instance.setChunk(std::vector<unsigned char>(bytes, bytes + length));
}

}  // namespace

void applySpatiolaLayout(PluginInstance& instance, const std::string& layout) {
  reshape(instance, [&layout](PannerPlugin& model) { relayout(model, layout); });
}

void setSpatiolaInputCount(PluginInstance& instance, int inputs) {
  if (inputs < 1 || inputs > kMaxInputs) {
    throw UsageError("Spatiola takes 1 to 64 inputs, not " + std::to_string(inputs));
  }
  reshape(instance, [inputs](PannerPlugin& model) { setInputCount(model, inputs); });
}
