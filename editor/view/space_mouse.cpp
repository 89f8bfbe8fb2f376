// Button-down operations of the space view: grabbing what lies under the mouse and starting the
// selection rectangle.
#include "editor/view/space_mouse.h"

#include <cstdlib>

#include "editor/view/space_mouse_edit.h"
#include "editor/view/space_projection.h"
#include "model/layouts.h"

namespace {

bool hits(const ProjectedPoint& point, int mouseX, int mouseY, int halfSize) {
  return std::abs(point.raised.x - mouseX) <= halfSize &&
         std::abs(point.raised.y - mouseY) <= halfSize;
}

// The grab point keeps its place relative to the floor position while dragging.
void anchorGrab(PannerPlugin& plugin, const ProjectedPoint& point, int mouseX, int mouseY) {
  plugin.view.grabOffsetX = point.floor.x - mouseX;
  plugin.view.grabOffsetY = mouseY - point.floor.y;
  plugin.view.lastMouseX = mouseX;
  plugin.view.lastMouseY = mouseY;
}

void selectOnly(PannerPlugin& plugin, int input) {
  clearSelection(plugin);
  plugin.model.inputs[input].selected = 1;
}

bool grabInput(PannerPlugin& plugin, const ViewGeometry& view, int mouseX, int mouseY, int half,
               const ModifierKeys& keys) {
  for (int i = 0; i < plugin.inputCount(); ++i) {
    const ProjectedPoint point = projectInput(view, plugin, plugin.model.inputs[i]);
    if (!hits(point, mouseX, mouseY, half)) continue;
    anchorGrab(plugin, point, mouseX, mouseY);
    plugin.view.dragInput = i;
    // Shift and Ctrl decide at release; a plain grab makes the input the selection at once.
    if (!plugin.model.inputs[i].selected && !keys.shift && !keys.ctrl) selectOnly(plugin, i);
    return true;
  }
  return false;
}

// LFE speakers are not drawn but can still be grabbed where they would be.
bool grabSpeaker(PannerPlugin& plugin, const ViewGeometry& view, int mouseX, int mouseY, int half) {
  for (int s = 0; s < plugin.speakerCount(); ++s) {
    const ProjectedPoint point = projectSpeaker(view, plugin, plugin.model.speakers[s]);
    if (!hits(point, mouseX, mouseY, half)) continue;
    anchorGrab(plugin, point, mouseX, mouseY);
    plugin.view.dragSpeaker = s;
    return true;
  }
  return false;
}

bool grabUnderMouse(PannerPlugin& plugin, int mouseX, int mouseY, int width, int height,
                    bool inlineView, const ModifierKeys& keys) {
  const ViewGeometry view = viewGeometry(plugin, width, height);
  const int half = scaledSize(5, inlineView ? plugin.view.inlineScale : plugin.view.viewScale);
  if (!plugin.editor.lockInputs && grabInput(plugin, view, mouseX, mouseY, half, keys)) return true;
  return plugin.model.layoutPreset == kLayoutUserSetup &&
         grabSpeaker(plugin, view, mouseX, mouseY, half);
}

}  // namespace

// [UI thread] Writes selection and drag state under modelMutex.
bool hitTestAndGrab(PannerPlugin& plugin, int mouseX, int mouseY, int width, int height,
                    bool inlineView) {
  const ModifierKeys keys = readModifierKeys();
  ModelLock lock(plugin);
  resetDragState(plugin);
  plugin.view.lastMouseX = 0;
  plugin.view.lastMouseY = 0;
  if (grabUnderMouse(plugin, mouseX, mouseY, width, height, inlineView, keys)) {
    plugin.model.changeFlags.fetch_or(kChangeEditor | kChangeSpeakers);
    return true;
  }
  if (!plugin.editor.lockInputs && clearSelection(plugin)) {
    plugin.model.changeFlags.fetch_or(kChangeEditor | kChangeSpeakers);
  }
  return false;
}

// [UI thread] View state only.
void startBandSelect(PannerPlugin& plugin, int mouseX, int mouseY) {
  resetDragState(plugin);
  plugin.view.lastMouseX = 0;
  plugin.view.lastMouseY = 0;
  plugin.view.bandRect[0] = plugin.view.bandRect[2] = mouseX;
  plugin.view.bandRect[1] = plugin.view.bandRect[3] = mouseY;
  plugin.view.bandActive = 1;
  plugin.model.changeFlags.fetch_or(kChangeEditor | kChangeSpeakers);
}
