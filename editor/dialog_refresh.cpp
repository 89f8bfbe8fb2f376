// Every control's value from the model (WM_EDITOR_REFRESH), walking the control list: each
// control's kind says what it shows.
#include <cstdio>

#include "editor/dialog_calls.h"
#include "editor/dialog_handlers.h"
#include "editor/editor_dialog.h"
#include "editor/group_edit.h"
#include "editor/strip_flags.h"
#include "model/field_access.h"
#include "model/layouts.h"
#include "plugin/host_api.h"

namespace {

constexpr int kRelativeTick = 500;
constexpr double kZoomLow = 0.1;
constexpr double kZoomSpan = 0.85;
constexpr double kSilentTrim = 1e-6;

struct Refresh {
  PannerPlugin& plugin;
  HWND dialog;
  std::uint32_t flags;  // changeFlags as the refresh found them
};

int inputFaderMode(const PannerPlugin& plugin) {
  return static_cast<int>(plugin.model.optionFlags & kOptionInputFaderModeMask);
}
int speakerFaderMode(const PannerPlugin& plugin) {
  return static_cast<int>((plugin.model.optionFlags & kOptionSpeakerFaderModeMask) >> 8);
}
bool relativeInfluence(const PannerPlugin& plugin) {
  return (plugin.model.optionFlags & kOptionRelativeInfluence) != 0;
}
bool userSetup(const PannerPlugin& plugin) {
  return plugin.model.layoutPreset == kLayoutUserSetup;
}

// The field a strip fader moves: gain, or LFE send / influence in the second mode.
const InputChannelField& inputFaderField(const PannerPlugin& plugin) {
  return fieldOfParameter(kInputFields, inputFaderMode(plugin) == 1 ? kInLfeSend : kInGain);
}
const SpeakerField& speakerFaderField(const PannerPlugin& plugin) {
  return fieldOfParameter(kSpeakerFields, speakerFaderMode(plugin) == 1 ? kSpkInfluence : kSpkGain);
}

// A field the user is typing in keeps the text: a refresh in those 500 ms would eat keys.
bool typing(const Refresh& r, UINT_PTR typedTimer) {
  return (r.plugin.editor.typingEdits & typingBit(typedTimer)) != 0;
}

void setText(const Refresh& r, int id, const char* format, int value) {
  char text[16];
  std::snprintf(text, sizeof text, format, value);
  setItemText(r.dialog, id, text);
}

void centerTrimText(const PannerPlugin& plugin, char (&text)[32]) {
  const double trim = plugin.model.centerTrim;
  if (trim <= kSilentTrim) {
    std::snprintf(text, sizeof text, "-inf");
  } else {
    std::snprintf(text, sizeof text, "%.1f", levelDb(trim));
  }
}

bool anyLfeSpeaker(const PannerPlugin& plugin) {
  for (int s = 0; s < plugin.speakerCount(); ++s) {
    if (plugin.model.speakers[s].isLfe) return true;
  }
  return false;
}

void refillGroupModes(const Refresh& r, int id) {
  sendToItem(r.dialog, id, CB_RESETCONTENT, 0, 0);
  for (const char* name : kGroupModeNames) addComboItem(r.dialog, id, name);
  for (int s = 0; s < r.plugin.speakerCount(); ++s) {
    const Speaker& speaker = r.plugin.model.speakers[s];
    if (speaker.isLfe) continue;
    char text[kNameCapacity + 8];
    std::snprintf(text, sizeof text, kGroupToSpeakerFormat, speaker.name);
    addComboItem(r.dialog, id, text);
  }
}

void groupMode(const Refresh& r, const EditorControl& control) {
  if ((r.flags & (kChangeCounts | kChangeEditor)) != 0) refillGroupModes(r, control.id);
  const int items = static_cast<int>(sendToItem(r.dialog, control.id, CB_GETCOUNT, 0, 0));
  std::int32_t& mode = r.plugin.editor.groupKnobModes[control.row];
  mode = std::min(mode, items - 1);
  selectComboItem(r.dialog, control.id, mode);
}

void stripButton(const Refresh& r, const EditorControl& control) {
  const int flag = static_cast<int>(control.flag);
  bool on = false;
  if (control.strip == Strip::Inputs) {
    const int i = r.plugin.editor.inputFaderOffset + control.row;
    if (i >= r.plugin.inputCount()) return;
    on = r.plugin.model.inputs[i].*kInputFlags[flag] != 0;
  } else {
    const int s = r.plugin.editor.speakerFaderOffset + control.row;
    if (s >= r.plugin.speakerCount()) return;
    on = r.plugin.model.speakers[s].*kSpeakerFlags[flag] != 0;
  }
  const PlaskButtonImage& image = on ? buttonImages.on[flag] : buttonImages.off[flag];
  sendToItem(r.dialog, control.id, BM_SETIMAGE, kHotTrackImageKind, pointerParam(&image));
}

void inputFader(const Refresh& r, const EditorControl& control) {
  const int i = r.plugin.editor.inputFaderOffset + control.row;
  if (i >= r.plugin.inputCount()) return;
  const InputChannelField& field = inputFaderField(r.plugin);
  setFaderPosition(r.dialog, control.id,
                   faderPositionOf(field.mapping, fieldValue(field, r.plugin.model.inputs[i])));
}

void speakerFader(const Refresh& r, const EditorControl& control) {
  const bool influence = speakerFaderMode(r.plugin) == 1;
  setFaderTick(r.dialog, control.id, influence ? kRelativeTick : faderPositionOfLevel(1.0));
  const int s = r.plugin.editor.speakerFaderOffset + control.row;
  if (s >= r.plugin.speakerCount()) return;
  const SpeakerField& field = speakerFaderField(r.plugin);
  setFaderPosition(r.dialog, control.id,
                   faderPositionOf(field.mapping, fieldValue(field, r.plugin.model.speakers[s])));
}

void roomScale(const Refresh& r, const EditorControl& control) {
  const GlobalField& field = globalField(control.global);
  setFaderPosition(r.dialog, control.id,
                   faderPositionOf(field.mapping, *globalReal(r.plugin, control.global)));
}

void zoom(const Refresh& r, const EditorControl& control) {
  const double position = (r.plugin.view.zoom - kZoomLow) * 1000.0 / kZoomSpan;
  setFaderPosition(r.dialog, control.id, static_cast<int>(std::lround(position)));
}

void centerTrim(const Refresh& r, const EditorControl& control) {
  const double trim = r.plugin.model.centerTrim;
  setFaderPosition(
      r.dialog, control.id,
      std::min(1000, faderPositionOf(globalField(GlobalId::CenterTrim).mapping, trim)));
  char text[32];
  centerTrimText(r.plugin, text);
  setFaderText(r.dialog, control.id, kKestelPropertyValue, text);
}

void centerTrimEdit(const Refresh& r, const EditorControl& control) {
  if (typing(r, kTrimTypedTimerId)) return;
  char text[32];
  centerTrimText(r.plugin, text);
  setItemText(r.dialog, control.id, text);
}

void normalize(const Refresh& r, const EditorControl& control) {
  const std::uint32_t bits =
      r.plugin.model.optionFlags & (kOptionNormalizeOff | kOptionRelativeInfluence);
  checkItem(r.dialog, control.id, bits != kOptionNormalizeOff);
  enableItem(r.dialog, control.id, !relativeInfluence(r.plugin));
}

void refreshControl(const Refresh& r, const EditorControl& control) {
  const HWND d = r.dialog;
  PannerPlugin& p = r.plugin;
  switch (control.shows) {
    case Shows::InputCount:
      if (typing(r, kInputCountTimerId)) return;
      return setText(r, control.id, "%d", p.inputCount());
    case Shows::SpeakerCount:
      if (!typing(r, kSpeakerCountTimerId)) setText(r, control.id, "%d", p.speakerCount());
      return enableItem(d, control.id, userSetup(p));
    case Shows::SpeakerCountLabel:
      return enableItem(d, control.id, userSetup(p));
    case Shows::LayoutPreset:
      return selectComboItem(d, control.id, p.model.layoutPreset);
    case Shows::AnyLfe:
      checkItem(d, control.id, anyLfeSpeaker(p));
      return enableItem(d, control.id, userSetup(p));
    case Shows::GroupMode:
      return groupMode(r, control);
    case Shows::RelativeInfluence:
      return checkItem(d, control.id, relativeInfluence(p));
    case Shows::AbsoluteInfluence:
      return checkItem(d, control.id, !relativeInfluence(p));
    case Shows::Normalize:
      return normalize(r, control);
    case Shows::RoomScale:
      return roomScale(r, control);
    case Shows::Zoom:
      return zoom(r, control);
    case Shows::CenterTrim:
      return centerTrim(r, control);
    case Shows::CenterTrimText:
      return centerTrimEdit(r, control);
    case Shows::InputFaderMode:
      return selectComboItem(d, control.id, inputFaderMode(p));
    case Shows::SpeakerFaderMode:
      return selectComboItem(d, control.id, speakerFaderMode(p));
    case Shows::StripButton:
      return stripButton(r, control);
    case Shows::StripFader:
      return control.strip == Strip::Inputs ? inputFader(r, control) : speakerFader(r, control);
    default:
      return;  // labels, buttons, knobs; the meters and "Display:" combos follow elsewhere
  }
}

}  // namespace

int faderPositionOfLevel(double linear) {
  if (hostApi.DB2SLIDER == nullptr) return 0;
  return static_cast<int>(std::lround(hostApi.DB2SLIDER(levelDb(linear))));
}

int faderPositionOf(ValueMapping mapping, double value) {
  if (isShownInDecibels(mapping)) return faderPositionOfLevel(value);
  return static_cast<int>(std::lround(1000.0 * normalisedFrom(mapping, value)));
}

void refreshEditorDialog(PannerPlugin& plugin, HWND dialog) {
  const UpdatingControls updating;
  const std::uint32_t flags = plugin.model.changeFlags.fetch_and(~kChangeLevels) & ~kChangeLevels;
  const Refresh refresh{plugin, dialog, flags};
  for (const EditorControl& control : kEditorControls) refreshControl(refresh, control);
}
