// Where a flat parameter index points in the model.
#pragma once

#include "model/panner_plugin.h"

enum class ParameterGroup { None, Global, Input, Speaker };

// Fields of one input (10) and one speaker (7), in list order.
enum InputField {
  kInGain,
  kInX,
  kInY,
  kInZ,
  kInLfeSend,
  kInDiffuse,
  kInBias,
  kInAngle,
  kInMute,
  kInSolo
};
enum SpeakerField { kSpkGain, kSpkX, kSpkY, kSpkZ, kSpkInfluence, kSpkMute, kSpkSolo };

struct ParameterSlot {
  ParameterGroup group;
  int channel;  // input or speaker index; the global's index for globals
  int field;
};

// [under modelMutex] Resolves `index` against numParams and the current counts.
ParameterSlot locateParameter(const PannerPlugin& plugin, int index);

constexpr int inputParameterIndex(int input, int field) {
  return 4 + 10 * input + field;
}
constexpr int speakerParameterIndex(int inputCount, int speaker, int field) {
  return 4 + 10 * inputCount + 7 * speaker + field;
}
