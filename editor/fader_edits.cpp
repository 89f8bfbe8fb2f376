// The faders of the dialog: room size, zoom, centre trim and the two strips. Each step is
// reported at once; the end of the drag (SB_ENDSCROLL) closes the parameter's edit.
#include <cmath>
#include <cstdio>

#include "editor/dialog_calls.h"
#include "editor/dialog_handlers.h"
#include "editor/edit_reports.h"
#include "editor/editor_dialog.h"
#include "model/counts.h"
#include "model/field_table.h"
#include "plugin/host_api.h"

namespace {

constexpr float kSmallestScale = 1e-6f;  // a room axis never collapses to nothing
constexpr float kZoomLow = 0.1f;
constexpr float kZoomSpan = 0.85f;
constexpr double kMaxLevel = 4.0;
constexpr double kSilentLevel = 1e-6;
constexpr double kInfluencePerPosition = 1.0 / 500.0;

struct FaderMove {
  PannerPlugin& plugin;
  HWND dialog;
  int id;
  int position;
  bool end;
};

double levelAtPosition(double position) {
  if (hostApi.SLIDER2DB == nullptr) return 1.0;
  return std::exp(hostApi.SLIDER2DB(position) * kNepersPerDb);
}

void moveRoomScale(const FaderMove& m, int axis) {
  const float n = static_cast<float>(m.position) / 1000.0f;
  const float reported = n < kSmallestScale ? kSmallestScale : n;
  double* const scales[3] = {&m.plugin.model.spaceScaleX, &m.plugin.model.spaceScaleY,
                             &m.plugin.model.spaceScaleZ};
  {
    ModelLock lock(m.plugin);
    *scales[axis] = 2.0 * static_cast<double>(reported);
    markInputsDirty(m.plugin, kDirtyAllInputs);
  }
  reportParameter(m.plugin, axis, reported);
  if (m.end) endParameterEdit(m.plugin, axis);
  m.plugin.model.changeFlags.fetch_or(kChangeSpeakers);
}

void moveZoom(const FaderMove& m) {
  const float zoom = static_cast<float>(m.position) / 1000.0f * kZoomSpan + kZoomLow;
  {
    ModelLock lock(m.plugin);
    m.plugin.view.zoom = zoom;
  }
  m.plugin.model.changeFlags.fetch_or(kChangeSpeakers);
}

void moveCenterTrim(const FaderMove& m) {
  const double a = levelAtPosition(m.position);
  const double trim = a > kMaxLevel ? kMaxLevel : a < kSilentLevel ? 0.0 : a;
  char text[32];
  if (trim == 0.0) {
    std::snprintf(text, sizeof text, "-inf");
  } else {
    std::snprintf(text, sizeof text, "%.1f", levelDb(trim));
  }
  {
    ModelLock lock(m.plugin);
    m.plugin.model.centerTrim = trim;
    markInputsDirty(m.plugin, kDirtyAllInputs);
  }
  {
    const UpdatingControls updating;
    setItemText(m.dialog, item::kCenterTrimText, text);
    setFaderText(m.dialog, item::kCenterTrim, kKestelPropertyValue, text);
  }
  reportParameter(m.plugin, kGlobalCenterTrim, trim / kMaxLevel);
  if (m.end) endParameterEdit(m.plugin, kGlobalCenterTrim);
}

// One input's part of a strip fader move: its parameter, and the value when it changed.
struct InputReport {
  int index;
  double normalised;
  bool changed;
};

// Every selected input moves by the same number of fader steps when the row's input is selected.
void moveInputFader(const FaderMove& m, int row) {
  PannerPlugin& p = m.plugin;
  const int i = p.editor.inputFaderOffset + row;
  if (i >= p.inputCount()) return;
  const bool lfe = (p.model.optionFlags & kOptionInputFaderModeMask) == 1;
  double InputChannel::*field = lfe ? &InputChannel::lfeSend : &InputChannel::gain;
  const int parameter = lfe ? kInLfeSend : kInGain;
  const bool everyInput = isKeyHeld(VK_CONTROL) && isKeyHeld(VK_MENU);
  InputReport reports[kMaxInputs];
  int count = 0;
  {
    ModelLock lock(p);
    const int d = m.position - faderPositionOfLevel(p.model.inputs[i].*field);
    const bool group = p.model.inputs[i].selected != 0;
    for (int k = 0; k < p.inputCount(); ++k) {
      InputChannel& input = p.model.inputs[k];
      if (group ? input.selected == 0 : k != i) continue;
      const int q = faderPositionOfLevel(input.*field);
      const double v = std::clamp(levelAtPosition(q + d), 0.0, kMaxLevel);
      const bool changed = v != input.*field;
      if (changed && everyInput) {
        for (int all = 0; all < p.inputCount(); ++all) p.model.inputs[all].*field = v;
        markInputsDirty(p, kDirtyAllInputs);
      } else if (changed) {
        input.*field = v;
        markInputsDirty(p, k);
      }
      reports[count++] = {inputParameterIndex(k, parameter), v / kMaxLevel, changed};
    }
  }
  for (int k = 0; k < count; ++k) {
    if (reports[k].changed) reportParameter(p, reports[k].index, reports[k].normalised);
    if (m.end) endParameterEdit(p, reports[k].index);
  }
  p.model.changeFlags.fetch_or(kChangeLevels);
}

void moveSpeakerFader(const FaderMove& m, int row) {
  PannerPlugin& p = m.plugin;
  const int j = p.editor.speakerFaderOffset + row;
  if (j >= p.speakerCount()) return;
  const bool influence = (p.model.optionFlags & kOptionSpeakerFaderModeMask) >> 8 == 1;
  double Speaker::*field = influence ? &Speaker::influence : &Speaker::gain;
  const double v = influence ? m.position * kInfluencePerPosition : levelAtPosition(m.position);
  const int index = speakerParameterIndex(p.inputCount(), j, influence ? kSpkInfluence : kSpkGain);
  bool changed = false;
  {
    ModelLock lock(p);
    changed = v != p.model.speakers[j].*field;
    if (changed && isKeyHeld(VK_CONTROL) && isKeyHeld(VK_MENU)) {
      for (int s = 0; s < p.speakerCount(); ++s) p.model.speakers[s].*field = v;
      p.model.changeFlags.fetch_or(kChangeLevels);
    } else if (changed) {
      p.model.speakers[j].*field = v;
    }
    if (changed) markInputsDirty(p, kDirtyAllInputs);
  }
  if (changed) {
    p.model.changeFlags.fetch_or(kChangeSpeakers);
    reportParameter(p, index, influence ? v / 2.0 : v / kMaxLevel);
  }
  if (m.end) endParameterEdit(p, index);
}

void moveFader(const FaderMove& m) {
  if (m.id >= item::kSpaceX && m.id < item::kSpaceX + 3)
    return moveRoomScale(m, m.id - item::kSpaceX);
  if (m.id == item::kZoom) return moveZoom(m);
  if (m.id == item::kCenterTrim) return moveCenterTrim(m);
  if (m.id >= item::kInputFader && m.id < item::kInputFader + kStripRows) {
    return moveInputFader(m, m.id - item::kInputFader);
  }
  if (m.id >= item::kSpeakerFader && m.id < item::kSpeakerFader + kStripRows) {
    return moveSpeakerFader(m, m.id - item::kSpeakerFader);
  }
}

}  // namespace

// The refresh sets positions without notifications; a fader that echoed one is ignored all the
// same, as a value the dialog set is no edit of the user's.
void onDialogFader(PannerPlugin& plugin, HWND dialog, WPARAM wParam, LPARAM lParam) {
  if (updatingControls != 0) return;
  const auto fader = reinterpret_cast<HWND>(lParam);  // NOLINT(performance-no-int-to-ptr)
  if (fader == nullptr || plaskCall<PlaskId::GetParent>(fader) != dialog) return;
  const auto id = static_cast<int>(plaskCall<PlaskId::GetWindowLong>(fader, GWL_ID));
  const auto position = static_cast<int>(plaskCall<PlaskId::SendMessage>(fader, TBM_GETPOS, 0, 0));
  moveFader({plugin, dialog, id, position, lowWord(wParam) == SB_ENDSCROLL});
}
