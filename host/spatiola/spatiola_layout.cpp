#include "host/spatiola/spatiola_layout.h"

#include "host/runtime/host_error.h"
#include "host/runtime/plugin_instance.h"
#include "model/counts.h"
#include "model/layouts.h"
#include "plugin/state_chunk.h"

namespace {

bool isCount(const std::string& text) {
  return !text.empty() && text.size() <= 3 &&
         text.find_first_not_of("0123456789") == std::string::npos;
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
    const int count = std::stoi(layout);
    if (count < 1 || count > kMaxSpeakers) {
      throw HostError("--layout " + layout + ": a user setup has 1 to 64 speakers");
    }
    setSpeakerCount(model, count);
    return;
  }
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
  throw HostError("--layout '" + layout + "' is neither a speaker count nor one of " +
                  presetList());
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
    throw HostError("Spatiola takes 1 to 64 inputs, not " + std::to_string(inputs));
  }
  reshape(instance, [inputs](PannerPlugin& model) { setInputCount(model, inputs); });
}
