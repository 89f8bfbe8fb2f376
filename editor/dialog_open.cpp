// Opening the editor dialog: the scale, the combos, faders and knobs, the column origins, the
// button images, the rows of the two strips, then the first relayout and the 50 ms timer.
#include "editor/dialog_calls.h"
#include "editor/dialog_handlers.h"
#include "editor/editor_dialog.h"
#include "model/host_link.h"
#include "model/layouts.h"
#include "plugin/host_api.h"

namespace {

constexpr int kRoomScaleTick = 500;
constexpr int kZoomTick = 447;
constexpr LPARAM kFaderRange = LPARAM{1000} << 16;  // 0..1000
constexpr WPARAM kGroupKnobStyle = kKnobStyleCentreMark | kKnobStyleEndless;
constexpr LPARAM kMeterTopDb = 6;
constexpr int kButtonLift = 3;  // not scaled: the buttons sit 3 pixels above the row line

struct NamedFader {
  int id;
  const char* name;
};
constexpr NamedFader kNamedFaders[] = {{item::kSpaceX, "Space X width"},
                                       {item::kSpaceX + 1, "Space Y depth"},
                                       {item::kSpaceX + 2, "Space Z height"},
                                       {item::kZoom, "Zoom"},
                                       {item::kCenterTrim, "Center trim"}};

int dialogScale256(HWND dialog) {
  if (hostApi.GetWindowDPIScalingForDialog == nullptr) return 256;
  return hostApi.GetWindowDPIScalingForDialog(dialog);
}

void fillModeCombos(HWND dialog) {
  for (const char* name : kLayoutPresetNames) addComboItem(dialog, item::kLayout, name);
  for (const char* name : {"Gain", "LFE"}) addComboItem(dialog, item::kInputFaderMode, name);
  for (const char* name : {"Gain", "Influence"}) {
    addComboItem(dialog, item::kSpeakerFaderMode, name);
  }
}

void prepareFadersAndKnobs(HWND dialog) {
  for (const NamedFader& fader : kNamedFaders) {
    sendToItem(dialog, fader.id, TBM_SETRANGE, 0, kFaderRange);
    setFaderText(dialog, fader.id, kKestelPropertyName, fader.name);
  }
  for (int axis = 0; axis < 3; ++axis) setFaderTick(dialog, item::kSpaceX + axis, kRoomScaleTick);
  setFaderTick(dialog, item::kZoom, kZoomTick);
  setFaderTick(dialog, item::kCenterTrim, faderPositionOfLevel(1.0));
  for (int row = 0; row < kGroupRows; ++row) {
    sendToItem(dialog, item::kGroupKnob + row, WM_KESTEL_KNOBSTYLE, kGroupKnobStyle, 0);
  }
}

void measureColumnOrigins(HWND dialog, const StripGeometry& geometry) {
  const RECT inputs = itemRect(dialog, item::kInputBox);
  const RECT speakers = itemRect(dialog, item::kSpeakerBox);
  const int inset = geometry.scale256 / 64;
  columnOrigins = {inputs.left + inset, speakers.left + inset, inputs.top};
}

void setButtonImage(HWND dialog, int id, const PlaskButtonImage& image) {
  sendToItem(dialog, id, BM_SETIMAGE, kHotTrackImageKind, pointerParam(&image));
}

// Every control of one strip row, placed and in its first state.
void prepareRow(HWND dialog, const StripGeometry& geometry, Strip strip, int row) {
  const int x = geometry.originX(strip);
  const int y = geometry.rowY(row);
  const int button = geometry.buttonSize();
  const int rowHeight = geometry.rowHeight();
  const bool inputs = strip == Strip::Inputs;
  const int meter = stripControlId(strip, Shows::StripMeter, row);
  const int fader = stripControlId(strip, Shows::StripFader, row);
  sendToItem(dialog, meter, WM_KESTEL_VUSCALE, 0, kMeterTopDb);
  sendToItem(dialog, fader, TBM_SETRANGE, 0, kFaderRange);
  setFaderTick(dialog, fader, faderPositionOfLevel(1.0));
  for (const StripFlag flag : {StripFlag::Mute, StripFlag::Solo, StripFlag::Reverse}) {
    if (!inputs && flag == StripFlag::Reverse) continue;
    const int id = stripControlId(strip, Shows::StripButton, row, flag);
    setButtonImage(dialog, id, buttonImages.off[static_cast<int>(flag)]);
  }
  const int buttonY = y - kButtonLift;
  placeItem(dialog, stripControlId(strip, Shows::StripButton, row, StripFlag::Mute), x, buttonY,
            button, button);
  placeItem(dialog, stripControlId(strip, Shows::StripButton, row, StripFlag::Solo), x + rowHeight,
            buttonY, button, button);
  placeItem(dialog, meter, x + geometry.px(34), y, geometry.px(inputs ? 68 : 84), geometry.px(6));
  if (inputs) {
    placeItem(dialog, stripControlId(strip, Shows::StripButton, row, StripFlag::Reverse),
              x + geometry.px(106), buttonY, button, button);
  }
  placeItem(dialog, fader, x + geometry.px(218), y - geometry.px(5), geometry.px(100), rowHeight);
}

}  // namespace

void openEditorDialog(PannerPlugin& plugin, HWND dialog) {
  plugin.editor.lockInputs = 0;
  plugin.editor.typingEdits = 0;  // the timers of an earlier dialog died with it
  plugin.host.editorWindow = dialog;
  onLockInputsChanged = &applyInputLock;
  const int scale256 = dialogScale256(dialog);
  plugin.view.viewScale = scale256;
  const StripGeometry geometry{scale256};
  setItemText(dialog, item::kInfo, "");
  fillModeCombos(dialog);
  prepareFadersAndKnobs(dialog);
  measureColumnOrigins(dialog, geometry);
  makeButtonImages(scale256);
  for (int row = 0; row < kStripRows; ++row) {
    prepareRow(dialog, geometry, Strip::Inputs, row);
    prepareRow(dialog, geometry, Strip::Speakers, row);
  }
  plaskCall<PlaskId::SendMessage>(dialog, WM_EDITOR_RELAYOUT, WPARAM{0}, LPARAM{0});
  plugin.model.changeFlags = kChangeAll;
  plaskCall<PlaskId::ShowWindow>(dialog, int{SW_SHOW});
  plaskCall<PlaskId::SetTimer>(dialog, kRefreshTimerId, kRefreshIntervalMs, TIMERPROC{nullptr});
}
