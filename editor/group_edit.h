// The "Edit selected inputs" box: three rows, each a mode, a knob, "Reset" and "Invert", that
// change every selected input at once. The dialog reads the knob and the keys; these operations
// move the inputs, report them to the host as automation and refresh the readout.
#pragma once

#include "model/panner_plugin.h"

// The fixed modes of a row; mode kGroupToSpeaker + k moves toward the k-th speaker that is not LFE.
enum GroupMode : int {
  kGroupLeftRight,
  kGroupBackFront,
  kGroupLowHigh,
  kGroupBackLeftFrontRight,
  kGroupFrontLeftBackRight,
  kGroupExpandContract,
  kGroupRotate,
  kGroupDiffusionLevel,
  kGroupDiffusionBias,
  kGroupDiffusionRotate,
  kGroupToSpeaker,
};

// The mode combo's first items, in mode order; then one kGroupToSpeakerFormat item per speaker.
// clang-format off
inline constexpr const char* kGroupModeNames[kGroupToSpeaker] = {
    "Left/Right", "Back/Front", "Low/High", "Back left/Front right", "Front left/Back right",
    "Expand/Contract", "Rotate", "Diffusion level", "Diffusion bias", "Diffusion rotate"};
// clang-format on
inline constexpr const char* kGroupToSpeakerFormat = "To %s";  // the speaker's name

// The knob's value (0..0xFFFF, 0x8000 the centre) as a step: the whole travel from the centre is
// 0.1 either way, a quarter of that with Control held, else four times it with Shift held. The
// caller reads the keys.
constexpr double groupKnobDelta(int knobValue, bool control, bool shift) {
  constexpr double kStepAtFullTravel = 0.1;
  constexpr double kPerKnobUnit = 1.0 / 32768.0;
  const double d = (knobValue - 0x8000) * kStepAtFullTravel * kPerKnobUnit;
  if (control) return d * 0.25;
  return shift ? d * 4.0 : d;
}
static_assert(groupKnobDelta(0x0000, false, false) == -0.1);
static_assert(groupKnobDelta(0xC000, false, true) == 0.2);
static_assert(groupKnobDelta(0xC000, true, true) == 0.0125);  // Control wins over Shift

// [UI thread] One knob notification: moves the selected inputs by d in `mode`, kept within the
// part of the room the view shows; `endOfGesture` closes each report with an end of edit.
void groupKnob(PannerPlugin& plugin, int mode, double d, bool endOfGesture);

// [UI thread] "Reset": the selected inputs back to the mode's neutral value.
void groupReset(PannerPlugin& plugin, int mode);

// [UI thread] "Invert": the selected inputs mirrored in the mode.
void groupInvert(PannerPlugin& plugin, int mode);
