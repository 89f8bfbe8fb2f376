// The knob step of each group mode and what the group operations share. Internal to the editor.
#pragma once

#include <cmath>

#include "model/panner_plugin.h"

// Reversed inputs take every knob step the other way.
inline double reverseSign(const InputChannel& input) {
  return input.reverse ? -1.0 : 1.0;
}

template <typename Visit>
void forEachSelectedInput(PannerPlugin& plugin, Visit visit) {
  for (int i = 0; i < plugin.inputCount(); ++i) {
    if (plugin.model.inputs[i].selected) visit(plugin.model.inputs[i]);
  }
}

// [UI thread, modelMutex held] Moves the selected inputs by d in `mode`. Positions stay within
// -L..L, L = 0.48 / zoom, except in "Rotate", which keeps the distance from the centre.
void knobStep(PannerPlugin& plugin, int mode, double d);

// Expand/Contract keeps every input off the centre, where its bearing would be lost.
constexpr double kMinRadius = 1e-6;

inline double radiusOf(const InputChannel& input) {
  return std::sqrt(input.x * input.x + input.y * input.y);
}

// Places the input at `radius` from the centre on its own bearing; z stays.
inline void setRadius(InputChannel& input, double radius) {
  const double bearingRad = std::atan2(input.y, input.x);
  input.x = radius * std::cos(bearingRad);
  input.y = radius * std::sin(bearingRad);
}
