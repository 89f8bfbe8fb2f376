// Editor-side changes reported to the host as automation. Values are collected under modelMutex
// and sent after it is released, so that the host may call back into the plug-in.
#include "model/host_link.h"
#include "model/parameter_index.h"
#include "model/parameters.h"

namespace {

constexpr int kMaxReports = 3 * kMaxInputs;
constexpr int kDiffusionLevelMode = 7;
constexpr int kDiffusionRotateMode = 9;
constexpr int kLowHighMode = 2;

struct Report {
  std::int32_t index;
  float value;
};

struct ReportList {
  Report items[kMaxReports];
  int count = 0;
  void add(std::int32_t index, double value) {
    if (count < kMaxReports) items[count++] = {index, static_cast<float>(value)};
  }
};

void send(PannerPlugin& plugin, const ReportList& reports, bool endEdit) {
  for (int i = 0; i < reports.count; ++i) {
    const Report& report = reports.items[i];
    callHost(plugin, audioMasterAutomate, report.index, 0, nullptr, report.value);
    if (endEdit) callHost(plugin, audioMasterEndEdit, report.index, 0, nullptr, 0.0f);
  }
}

void addPositionReports(ReportList& reports, const InputChannel& input, int i, bool withHeight) {
  reports.add(inputParameterIndex(i, kInX), (1.0 + input.x) * 0.5);
  reports.add(inputParameterIndex(i, kInY), (1.0 + input.y) * 0.5);
  if (withHeight) reports.add(inputParameterIndex(i, kInZ), (1.0 + input.z) * 0.5);
}

void addDiffusionReport(ReportList& reports, const InputChannel& input, int i, int mode) {
  if (mode == kDiffusionLevelMode) {
    reports.add(inputParameterIndex(i, kInDiffuse), input.diffuse);
  } else if (mode == kDiffusionRotateMode) {
    reports.add(inputParameterIndex(i, kInAngle), input.diffuseAngle);
  } else {
    reports.add(inputParameterIndex(i, kInBias), (1.0 + input.diffuseBias) * 0.5);
  }
}

}  // namespace

void notifyMuteSolo(PannerPlugin& plugin, int index, bool isInput, bool isMute) {
  ReportList reports;
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
  send(plugin, reports, true);
}

void notifyGroupEdit(PannerPlugin& plugin, int mode, bool endEdit) {
  if (mode < 0) return;
  ReportList reports;
  {
    ModelLock lock(plugin);
    for (int i = 0; i < plugin.inputCount(); ++i) {
      const InputChannel& input = plugin.inputs[i];
      if (!input.selected) continue;
      if (mode >= kDiffusionLevelMode && mode <= kDiffusionRotateMode) {
        addDiffusionReport(reports, input, i, mode);
      } else {
        addPositionReports(reports, input, i, mode == kLowHighMode || mode > kDiffusionRotateMode);
      }
    }
  }
  send(plugin, reports, endEdit);
}
