// Button-up operations of the space view: the end of a drag or click, and the selection rectangle.
#include "editor/view/space_mouse.h"
#include "editor/view/space_mouse_edit.h"
#include "editor/view/space_projection.h"

namespace {

// A click (no move) decides the selection: Ctrl toggles, Shift adds, a plain click selects only it.
void clickInput(PannerPlugin& plugin, int input, const ModifierKeys& keys) {
  InputChannel& clicked = plugin.model.inputs[input];
  if (keys.ctrl) {
    clicked.selected = clicked.selected ? 0 : 1;
    return;
  }
  if (!keys.shift) clearSelection(plugin);
  clicked.selected = 1;
}

void releaseInput(PannerPlugin& plugin, const ModifierKeys& keys, ParameterReports& reports) {
  if (plugin.view.dragInput >= plugin.inputCount()) return;
  if (plugin.view.dragMoves == 0) {
    clickInput(plugin, plugin.view.dragInput, keys);
    plugin.model.changeFlags.fetch_or(kChangeEditor);
  } else {
    reports.addSelectedInputPositions(plugin);
  }
  plugin.model.changeFlags.fetch_or(kChangeInputs);
}

// A speaker that vanished during the drag is not reported.
void releaseSpeaker(PannerPlugin& plugin, ParameterReports& reports) {
  if (plugin.view.dragMoves != 0 && plugin.view.dragSpeaker < plugin.speakerCount()) {
    reports.addSpeakerPosition(plugin, plugin.view.dragSpeaker);
  }
  plugin.model.changeFlags.fetch_or(kChangeEditor | kChangeSpeakers);
}

bool insideBand(const PannerPlugin& plugin, const ViewPoint& point) {
  const std::int32_t* band = plugin.view.bandRect;
  const int left = band[0] < band[2] ? band[0] : band[2];
  const int right = band[0] < band[2] ? band[2] : band[0];
  const int top = band[1] < band[3] ? band[1] : band[3];
  const int bottom = band[1] < band[3] ? band[3] : band[1];
  return left <= point.x && point.x < right && top <= point.y && point.y < bottom;
}

void selectInBand(PannerPlugin& plugin, const ViewGeometry& view, const ModifierKeys& keys) {
  for (int i = 0; i < plugin.inputCount(); ++i) {
    InputChannel& input = plugin.model.inputs[i];
    if (insideBand(plugin, projectInput(view, plugin, input).raised)) {
      input.selected = keys.ctrl && input.selected ? 0 : 1;
    } else if (!keys.shift) {
      input.selected = 0;
    }
  }
}

}  // namespace

// [UI thread] Selection under modelMutex; end-of-edit reports after releasing it.
void finishDrag(PannerPlugin& plugin) {
  const ModifierKeys keys = readModifierKeys();
  ParameterReports reports;
  {
    ModelLock lock(plugin);
    if (plugin.view.dragSpeaker >= 0) {
      releaseSpeaker(plugin, reports);
    } else if (plugin.view.dragInput >= 0) {
      releaseInput(plugin, keys, reports);
    }
    resetDragState(plugin);
  }
  reports.send(plugin, true);
}

// [UI thread] Selection and view state only; no host report.
void finishBandSelect(PannerPlugin& plugin, int mouseX, int mouseY, int width, int height) {
  const ModifierKeys keys = readModifierKeys();
  ModelLock lock(plugin);
  plugin.view.bandRect[2] = mouseX;
  plugin.view.bandRect[3] = mouseY;
  if (!plugin.editor.lockInputs) selectInBand(plugin, viewGeometry(plugin, width, height), keys);
  resetDragState(plugin);
  plugin.model.changeFlags.fetch_or(kChangeEditor | kChangeInputs);
}
