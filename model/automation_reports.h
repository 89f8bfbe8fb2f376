// Parameter values reported to the host as automation. They are gathered under modelMutex and sent
// after it is released, so that the host may call back into the plug-in.
#pragma once

#include <cstdint>

#include "model/panner_plugin.h"

class ParameterReports {
 public:
  // `value` is the parameter's normalised value 0..1.
  void add(std::int32_t index, double value);
  // The current value of an input's or a speaker's parameter (InputParameter, SpeakerParameter).
  void addInput(const PannerPlugin& plugin, int input, int parameter);
  void addSpeaker(const PannerPlugin& plugin, int speaker, int parameter);
  void addInputPosition(const PannerPlugin& plugin, int input, bool withHeight);
  void addSpeakerPosition(const PannerPlugin& plugin, int speaker);
  // x, y and z of every selected input.
  void addSelectedInputPositions(const PannerPlugin& plugin);
  // [UI thread, modelMutex not held] audioMasterAutomate for each value, each followed by
  // audioMasterEndEdit when `endEdit`.
  void send(PannerPlugin& plugin, bool endEdit) const;

 private:
  struct Report {
    std::int32_t index;
    float value;
  };
  static constexpr int kCapacity = 3 * kMaxInputs;
  Report items_[kCapacity];
  int count_ = 0;
};
