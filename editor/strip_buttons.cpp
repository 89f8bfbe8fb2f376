// The mute, solo and reverse buttons of the strips. Only the clicked channel is reported, also
// when Control cleared the flag on the others: the host automates what the user touched.
#include "editor/dialog_handlers.h"
#include "editor/editor_dialog.h"
#include "editor/strip_flags.h"
#include "model/host_link.h"
#include "model/parameters.h"

namespace {

// Without Control the clicked flag toggles; with it every channel's clears and the clicked one is
// set when Alt is also held.
template <typename Record>
void clickFlag(GrowableArray<Record>& records, int clicked, std::uint8_t Record::*flag) {
  if (!isKeyHeld(VK_CONTROL)) {
    records[clicked].*flag = records[clicked].*flag != 0 ? 0 : 1;
    return;
  }
  for (int k = 0; k < records.size(); ++k) records[k].*flag = 0;
  records[clicked].*flag = isKeyHeld(VK_MENU) ? 1 : 0;
}

}  // namespace

bool onStripButton(PannerPlugin& plugin, int id) {
  const EditorControl* control = findEditorControl(id);
  if (control == nullptr || control->shows != Shows::StripButton) return false;
  const bool inputs = control->strip == Strip::Inputs;
  const int channel =
      control->row + (inputs ? plugin.editor.inputFaderOffset : plugin.editor.speakerFaderOffset);
  if (channel >= (inputs ? plugin.inputCount() : plugin.speakerCount())) return true;
  const auto flag = static_cast<int>(control->flag);
  {
    ModelLock lock(plugin);
    if (inputs) {
      clickFlag(plugin.model.inputs, channel, kInputFlags[flag]);
    } else {
      clickFlag(plugin.model.speakers, channel, kSpeakerFlags[flag]);
    }
  }
  if (control->flag != StripFlag::Reverse) {
    notifyMuteSolo(plugin, channel, inputs, control->flag == StripFlag::Mute);
  }
  plugin.model.changeFlags.fetch_or(kChangeLevels | (inputs ? kChangeInputs : kChangeSpeakers));
  return true;
}
