// One mouse-move step of a drag: the grabbed speaker, the selected inputs as one rigid group, or
// the selection rectangle's moving corner.
#include "editor/view/space_mouse.h"
#include "editor/view/space_mouse_edit.h"
#include "editor/view/space_projection.h"
#include "model/counts.h"

namespace {

// The floor position, in model units before the room scale, that keeps the grab point under the
// mouse.
struct FloorTarget {
  double x;
  double y;
};

struct Motion {
  double dx;
  double dy;
  double dz;
  bool any() const { return dx != 0.0 || dy != 0.0 || dz != 0.0; }
};

FloorTarget floorTarget(const PannerPlugin& plugin, const ViewGeometry& view, int mouseX,
                        int mouseY) {
  return {(plugin.view.grabOffsetX + mouseX - view.cx) / view.sx,
          (view.cy - mouseY + plugin.view.grabOffsetY) / view.sy};
}

// Height follows the vertical motion since the last step: up raises.
double heightStep(const PannerPlugin& plugin, const ViewGeometry& view, int mouseY) {
  return (plugin.view.lastMouseY - mouseY) / (plugin.model.spaceScaleZ * view.sy);
}

// After a height step the floor drag resumes from where the item stands, so releasing Alt does not
// make it jump to the mouse.
void reanchorGrab(PannerPlugin& plugin, const ProjectedPoint& point, int mouseX, int mouseY) {
  plugin.view.grabOffsetX = point.floor.x - mouseX;
  plugin.view.grabOffsetY = mouseY - point.floor.y;
}

bool dragBand(PannerPlugin& plugin, int mouseX, int mouseY) {
  if (plugin.view.bandActive) {
    plugin.view.bandRect[2] = mouseX;
    plugin.view.bandRect[3] = mouseY;
  }
  countDragStep(plugin, mouseX, mouseY);
  if (!plugin.view.bandActive) return false;
  plugin.model.changeFlags.fetch_or(kChangeInputs);
  return true;
}

void moveSpeaker(PannerPlugin& plugin, const ViewGeometry& view, Speaker& speaker, int mouseX,
                 int mouseY, bool alt) {
  const double limit = positionLimit(plugin);
  if (alt) {
    const double dz = heightStep(plugin, view, mouseY);
    speaker.z = clampToLimit(speaker.z + dz, limit);
    if (dz != 0.0) reanchorGrab(plugin, projectSpeaker(view, plugin, speaker), mouseX, mouseY);
    return;
  }
  const FloorTarget target = floorTarget(plugin, view, mouseX, mouseY);
  speaker.x = clampToLimit(target.x / plugin.model.spaceScaleX, limit);
  speaker.y = clampToLimit(target.y / plugin.model.spaceScaleY, limit);
}

// A speaker that vanished while it was dragged is left alone.
bool dragSpeakerStep(PannerPlugin& plugin, const ViewGeometry& view, int mouseX, int mouseY,
                     const ModifierKeys& keys, ParameterReports& reports) {
  if (plugin.view.dragSpeaker >= plugin.speakerCount()) return false;
  moveSpeaker(plugin, view, plugin.model.speakers[plugin.view.dragSpeaker], mouseX, mouseY,
              keys.alt);
  markInputsDirty(plugin, kDirtyAllInputs);
  reports.addSpeakerPosition(plugin, plugin.view.dragSpeaker);
  countDragStep(plugin, mouseX, mouseY);
  plugin.model.changeFlags.fetch_or(kChangeSpeakers);
  return true;
}

Motion grabbedInputMotion(PannerPlugin& plugin, const ViewGeometry& view, int mouseX, int mouseY,
                          bool alt) {
  const InputChannel& grabbed = plugin.model.inputs[plugin.view.dragInput];
  if (!alt) {
    const FloorTarget target = floorTarget(plugin, view, mouseX, mouseY);
    return {target.x - grabbed.x, target.y - grabbed.y, 0.0};
  }
  const double dz = heightStep(plugin, view, mouseY);
  if (dz != 0.0) reanchorGrab(plugin, projectInput(view, plugin, grabbed), mouseX, mouseY);
  return {0.0, 0.0, dz};
}

// +1 follows the grabbed input, -1 mirrors it; Ctrl makes every selected input follow.
double followSign(const InputChannel& input, std::uint8_t grabbedReverse, bool ctrl) {
  if (ctrl || input.reverse == grabbedReverse) return 1.0;
  return -1.0;
}

double limitAxis(double delta, double coordinate, double sign, double limit) {
  if (coordinate + sign * delta < -limit) delta = (-limit - coordinate) * sign;
  if (coordinate + sign * delta > limit) delta = (limit - coordinate) * sign;
  return delta;
}

// The group stops as a whole once one member reaches the border.
void limitToBorder(const PannerPlugin& plugin, Motion& motion, std::uint8_t grabbedReverse,
                   bool ctrl) {
  const double limit = positionLimit(plugin);
  for (int j = 0; j < plugin.inputCount(); ++j) {
    const InputChannel& input = plugin.model.inputs[j];
    if (!input.selected) continue;
    const double sign = followSign(input, grabbedReverse, ctrl);
    motion.dx = limitAxis(motion.dx, input.x, sign, limit);
    motion.dy = limitAxis(motion.dy, input.y, sign, limit);
    motion.dz = limitAxis(motion.dz, input.z, sign, limit);
  }
}

void moveSelectedInputs(PannerPlugin& plugin, const Motion& motion, std::uint8_t grabbedReverse,
                        bool ctrl) {
  for (int j = 0; j < plugin.inputCount(); ++j) {
    InputChannel& input = plugin.model.inputs[j];
    if (!input.selected) continue;
    const double sign = followSign(input, grabbedReverse, ctrl);
    input.x += sign * motion.dx;
    input.y += sign * motion.dy;
    input.z += sign * motion.dz;
    markInputsDirty(plugin, j);
  }
}

bool dragInputStep(PannerPlugin& plugin, const ViewGeometry& view, int mouseX, int mouseY,
                   const ModifierKeys& keys, ParameterReports& reports) {
  if (plugin.view.dragInput >= plugin.inputCount()) return false;
  InputChannel& grabbed = plugin.model.inputs[plugin.view.dragInput];
  // A Shift or Ctrl grab joins the selection at its first move.
  if (!grabbed.selected) plugin.model.changeFlags.fetch_or(kChangeEditor);
  grabbed.selected = 1;
  Motion motion = grabbedInputMotion(plugin, view, mouseX, mouseY, keys.alt);
  limitToBorder(plugin, motion, grabbed.reverse, keys.ctrl);
  if (motion.any()) {
    moveSelectedInputs(plugin, motion, grabbed.reverse, keys.ctrl);
    reports.addSelectedInputPositions(plugin);
  }
  countDragStep(plugin, mouseX, mouseY);
  plugin.model.changeFlags.fetch_or(kChangeInputs);
  return true;
}

bool dragStep(PannerPlugin& plugin, int mouseX, int mouseY, int width, int height,
              const ModifierKeys& keys, ParameterReports& reports) {
  const ViewGeometry view = viewGeometry(plugin, width, height);
  // A view without pixels (an inline view folded away) has no positions to move to.
  if (!(view.sx > 0.0 && view.sy > 0.0)) return false;
  if (plugin.view.dragSpeaker >= 0)
    return dragSpeakerStep(plugin, view, mouseX, mouseY, keys, reports);
  if (plugin.view.dragInput >= 0) return dragInputStep(plugin, view, mouseX, mouseY, keys, reports);
  return dragBand(plugin, mouseX, mouseY);
}

}  // namespace

// [UI thread] Moves under modelMutex; reports the new positions after releasing it.
bool dragTo(PannerPlugin& plugin, int mouseX, int mouseY, int width, int height) {
  const ModifierKeys keys = readModifierKeys();
  ParameterReports reports;
  bool repaint = false;
  {
    ModelLock lock(plugin);
    repaint = dragStep(plugin, mouseX, mouseY, width, height, keys, reports);
  }
  reports.send(plugin, false);
  return repaint;
}
