#include "editor/view/space_mouse_edit.h"

#include "model/host_link.h"
#include "platform/win32_types.h"

ModifierKeys readModifierKeys() {
  return {isKeyHeld(VK_SHIFT), isKeyHeld(VK_CONTROL), isKeyHeld(VK_MENU)};
}

double positionLimit(const PannerPlugin& plugin) {
  return 0.48 / plugin.view.zoom;
}

double clampToLimit(double value, double limit) {
  if (value < -limit) return -limit;
  if (value > limit) return limit;
  return value;
}

void resetDragState(PannerPlugin& plugin) {
  plugin.view.dragInput = -1;
  plugin.view.dragSpeaker = -1;
  plugin.view.bandActive = 0;
  for (std::int32_t& corner : plugin.view.bandRect) corner = -1;
  plugin.view.grabOffsetX = 0;
  plugin.view.grabOffsetY = 0;
  plugin.view.dragMoves = 0;
}

void countDragStep(PannerPlugin& plugin, int mouseX, int mouseY) {
  ++plugin.view.dragMoves;
  plugin.view.lastMouseX = mouseX;
  plugin.view.lastMouseY = mouseY;
}

bool clearSelection(PannerPlugin& plugin) {
  bool anySelected = false;
  for (int i = 0; i < plugin.inputCount(); ++i) {
    anySelected = anySelected || plugin.model.inputs[i].selected != 0;
    plugin.model.inputs[i].selected = 0;
  }
  return anySelected;
}
