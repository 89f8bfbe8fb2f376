#include "editor/view/space_mouse_edit.h"

#include "model/host_link.h"
#include "model/parameter_index.h"
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

void PositionReports::add(std::int32_t index, double coordinate) {
  if (count_ < kCapacity) items_[count_++] = {index, static_cast<float>((coordinate + 1.0) * 0.5)};
}

void PositionReports::addInput(const PannerPlugin& plugin, int input) {
  const InputChannel& channel = plugin.inputs[input];
  add(inputParameterIndex(input, kInX), channel.x);
  add(inputParameterIndex(input, kInY), channel.y);
  add(inputParameterIndex(input, kInZ), channel.z);
}

void PositionReports::addSpeaker(const PannerPlugin& plugin, int speaker) {
  const Speaker& record = plugin.speakers[speaker];
  const int inputs = plugin.inputCount();
  add(speakerParameterIndex(inputs, speaker, kSpkX), record.x);
  add(speakerParameterIndex(inputs, speaker, kSpkY), record.y);
  add(speakerParameterIndex(inputs, speaker, kSpkZ), record.z);
}

void PositionReports::addSelectedInputs(const PannerPlugin& plugin) {
  for (int i = 0; i < plugin.inputCount(); ++i) {
    if (plugin.inputs[i].selected) addInput(plugin, i);
  }
}

void PositionReports::send(PannerPlugin& plugin, bool endEdit) const {
  for (int i = 0; i < count_; ++i) {
    callHost(plugin, audioMasterAutomate, items_[i].index, 0, nullptr, items_[i].value);
    if (endEdit) callHost(plugin, audioMasterEndEdit, items_[i].index, 0, nullptr, 0.0f);
  }
}
