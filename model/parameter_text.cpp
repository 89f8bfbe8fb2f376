// Parameter names and display texts.
#include <cmath>
#include <cstdio>

#include "model/parameter_index.h"
#include "model/parameters.h"

namespace {

constexpr double kSilentGain = 2.9802322387695312e-08;  // 2^-25
constexpr double kDbPerNeper = 8.685889638065037;       // 20 / ln 10

ValueMapping mappingOf(const ParameterSlot& slot) {
  switch (slot.group) {
    case ParameterGroup::Global:
      return fieldOfParameter(kGlobalFields, slot.channel).mapping;
    case ParameterGroup::Input:
      return fieldOfParameter(kInputFields, slot.field).mapping;
    default:
      return fieldOfParameter(kSpeakerFields, slot.field).mapping;
  }
}

void writeDecibels(char* buffer, std::size_t length, double value) {
  const double gain = 4.0 * value;
  if (gain < kSilentGain) {
    std::snprintf(buffer, length, "-inf");
    return;
  }
  const double levelDb = std::log(gain) * kDbPerNeper;
  if (levelDb <= -144.0) {
    std::snprintf(buffer, length, "-inf");
  } else {
    std::snprintf(buffer, length, "%.1f", levelDb);
  }
}

// The speaker's name is cut so that the field word still fits the buffer.
int speakerNamePrecision(std::size_t length) {
  return length > 10 ? static_cast<int>(length - 8) : 8;
}

// A value the host asks about is shown as setParameterValue would take it. The current value is
// shown as it stands: a group rotation leaves the angle between -1 and 0.
double hostValueShown(float value) {
  return std::fmin(1.0, std::fmax(0.0, static_cast<double>(value)));
}

}  // namespace

void getParameterName(PannerPlugin& plugin, int index, char* buffer, std::size_t length) {
  if (buffer == nullptr || length == 0) return;
  buffer[0] = '\0';
  if (index < 0) {
    std::snprintf(buffer, length, "resvd");
    return;
  }
  ModelLock lock(plugin);
  const ParameterSlot slot = locateParameter(plugin, index);
  switch (slot.group) {
    case ParameterGroup::Global:
      std::snprintf(buffer, length, "%s",
                    fieldOfParameter(kGlobalFields, slot.channel).parameterName);
      break;
    case ParameterGroup::Input:
      std::snprintf(buffer, length, "in %d %s", slot.channel + 1,
                    fieldOfParameter(kInputFields, slot.field).parameterWord);
      break;
    case ParameterGroup::Speaker:
      std::snprintf(buffer, length, "%.*s %s", speakerNamePrecision(length),
                    plugin.model.speakers[slot.channel].name,
                    fieldOfParameter(kSpeakerFields, slot.field).parameterWord);
      break;
    case ParameterGroup::None:
      break;
  }
}

void getParameterDisplay(PannerPlugin& plugin, int index, char* buffer, std::size_t length,
                         bool hasValue, float value) {
  if (buffer == nullptr || length == 0) return;
  buffer[0] = '\0';
  ModelLock lock(plugin);  // the slot and the current value must come from the same counts
  const ParameterSlot slot = locateParameter(plugin, index);
  if (slot.group == ParameterGroup::None) return;
  const double v =
      hasValue && std::isfinite(value) ? hostValueShown(value) : getParameterValue(plugin, index);
  if (isShownInDecibels(mappingOf(slot))) {
    writeDecibels(buffer, length, v);
  } else {
    std::snprintf(buffer, length, "%f", v);
  }
}
