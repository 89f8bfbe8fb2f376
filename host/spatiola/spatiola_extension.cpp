#include "host/spatiola/spatiola_extension.h"

#include <cmath>
#include <numbers>

#include "host/runtime/plugin_instance.h"
#include "host/spatiola/reach_check.h"
#include "host/spatiola/spatiola_layout.h"
#include "model/field_table.h"
#include "model/panner_plugin.h"
#include "platform/spatiola_identity.h"
#include "plugin/state_chunk.h"

namespace {

class SpatiolaExtension final : public PluginExtension {
 public:
  bool recognises(const AEffect& effect) const override {
    return effect.uniqueID == kSpatiolaUniqueId;
  }

  void applyLayout(PluginInstance& instance, const std::string& layout) const override {
    applySpatiolaLayout(instance, layout);
  }

  void setInputCount(PluginInstance& instance, int inputs) const override {
    setSpatiolaInputCount(instance, inputs);
  }

  // The speakers' names, as their gain parameters carry them ("front left gain").
  std::vector<std::string> outputNames(PluginInstance& instance) const override {
    const std::string suffix =
        std::string(" ") + fieldOfParameter(kSpeakerFields, kSpkGain).parameterWord;
    std::vector<std::string> names;
    for (int s = 0; s < instance.outputCount(); ++s) {
      std::string name =
          instance.parameterName(speakerParameterIndex(instance.inputCount(), s, kSpkGain));
      if (name.size() < suffix.size() ||
          name.compare(name.size() - suffix.size(), suffix.size(), suffix) != 0) {
        return {};
      }
      names.push_back(name.substr(0, name.size() - suffix.size()));
    }
    return names;
  }

  // Read from the plug-in's state block into a model of its own.
  std::vector<std::string> setupWarnings(PluginInstance& instance) const override {
    const std::vector<unsigned char> block = instance.chunk();
    PannerPlugin model;
    readStateChunk(model, block.data(), static_cast<std::int32_t>(block.size()));
    return reachWarnings(model);
  }

  // Every input circles the room and rises and falls.
  void moveParameters(PluginInstance& instance, double phase) const override {
    for (int i = 0; i < instance.inputCount(); ++i) {
      const double angle = phase + 2.0 * std::numbers::pi * i / instance.inputCount();
      instance.setParameter(inputParameterIndex(i, kInX),
                            static_cast<float>(0.5 + 0.4 * std::sin(angle)));
      instance.setParameter(inputParameterIndex(i, kInY),
                            static_cast<float>(0.5 + 0.4 * std::cos(angle)));
      instance.setParameter(inputParameterIndex(i, kInZ),
                            static_cast<float>(0.5 + 0.3 * std::sin(0.37 * angle)));
    }
  }
};

}  // namespace

const PluginExtension& spatiolaExtension() {
  static const SpatiolaExtension extension;
  return extension;
}
