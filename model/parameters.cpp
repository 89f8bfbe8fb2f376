#include "model/parameters.h"

#include <cmath>

#include "model/counts.h"
#include "model/field_access.h"
#include "model/host_link.h"
#include "model/parameter_index.h"

namespace {

const InputChannelField& inputField(int offset) {
  return fieldOfParameter(kInputFields, offset);
}
const SpeakerField& speakerField(int offset) {
  return fieldOfParameter(kSpeakerFields, offset);
}
const GlobalField& globalParameter(int offset) {
  return fieldOfParameter(kGlobalFields, offset);
}

double normalisedValue(PannerPlugin& plugin, const ParameterSlot& slot) {
  switch (slot.group) {
    case ParameterGroup::Global: {
      const GlobalField& field = globalParameter(slot.channel);
      return normalisedFrom(field.mapping, *globalReal(plugin, field.id));
    }
    case ParameterGroup::Input:
      return normalisedValue(inputField(slot.field), plugin.model.inputs[slot.channel]);
    case ParameterGroup::Speaker:
      return normalisedValue(speakerField(slot.field), plugin.model.speakers[slot.channel]);
    default:
      return 0.0;
  }
}

void mark(PannerPlugin& plugin, const ChangeMarks& marks, int input) {
  if (marks.rows == GainRows::Own) markInputsDirty(plugin, input);
  if (marks.rows == GainRows::All) markInputsDirty(plugin, kDirtyAllInputs);
  plugin.model.changeFlags.fetch_or(marks.changeFlags);
}

void setGlobalParameter(PannerPlugin& plugin, int which, double v) {
  const GlobalField& field = globalParameter(which);
  double& stored = *globalReal(plugin, field.id);
  const double value = valueFrom(field.mapping, v);
  if (stored == value) return;
  stored = value;
  mark(plugin, field.marks, kDirtyAllInputs);
}

template <typename Record>
void setRecordParameter(PannerPlugin& plugin, const RecordField<Record>& field, Record& record,
                        int input, double v) {
  if (storeField(field, record, valueFrom(field.mapping, v))) mark(plugin, field.marks, input);
}

PannerPlugin* instanceOf(AEffect* effect) {
  return effect == nullptr ? nullptr : static_cast<PannerPlugin*>(effect->object);
}

}  // namespace

ParameterSlot locateParameter(const PannerPlugin& plugin, int index) {
  const int inputs = plugin.inputCount();
  const int speakers = plugin.speakerCount();
  if (index < 0 || index >= plugin.host.effect.numParams) return {ParameterGroup::None, 0, 0};
  if (index < kGlobalParameterCount) return {ParameterGroup::Global, index, 0};
  const int inInputs = index - kGlobalParameterCount;
  if (inInputs < kParametersPerInput * inputs) {
    return {ParameterGroup::Input, inInputs / kParametersPerInput, inInputs % kParametersPerInput};
  }
  const int inSpeakers = inInputs - kParametersPerInput * inputs;
  if (inSpeakers < kParametersPerSpeaker * speakers) {
    return {ParameterGroup::Speaker, inSpeakers / kParametersPerSpeaker,
            inSpeakers % kParametersPerSpeaker};
  }
  return {ParameterGroup::None, 0, 0};
}

float getParameterValue(PannerPlugin& plugin, int index) {
  ModelLock lock(plugin);
  return static_cast<float>(normalisedValue(plugin, locateParameter(plugin, index)));
}

// Hosts may send anything a float holds. A value that is not finite (NaN, +-inf) is ignored: no
// field changes and nothing is marked. A finite value outside 0..1 (huge, negative) is clamped to
// 0..1 before the mapping, so every field stays within the range its parameter can reach. An index
// outside the list is ignored. The state block reader follows the same rule for saved values
// (plugin/state_chunk.cpp); display requests show a non-finite value as the current one.
void setParameterValue(PannerPlugin& plugin, int index, float value) {
  if (!std::isfinite(value) || plugin.host.pendingArrangement.load() != 0) return;
  const double v = std::fmin(1.0, std::fmax(0.0, static_cast<double>(value)));
  ModelLock lock(plugin);
  const ParameterSlot slot = locateParameter(plugin, index);
  switch (slot.group) {
    case ParameterGroup::Global:
      setGlobalParameter(plugin, slot.channel, v);
      break;
    case ParameterGroup::Input:
      setRecordParameter(plugin, inputField(slot.field), plugin.model.inputs[slot.channel],
                         slot.channel, v);
      break;
    case ParameterGroup::Speaker:
      setRecordParameter(plugin, speakerField(slot.field), plugin.model.speakers[slot.channel],
                         slot.channel, v);
      break;
    case ParameterGroup::None:
      break;
  }
}

float getParameterSlot(AEffect* effect, std::int32_t index) {
  PannerPlugin* plugin = instanceOf(effect);
  return plugin == nullptr ? 0.0f : getParameterValue(*plugin, index);
}

void setParameterSlot(AEffect* effect, std::int32_t index, float value) {
  if (PannerPlugin* plugin = instanceOf(effect)) setParameterValue(*plugin, index, value);
}
