// Clicks in the name strips: selection of inputs (Shift extends toward the nearer selected input,
// Control toggles) and the double click that starts a rename.
#include "editor/dialog_calls.h"
#include "editor/dialog_handlers.h"
#include "editor/editor_dialog.h"
#include "model/host_link.h"
#include "model/layouts.h"

namespace {

// The row under the point in `strip`'s names column, or -1.
int namesRowAt(const PannerPlugin& plugin, Strip strip, LPARAM lParam) {
  const StripGeometry g{plugin.view.viewScale};
  const int x = signedLowWord(static_cast<std::uintptr_t>(lParam));
  const int y = signedHighWord(static_cast<std::uintptr_t>(lParam));
  const int rows = strip == Strip::Inputs ? inputRowsShown(plugin) : speakerRowsShown(plugin);
  const int left = g.namesX(strip);
  const int top = g.namesTop();
  if (x < left || x >= left + g.namesWidth() || y < top || y >= top + rows * g.rowHeight()) {
    return -1;
  }
  return (y - top) / g.rowHeight();
}

void selectRange(PannerPlugin& plugin, int from, int to) {
  for (int k = from; k <= to; ++k) plugin.model.inputs[k].selected = 1;
}

// Shift: from input i to the nearer selected input, the lower one on a tie.
void extendSelection(PannerPlugin& plugin, int i) {
  int lo = i - 1;
  while (lo >= 0 && plugin.model.inputs[lo].selected == 0) --lo;
  int hi = i + 1;
  while (hi < plugin.inputCount() && plugin.model.inputs[hi].selected == 0) ++hi;
  const bool hasHi = hi < plugin.inputCount();
  if (lo < 0 && !hasHi) {
    plugin.model.inputs[i].selected = 1;
  } else if (lo < 0) {
    selectRange(plugin, i, hi);
  } else if (!hasHi || i - lo <= hi - i) {
    selectRange(plugin, lo, i);
  } else {
    selectRange(plugin, i, hi);
  }
}

void clickInput(PannerPlugin& plugin, int i) {
  if (isKeyHeld(VK_SHIFT)) return extendSelection(plugin, i);
  if (isKeyHeld(VK_CONTROL)) {
    plugin.model.inputs[i].selected = plugin.model.inputs[i].selected != 0 ? 0 : 1;
    return;
  }
  for (int k = 0; k < plugin.inputCount(); ++k) plugin.model.inputs[k].selected = k == i ? 1 : 0;
}

}  // namespace

void onNamesClick(PannerPlugin& plugin, LPARAM lParam) {
  if (plugin.editor.lockInputs != 0) return;
  const int row = namesRowAt(plugin, Strip::Inputs, lParam);
  if (row < 0) return;
  {
    ModelLock lock(plugin);
    clickInput(plugin, plugin.editor.inputFaderOffset + row);
  }
  plugin.model.changeFlags.fetch_or(kChangeEditor | kChangeInputs);
}

// Speakers are renamed only in a user setup: the presets name their own.
void onNamesDoubleClick(PannerPlugin& plugin, HWND dialog, LPARAM lParam) {
  int channel = -1;
  if (const int row = namesRowAt(plugin, Strip::Inputs, lParam);
      row >= 0 && plugin.editor.lockInputs == 0) {
    channel = plugin.editor.inputFaderOffset + row;
  } else if (const int speakerRow = namesRowAt(plugin, Strip::Speakers, lParam);
             speakerRow >= 0 && plugin.model.layoutPreset == kLayoutUserSetup) {
    channel = plugin.inputCount() + plugin.editor.speakerFaderOffset + speakerRow;
  }
  if (channel < 0) return;
  plaskCall<PlaskId::SendMessage>(dialog, WM_EDITOR_BEGINRENAME, static_cast<WPARAM>(channel),
                                  LPARAM{0});
}
