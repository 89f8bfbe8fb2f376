// The double click of the space view: raised inputs come down to the floor, inputs on the floor go
// to the centre. It acts on the selection, which the double click's first click already set.
#include "editor/view/position_readout.h"
#include "editor/view/space_mouse.h"
#include "model/counts.h"
#include "model/parameters.h"

namespace {

// notifyGroupEdit modes whose reports match the reset: x, y, z after a height reset, x, y after a
// floor reset.
constexpr int kHeightResetReportMode = 2;
constexpr int kFloorResetReportMode = 4;

enum class Reset { None, Floor, Height };

Reset resetInput(InputChannel& input) {
  if (input.z != 0.0) {
    input.z = 0.0;
    return Reset::Height;
  }
  if (input.x == 0.0 && input.y == 0.0) return Reset::None;
  input.x = 0.0;
  input.y = 0.0;
  return Reset::Floor;
}

// The strongest reset made: one height reset makes every selected input report its height.
Reset resetSelectedInputs(PannerPlugin& plugin) {
  Reset made = Reset::None;
  for (int i = 0; i < plugin.inputCount(); ++i) {
    if (!plugin.model.inputs[i].selected) continue;
    const Reset reset = resetInput(plugin.model.inputs[i]);
    if (reset > made) made = reset;
  }
  return made;
}

// The readout of the one selected input; empty when none or several are selected.
void formatSelectionReadout(const PannerPlugin& plugin, char* text, int capacity) {
  text[0] = '\0';
  int selected = -1;
  for (int i = 0; i < plugin.inputCount(); ++i) {
    if (!plugin.model.inputs[i].selected) continue;
    if (selected >= 0) return;
    selected = i;
  }
  if (selected < 0) return;
  const InputChannel& input = plugin.model.inputs[selected];
  formatPosition(text, capacity, input.x, input.y, input.z);
}

}  // namespace

// [UI thread] Resets under modelMutex; reports and the readout follow after releasing it.
void resetPositions(PannerPlugin& plugin) {
  char readout[kReadoutCapacity];
  Reset made = Reset::None;
  {
    ModelLock lock(plugin);
    if (plugin.editor.lockInputs || plugin.inputCount() == 0) return;
    made = resetSelectedInputs(plugin);
    if (made == Reset::None) return;
    markInputsDirty(plugin, kDirtySelectedInputs);
    formatSelectionReadout(plugin, readout, kReadoutCapacity);
  }
  notifyGroupEdit(plugin, made == Reset::Height ? kHeightResetReportMode : kFloorResetReportMode,
                  true);
  setInfoText(plugin, readout);
  plugin.model.changeFlags.fetch_or(kChangeInputs);
}
