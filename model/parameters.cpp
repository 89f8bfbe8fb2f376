#include "model/parameters.h"

#include <cmath>

#include "model/counts.h"
#include "model/host_link.h"
#include "model/parameter_index.h"

namespace {

constexpr double kScaleFloor = 2e-6;
constexpr int kNoDirty = -100;  // a change that needs no gain row

ParameterSlot slotAt(const PannerPlugin& plugin, int index) {
  return locateParameter(plugin, index);
}

double scaleFrom(double v) {
  return v <= 1e-6 ? kScaleFloor : 2.0 * v;
}
double signedFrom(double v) {
  return 2.0 * v - 1.0;
}
double signedTo(double x) {
  return (1.0 + x) * 0.5;
}
std::uint8_t flagFrom(double v) {
  return v >= 0.5 ? 1 : 0;
}

double& globalField(PannerPlugin& plugin, int which) {
  switch (which) {
    case 0:
      return plugin.spaceScaleX;
    case 1:
      return plugin.spaceScaleY;
    case 2:
      return plugin.spaceScaleZ;
    default:
      return plugin.centerTrim;
  }
}

double* inputDouble(InputChannel& input, int field) {
  switch (field) {
    case kInGain:
      return &input.gain;
    case kInX:
      return &input.x;
    case kInY:
      return &input.y;
    case kInZ:
      return &input.z;
    case kInLfeSend:
      return &input.lfeSend;
    case kInDiffuse:
      return &input.diffuse;
    case kInBias:
      return &input.diffuseBias;
    case kInAngle:
      return &input.diffuseAngle;
    default:
      return nullptr;
  }
}

double* speakerDouble(Speaker& speaker, int field) {
  switch (field) {
    case kSpkGain:
      return &speaker.gain;
    case kSpkX:
      return &speaker.x;
    case kSpkY:
      return &speaker.y;
    case kSpkZ:
      return &speaker.z;
    case kSpkInfluence:
      return &speaker.influence;
    default:
      return nullptr;
  }
}

double globalValue(PannerPlugin& plugin, int which) {
  const double value = globalField(plugin, which);
  return which == 3 ? 0.25 * value : 0.5 * value;
}

double inputValue(InputChannel& input, int field) {
  switch (field) {
    case kInGain:
    case kInLfeSend:
      return 0.25 * *inputDouble(input, field);
    case kInDiffuse:
    case kInAngle:
      return *inputDouble(input, field);
    case kInMute:
      return input.mute;
    case kInSolo:
      return input.solo;
    default:
      return signedTo(*inputDouble(input, field));
  }
}

double speakerValue(Speaker& speaker, int field) {
  switch (field) {
    case kSpkGain:
      return 0.25 * speaker.gain;
    case kSpkInfluence:
      return 0.5 * speaker.influence;
    case kSpkMute:
      return speaker.mute;
    case kSpkSolo:
      return speaker.solo;
    default:
      return signedTo(*speakerDouble(speaker, field));
  }
}

double normalisedValue(PannerPlugin& plugin, const ParameterSlot& slot) {
  switch (slot.group) {
    case ParameterGroup::Global:
      return globalValue(plugin, slot.channel);
    case ParameterGroup::Input:
      return inputValue(plugin.inputs[slot.channel], slot.field);
    case ParameterGroup::Speaker:
      return speakerValue(plugin.speakers[slot.channel], slot.field);
    default:
      return 0.0;
  }
}

// Stores `value` in `field` when it differs; answers whether it did.
template <typename T>
bool store(T& field, T value) {
  if (field == value) return false;
  field = value;
  return true;
}

void mark(PannerPlugin& plugin, int dirtyTarget, std::uint32_t flags) {
  if (dirtyTarget != kNoDirty) markInputsDirty(plugin, dirtyTarget);
  plugin.changeFlags.fetch_or(flags);
}

void setGlobalParameter(PannerPlugin& plugin, int which, double v) {
  const double value = which == 3 ? 4.0 * v : scaleFrom(v);
  if (!store(globalField(plugin, which), value)) return;
  mark(plugin, kDirtyAllInputs, which == 3 ? kChangeLevels : kChangeLevels | kChangeSpeakers);
}

void setInputParameter(PannerPlugin& plugin, int input, int field, double v) {
  InputChannel& channel = plugin.inputs[input];
  switch (field) {
    case kInMute:
      if (store(channel.mute, flagFrom(v))) mark(plugin, kNoDirty, kChangeLevels | kChangeInputs);
      return;
    case kInSolo:
      if (store(channel.solo, flagFrom(v))) mark(plugin, kNoDirty, kChangeLevels | kChangeInputs);
      return;
    case kInGain:
    case kInLfeSend:
      if (store(*inputDouble(channel, field), 4.0 * v)) mark(plugin, input, kChangeLevels);
      return;
    case kInDiffuse:
    case kInAngle:
      if (store(*inputDouble(channel, field), v)) mark(plugin, input, kChangeInputs);
      return;
    default:
      if (store(*inputDouble(channel, field), signedFrom(v))) mark(plugin, input, kChangeInputs);
  }
}

void setSpeakerParameter(PannerPlugin& plugin, int speaker, int field, double v) {
  Speaker& channel = plugin.speakers[speaker];
  switch (field) {
    case kSpkMute:
      if (store(channel.mute, flagFrom(v))) mark(plugin, kNoDirty, kChangeLevels | kChangeSpeakers);
      return;
    case kSpkSolo:
      if (store(channel.solo, flagFrom(v))) mark(plugin, kNoDirty, kChangeLevels | kChangeSpeakers);
      return;
    case kSpkGain:
      if (store(channel.gain, 4.0 * v)) mark(plugin, kDirtyAllInputs, kChangeLevels);
      return;
    case kSpkInfluence:
      if (store(channel.influence, 2.0 * v)) {
        mark(plugin, kDirtyAllInputs, kChangeLevels | kChangeSpeakers);
      }
      return;
    default:
      if (store(*speakerDouble(channel, field), signedFrom(v))) {
        mark(plugin, kDirtyAllInputs, kChangeSpeakers);
      }
  }
}

PannerPlugin* instanceOf(AEffect* effect) {
  return effect == nullptr ? nullptr : static_cast<PannerPlugin*>(effect->object);
}

}  // namespace

ParameterSlot locateParameter(const PannerPlugin& plugin, int index) {
  const int inputs = plugin.inputCount();
  const int speakers = plugin.speakerCount();
  if (index < 0 || index >= plugin.effect.numParams) return {ParameterGroup::None, 0, 0};
  if (index < 4) return {ParameterGroup::Global, index, 0};
  const int inInputs = index - 4;
  if (inInputs < 10 * inputs) return {ParameterGroup::Input, inInputs / 10, inInputs % 10};
  const int inSpeakers = inInputs - 10 * inputs;
  if (inSpeakers < 7 * speakers) return {ParameterGroup::Speaker, inSpeakers / 7, inSpeakers % 7};
  return {ParameterGroup::None, 0, 0};
}

float getParameterValue(PannerPlugin& plugin, int index) {
  ModelLock lock(plugin);
  return static_cast<float>(normalisedValue(plugin, slotAt(plugin, index)));
}

// Hosts may send anything a float holds. A value that is not finite (NaN, +-inf) is ignored: no
// field changes and nothing is marked. A finite value outside 0..1 (huge, negative) is clamped to
// 0..1 before the mapping, so every field stays within the range its parameter can reach. An index
// outside the list is ignored. The state block reader follows the same rule for saved values
// (plugin/state_chunk.cpp); display requests show a non-finite value as the current one.
void setParameterValue(PannerPlugin& plugin, int index, float value) {
  if (!std::isfinite(value) || plugin.pendingArrangement.load() != 0) return;
  const double v = std::fmin(1.0, std::fmax(0.0, static_cast<double>(value)));
  ModelLock lock(plugin);
  const ParameterSlot slot = slotAt(plugin, index);
  switch (slot.group) {
    case ParameterGroup::Global:
      setGlobalParameter(plugin, slot.channel, v);
      break;
    case ParameterGroup::Input:
      setInputParameter(plugin, slot.channel, slot.field, v);
      break;
    case ParameterGroup::Speaker:
      setSpeakerParameter(plugin, slot.channel, slot.field, v);
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
