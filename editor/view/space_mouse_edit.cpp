#include "editor/view/space_mouse_edit.h"

#include "model/host_link.h"
#include "platform/win32_types.h"

ModifierKeys readModifierKeys() {
  return {isKeyHeld(VK_SHIFT), isKeyHeld(VK_CONTROL), isKeyHeld(VK_MENU)};
}

double positionLimit(const PannerPlugin& plugin) {
  return 0.48 / plugin.zoom;
}

double clampToLimit(double value, double limit) {
  if (value < -limit) return -limit;
  if (value > limit) return limit;
  return value;
}

void resetDragState(PannerPlugin& plugin) {
  plugin.dragInput = -1;
  plugin.dragSpeaker = -1;
  plugin.bandActive = 0;
  for (std::int32_t& corner : plugin.bandRect) corner = -1;
  plugin.grabOffsetX = 0;
  plugin.grabOffsetY = 0;
  plugin.dragMoves = 0;
}

void countDragStep(PannerPlugin& plugin, int mouseX, int mouseY) {
  ++plugin.dragMoves;
  plugin.lastMouseX = mouseX;
  plugin.lastMouseY = mouseY;
}

bool clearSelection(PannerPlugin& plugin) {
  bool anySelected = false;
  for (int i = 0; i < plugin.inputCount(); ++i) {
    anySelected = anySelected || plugin.inputs[i].selected != 0;
    plugin.inputs[i].selected = 0;
  }
  return anySelected;
}
