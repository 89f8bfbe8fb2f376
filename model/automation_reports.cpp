// Editor-side changes reported to the host as automation.
#include "model/automation_reports.h"

#include "model/host_link.h"
#include "model/parameter_index.h"
#include "model/parameters.h"

namespace {

constexpr int kDiffusionLevelMode = 7;
constexpr int kDiffusionRotateMode = 9;
constexpr int kLowHighMode = 2;

double signedToNormal(double x) {
  return (1.0 + x) * 0.5;
}

void addDiffusionReport(ParameterReports& reports, const InputChannel& input, int i, int mode) {
  if (mode == kDiffusionLevelMode) {
    reports.add(inputParameterIndex(i, kInDiffuse), input.diffuse);
  } else if (mode == kDiffusionRotateMode) {
    reports.add(inputParameterIndex(i, kInAngle), input.diffuseAngle);
  } else {
    reports.add(inputParameterIndex(i, kInBias), signedToNormal(input.diffuseBias));
  }
}

}  // namespace

void ParameterReports::add(std::int32_t index, double value) {
  if (count_ < kCapacity) items_[count_++] = {index, static_cast<float>(value)};
}

void ParameterReports::addInputPosition(const PannerPlugin& plugin, int input, bool withHeight) {
  const InputChannel& channel = plugin.inputs[input];
  add(inputParameterIndex(input, kInX), signedToNormal(channel.x));
  add(inputParameterIndex(input, kInY), signedToNormal(channel.y));
  if (withHeight) add(inputParameterIndex(input, kInZ), signedToNormal(channel.z));
}

void ParameterReports::addSpeakerPosition(const PannerPlugin& plugin, int speaker) {
  const Speaker& record = plugin.speakers[speaker];
  const int inputs = plugin.inputCount();
  add(speakerParameterIndex(inputs, speaker, kSpkX), signedToNormal(record.x));
  add(speakerParameterIndex(inputs, speaker, kSpkY), signedToNormal(record.y));
  add(speakerParameterIndex(inputs, speaker, kSpkZ), signedToNormal(record.z));
}

void ParameterReports::addSelectedInputPositions(const PannerPlugin& plugin) {
  for (int i = 0; i < plugin.inputCount(); ++i) {
    if (plugin.inputs[i].selected) addInputPosition(plugin, i, true);
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
      const InputChannel& input = plugin.inputs[index];
      reports.add(inputParameterIndex(index, isMute ? kInMute : kInSolo),
                  isMute ? input.mute : input.solo);
    } else if (!isInput && index < plugin.speakerCount()) {
      const Speaker& speaker = plugin.speakers[index];
      reports.add(speakerParameterIndex(plugin.inputCount(), index, isMute ? kSpkMute : kSpkSolo),
                  isMute ? speaker.mute : speaker.solo);
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
      const InputChannel& input = plugin.inputs[i];
      if (!input.selected) continue;
      if (mode >= kDiffusionLevelMode && mode <= kDiffusionRotateMode) {
        addDiffusionReport(reports, input, i, mode);
      } else {
        reports.addInputPosition(plugin, i, mode == kLowHighMode || mode > kDiffusionRotateMode);
      }
    }
  }
  reports.send(plugin, endEdit);
}
