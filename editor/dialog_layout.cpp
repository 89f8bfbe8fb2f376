// WM_EDITOR_RELAYOUT: the rows each strip shows, its "Display:" choice, the height of its group
// box with the combos below it, and the dialog's height.
#include <cstdio>

#include "editor/dialog_calls.h"
#include "editor/editor_dialog.h"

namespace {

// One strip's controls below its box, and what the strip shows.
struct StripLayout {
  Strip strip;
  int boxId;
  int modeId;
  int modeLabelId;
  int displayId;
  int displayLabelId;
  int count;
  int offset;
};

StripLayout inputLayout(const PannerPlugin& plugin) {
  return {Strip::Inputs,         item::kInputBox,
          item::kInputFaderMode, item::kInputFadersLabel,
          item::kInputDisplay,   item::kInputDisplayLabel,
          plugin.inputCount(),   plugin.editor.inputFaderOffset};
}

StripLayout speakerLayout(const PannerPlugin& plugin) {
  return {Strip::Speakers,         item::kSpeakerBox,
          item::kSpeakerFaderMode, item::kSpeakerFadersLabel,
          item::kSpeakerDisplay,   item::kSpeakerDisplayLabel,
          plugin.speakerCount(),   plugin.editor.speakerFaderOffset};
}

bool choosesRows(const StripLayout& layout) {
  return layout.count > kStripRows;
}

void fillDisplayChoice(HWND dialog, const StripLayout& layout) {
  sendToItem(dialog, layout.displayId, CB_RESETCONTENT, 0, 0);
  for (int item = 0; item < displayItemCount(layout.count); ++item) {
    const int first = item * kDisplayStep;
    char text[32];
    std::snprintf(text, sizeof text, "%d-%d", first + 1,
                  std::min(first + kStripRows, layout.count));
    addComboItem(dialog, layout.displayId, text);
  }
  selectComboItem(dialog, layout.displayId, layout.offset / kDisplayStep);
}

void showDisplayChoice(HWND dialog, const StripLayout& layout) {
  const bool shown = choosesRows(layout);
  showItem(dialog, layout.displayLabelId, shown);
  showItem(dialog, layout.displayId, shown);
  if (shown) fillDisplayChoice(dialog, layout);
}

void showRows(HWND dialog, const StripLayout& layout) {
  for (const EditorControl& control : kEditorControls) {
    if (control.strip != layout.strip) continue;
    showItem(dialog, control.id, layout.offset + control.row < layout.count);
  }
}

// Moves a combo so that its top is `top`, and its label by as much; x stays.
void moveBelowBox(HWND dialog, int comboId, int labelId, int top) {
  const RECT combo = itemRect(dialog, comboId);
  const RECT label = itemRect(dialog, labelId);
  const int shift = top - combo.top;
  moveItem(dialog, comboId, combo.left, top);
  moveItem(dialog, labelId, label.left, label.top + shift);
}

// Sizes the strip's box to its rows; answers the top of what comes below it.
int sizeStrip(HWND dialog, const StripGeometry& geometry, const StripLayout& layout) {
  const int rows = rowsShown(layout.count, layout.offset);
  const int boxHeight = geometry.px(22) + rows * geometry.rowHeight() + geometry.scale256 / 64;
  const RECT box = itemRect(dialog, layout.boxId);
  resizeItem(dialog, layout.boxId, box.right - box.left, boxHeight);
  const int below = columnOrigins.stripTop + geometry.scale256 / 32 + boxHeight;
  moveBelowBox(dialog, layout.modeId, layout.modeLabelId, below);
  if (choosesRows(layout)) moveBelowBox(dialog, layout.displayId, layout.displayLabelId, below);
  return below;
}

// The client area becomes `clientHeight` high; the width and the frame stay.
void setClientHeight(HWND dialog, int clientHeight) {
  RECT window{};
  RECT client{};
  plaskCall<PlaskId::GetWindowRect>(dialog, &window);
  plaskCall<PlaskId::GetClientRect>(dialog, &client);
  const int frameHeight = (window.bottom - window.top) - (client.bottom - client.top);
  plaskCall<PlaskId::SetWindowPos>(dialog, HWND{nullptr}, 0, 0, window.right - window.left,
                                   frameHeight + clientHeight,
                                   UINT{SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE});
  const RECT strips{0, columnOrigins.stripTop, client.right, clientHeight};
  plaskCall<PlaskId::InvalidateRect>(dialog, &strips, BOOL{1});
}

}  // namespace

void relayoutEditorDialog(PannerPlugin& plugin, HWND dialog) {
  const UpdatingControls updating;
  plugin.model.changeFlags.fetch_and(~kChangeCounts);
  const StripGeometry geometry{plugin.view.viewScale};
  int bottom = 0;
  for (const StripLayout& layout : {inputLayout(plugin), speakerLayout(plugin)}) {
    showDisplayChoice(dialog, layout);
    showRows(dialog, layout);
    bottom = std::max(bottom, sizeStrip(dialog, geometry, layout));
  }
  setClientHeight(dialog, bottom + geometry.px(28));
}
