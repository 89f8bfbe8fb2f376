// The three group operations and what follows each: gain rows marked, automation reported, the
// readout and the editor refreshed. The edits are made under modelMutex, as the space view's drags
// are, so the audio routine never reads a half-moved input.
#include "editor/group_edit.h"

#include <cmath>

#include "editor/group_knob.h"
#include "editor/view/position_readout.h"
#include "model/counts.h"
#include "model/parameters.h"

namespace {

constexpr double kNeutralRadius = 0.5;                     // Expand/Contract's reset and mirror
constexpr double kCosQuarterTurn = 6.123233995736766e-17;  // cos(pi / 2) in doubles
constexpr double kDiffuseMirror = 0.5;                     // Invert maps diffuse v to 0.5 - v

using InputEdit = void (*)(InputChannel&);

void resetDiagonal(InputChannel& input, double q) {
  input.x = input.y = q * (input.x + input.y) / 2.0;
}

void mirrorDiagonal(InputChannel& input, double q) {
  const double x = input.x;
  input.x = q * input.y;
  input.y = q * x;
}

// Straight ahead at the same distance, through the rounded cosine of a quarter turn.
void faceFront(InputChannel& input) {
  const double r = radiusOf(input);
  input.x = r * kCosQuarterTurn;
  input.y = r;
}

// One row per fixed mode; the speaker modes change nothing. `reverse` plays no part.
constexpr InputEdit kReset[kGroupToSpeaker] = {
    [](InputChannel& in) { in.x = 0.0; },
    [](InputChannel& in) { in.y = 0.0; },
    [](InputChannel& in) { in.z = 0.0; },
    [](InputChannel& in) { resetDiagonal(in, 1.0); },
    [](InputChannel& in) { resetDiagonal(in, -1.0); },
    [](InputChannel& in) { setRadius(in, kNeutralRadius); },
    [](InputChannel& in) { faceFront(in); },
    [](InputChannel& in) { in.diffuse = 0.0; },
    [](InputChannel& in) { in.diffuseBias = 0.0; },
    [](InputChannel& in) { in.diffuseAngle = 0.0; },
};

constexpr InputEdit kInvert[kGroupToSpeaker] = {
    [](InputChannel& in) { in.x = -in.x; },
    [](InputChannel& in) { in.y = -in.y; },
    [](InputChannel& in) { in.z = -in.z; },
    [](InputChannel& in) { mirrorDiagonal(in, 1.0); },
    [](InputChannel& in) { mirrorDiagonal(in, -1.0); },
    [](InputChannel& in) { setRadius(in, std::fmax(kNeutralRadius - radiusOf(in), kMinRadius)); },
    [](InputChannel& in) {
      in.x = -in.x;
      in.y = -in.y;
    },
    [](InputChannel& in) { in.diffuse = kDiffuseMirror - in.diffuse; },
    [](InputChannel& in) { in.diffuseBias = -in.diffuseBias; },
    [](InputChannel& in) { in.diffuseAngle = -in.diffuseAngle; },
};

void editSelectedInputs(PannerPlugin& plugin, const InputEdit (&table)[kGroupToSpeaker], int mode) {
  if (mode < 0 || mode >= kGroupToSpeaker) return;
  forEachSelectedInput(plugin, table[mode]);
}

// The only selected input, or -1 when none or several are selected.
int onlySelectedInput(const PannerPlugin& plugin) {
  int only = -1;
  for (int i = 0; i < plugin.inputCount(); ++i) {
    if (!plugin.model.inputs[i].selected) continue;
    if (only >= 0) return -1;
    only = i;
  }
  return only;
}

// [UI thread] `edit` runs under modelMutex; the host hears of it after the lock is released.
template <typename Edit>
void applyGroupEdit(PannerPlugin& plugin, int mode, bool endEdit, Edit edit) {
  int readoutInput = -1;
  {
    ModelLock lock(plugin);
    edit();
    markInputsDirty(plugin, kDirtySelectedInputs);
    readoutInput = onlySelectedInput(plugin);
  }
  notifyGroupEdit(plugin, mode, endEdit);
  if (plugin.host.editorWindow != nullptr) showPositionReadout(plugin, readoutInput, -1);
  plugin.model.changeFlags.fetch_or(kChangeInputs);
}

}  // namespace

// A step that is not a number moves nothing; the reports and refresh still follow.
void groupKnob(PannerPlugin& plugin, int mode, double d, bool endOfGesture) {
  applyGroupEdit(plugin, mode, endOfGesture, [&] {
    if (std::isfinite(d)) knobStep(plugin, mode, d);
  });
}

void groupReset(PannerPlugin& plugin, int mode) {
  applyGroupEdit(plugin, mode, true, [&] { editSelectedInputs(plugin, kReset, mode); });
}

void groupInvert(PannerPlugin& plugin, int mode) {
  applyGroupEdit(plugin, mode, true, [&] { editSelectedInputs(plugin, kInvert, mode); });
}
