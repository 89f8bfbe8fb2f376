// The editor dialog's parts as its procedure calls them, its private messages, and the geometry
// of the two strips. [UI thread] for everything here.
#pragma once

#include <algorithm>
#include <cmath>

#include "editor/control_list.h"
#include "editor/editor_shared.h"
#include "editor/view/space_projection.h"
#include "model/panner_plugin.h"

// Sent to the dialog by itself, the rename keys and the command handlers.
constexpr UINT WM_EDITOR_REFRESH = 0x4C8;      // wParam 0: every control's value from the model
constexpr UINT WM_EDITOR_RELAYOUT = 0x52C;     // wParam 0: rows shown, strips and dialog sized
constexpr UINT WM_EDITOR_BEGINRENAME = 0x590;  // wParam: channel, inputs first
constexpr UINT WM_EDITOR_ENDRENAME = 0x5F4;    // wParam: 1 commit, 0 cancel

constexpr UINT_PTR kRefreshTimerId = 1;  // also sent by the space view after a drag step
constexpr UINT kRefreshIntervalMs = 50;

// Levels: -150 dB for silence and below.
constexpr double kSilenceLinear = 2.9802322387695312e-08;  // 2^-25
constexpr double kFloorDb = -150.0;
inline double levelDb(double linear) {
  if (linear < kSilenceLinear) return kFloorDb;
  return std::max(std::log(linear) * 8.685889638065037, kFloorDb);
}

// Sizes of the strips at the dialog's scale; origins from the last opening (columnOrigins).
struct StripGeometry {
  int scale256;

  int px(int size100) const { return scaledSize(size100, scale256); }
  int rowHeight() const { return scale256 / 16; }
  int buttonSize() const { return px(12); }
  int originX(Strip strip) const {
    return strip == Strip::Inputs ? columnOrigins.inputX : columnOrigins.speakerX;
  }
  // The centre line of the controls of row k.
  int rowY(int row) const { return columnOrigins.stripTop + px(22) + row * rowHeight(); }
  // The names column: its left edge, its width and the top of row 0.
  int namesX(Strip strip) const { return originX(strip) + px(122); }
  int namesWidth() const { return px(94); }
  int namesTop() const { return columnOrigins.stripTop + rowHeight(); }
};

// Rows a strip shows: from its offset, at most 16, not past the count.
inline int rowsShown(int count, int offset) {
  return std::clamp(count - offset, 0, kStripRows);
}
inline int inputRowsShown(const PannerPlugin& plugin) {
  return rowsShown(plugin.inputCount(), plugin.editor.inputFaderOffset);
}
inline int speakerRowsShown(const PannerPlugin& plugin) {
  return rowsShown(plugin.speakerCount(), plugin.editor.speakerFaderOffset);
}

// Fader positions 0..1000: levels on the host's fader law, other fields by their normalised value.
int faderPositionOfLevel(double linear);
int faderPositionOf(ValueMapping mapping, double value);

// WM_INITDIALOG: controls filled and placed, first relayout, the 50 ms timer.
void openEditorDialog(PannerPlugin& plugin, HWND dialog);
// WM_EDITOR_RELAYOUT.
void relayoutEditorDialog(PannerPlugin& plugin, HWND dialog);
// WM_EDITOR_REFRESH.
void refreshEditorDialog(PannerPlugin& plugin, HWND dialog);
// WM_PAINT: the two name strips.
void paintNameStrips(PannerPlugin& plugin, HWND dialog);
// Timer 1: change flags turned into refresh, relayout and repaints; the meters.
void editorRefreshTick(PannerPlugin& plugin, HWND dialog);
// WM_DESTROY: the rename field, the lock and the bitmaps.
void closeEditorDialog(PannerPlugin& plugin);

// The "Display:" combo of a strip of `count` channels: one item per first row 0, 4, 8, ... while
// 12 or more channels are left to show.
constexpr int kDisplayStep = 4;
constexpr int displayItemCount(int count) {
  constexpr int kLeftToShow = 12;
  return count > kLeftToShow ? (count - kLeftToShow + kDisplayStep - 1) / kDisplayStep : 0;
}
static_assert(displayItemCount(17) == 2 && displayItemCount(64) == 13 &&
              displayItemCount(16) == 1 && displayItemCount(13) == 1 && displayItemCount(12) == 0);

// The records handed to PLASK_GenerateDialogFromList: kEditorControlCount, in list order.
const PlaskControlRecord* editorTemplateRecords();
