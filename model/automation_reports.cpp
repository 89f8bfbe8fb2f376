// Editor-side changes reported to the host as automation.
#include "model/automation_reports.h"

#include "model/field_access.h"
#include "model/host_link.h"
#include "model/parameters.h"

namespace {

constexpr int kDiffusionLevelMode = 7;
constexpr int kDiffusionRotateMode = 9;
constexpr int kLowHighMode = 2;

int diffusionParameter(int mode) {
  if (mode == kDiffusionLevelMode) return kInDiffuse;
  return mode == kDiffusionRotateMode ? kInAngle : kInBias;
}

}  // namespace

void ParameterReports::add(std::int32_t index, double value) {
  if (count_ < kCapacity) items_[count_++] = {index, static_cast<float>(value)};
}

void ParameterReports::addInput(const PannerPlugin& plugin, int input, int parameter) {
  add(inputParameterIndex(input, parameter),
      normalisedValue(fieldOfParameter(kInputFields, parameter), plugin.model.inputs[input]));
}

void ParameterReports::addSpeaker(const PannerPlugin& plugin, int speaker, int parameter) {
  add(speakerParameterIndex(plugin.inputCount(), speaker, parameter),
      normalisedValue(fieldOfParameter(kSpeakerFields, parameter), plugin.model.speakers[speaker]));
}

void ParameterReports::addInputPosition(const PannerPlugin& plugin, int input, bool withHeight) {
  addInput(plugin, input, kInX);
  addInput(plugin, input, kInY);
  if (withHeight) addInput(plugin, input, kInZ);
}

void ParameterReports::addSpeakerPosition(const PannerPlugin& plugin, int speaker) {
  for (const int parameter : {kSpkX, kSpkY, kSpkZ}) addSpeaker(plugin, speaker, parameter);
}

void ParameterReports::addSelectedInputPositions(const PannerPlugin& plugin) {
  for (int i = 0; i < plugin.inputCount(); ++i) {
    if (plugin.model.inputs[i].selected) addInputPosition(plugin, i, true);
  }
}

void ParameterReports::send(PannerPlugin& plugin, bool endEdit) const {
  for (int i = 0; i < count_; ++i) {
    callHost(plugin, audioMasterAutomate, items_[i].index, 0, nullptr, items_[i].value);
    if (endEdit) callHost(plugin, audioMasterEndEdit, items_[i].index, 0, nullptr, 0.0f);
  }
}

void notifyMuteSolo(PannerPlugin& plugin, int index, bool isInput, bool isMute) {
  ParameterReports reports;
  {
    ModelLock lock(plugin);
    if (index < 0) return;
    if (isInput && index < plugin.inputCount()) {
      reports.addInput(plugin, index, isMute ? kInMute : kInSolo);
    } else if (!isInput && index < plugin.speakerCount()) {
      reports.addSpeaker(plugin, index, isMute ? kSpkMute : kSpkSolo);
    }
  }
  reports.send(plugin, true);
}

void notifyGroupEdit(PannerPlugin& plugin, int mode, bool endEdit) {
  if (mode < 0) return;
  ParameterReports reports;
  {
    ModelLock lock(plugin);
    for (int i = 0; i < plugin.inputCount(); ++i) {
      if (!plugin.model.inputs[i].selected) continue;
      if (mode >= kDiffusionLevelMode && mode <= kDiffusionRotateMode) {
        reports.addInput(plugin, i, diffusionParameter(mode));
      } else {
        reports.addInputPosition(plugin, i, mode == kLowHighMode || mode > kDiffusionRotateMode);
      }
    }
  }
  reports.send(plugin, endEdit);
}
