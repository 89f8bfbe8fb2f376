// WM_COMMAND of the editor dialog: the count, layout and option controls, the strip combos, the
// group-edit box, the lock and the strip buttons. Programmatic changes (updatingControls) reach
// only the controls that never echo the refresh: the knobs, the push buttons and the strip buttons.
#include <cstdio>

#include "editor/dialog_calls.h"
#include "editor/dialog_handlers.h"
#include "editor/editor_dialog.h"
#include "editor/group_edit.h"
#include "model/counts.h"
#include "model/host_link.h"
#include "model/layouts.h"

namespace {

constexpr std::uint32_t kArrangementFromEditor = 0x10000;
constexpr int kLfeSpeaker = 3;  // the fourth speaker takes and gives up the LFE role
constexpr LPARAM kKnobValueMask = 0xFFFF;
constexpr LPARAM kKnobGestureEndBit = 0x10000;

struct Command {
  PannerPlugin& plugin;
  HWND dialog;
  int id;
  int code;
  LPARAM lParam;
};

int comboSelection(const Command& c) {
  return static_cast<int>(sendToItem(c.dialog, c.id, CB_GETCURSEL, 0, 0));
}

bool isChecked(HWND dialog, int id) {
  return plaskCall<PlaskId::IsDlgButtonChecked>(dialog, id) == BST_CHECKED;
}

void restartTimer(const Command& c, UINT_PTR timer) {
  c.plugin.editor.typingEdits |= typingBit(timer);
  plaskCall<PlaskId::SetTimer>(c.dialog, timer, kTypedEditDelayMs, TIMERPROC{nullptr});
}

void chooseLayout(PannerPlugin& plugin, int selection) {
  markArrangementPending(plugin);
  if (selection > kLayoutUserSetup) {
    applyLayoutPreset(plugin, selection);
  } else {
    setSpeakerCount(plugin, plugin.speakerCount());
  }
  for (int row = 0; row < kMeterSlots; ++row) {
    plugin.mix.inputPeaks[row] = 0.0;
    plugin.mix.speakerPeaks[row] = 0.0;
  }
  {
    ModelLock lock(plugin);
    plugin.model.gainRows = -1;
    plugin.model.gainCols = -1;
  }
  plugin.model.changeFlags.fetch_or(kChangeCounts);
}

// The fourth speaker toggles the LFE role; every other speaker loses it. With fewer than four
// speakers there is no such speaker and nothing changes.
void toggleLfe(PannerPlugin& plugin) {
  if (plugin.speakerCount() <= kLfeSpeaker) return;
  {
    ModelLock lock(plugin);
    bool anyLfe = false;
    for (int s = 0; s < plugin.speakerCount(); ++s) {
      anyLfe = anyLfe || plugin.model.speakers[s].isLfe != 0;
      plugin.model.speakers[s].isLfe = 0;
    }
    Speaker& speaker = plugin.model.speakers[kLfeSpeaker];
    if (anyLfe) {
      std::snprintf(speaker.name, sizeof speaker.name, "speaker %c", 'A' + kLfeSpeaker % 26);
    } else {
      speaker.isLfe = 1;
      copyChannelName(speaker.name, "LFE");
    }
    markInputsDirty(plugin, kDirtyAllInputs);
  }
  plugin.model.changeFlags.fetch_or(kChangeEditor | kChangeLevels | kChangeSpeakers);
}

void setOptionBits(PannerPlugin& plugin, std::uint32_t mask, std::uint32_t bits) {
  ModelLock lock(plugin);
  plugin.model.optionFlags = (plugin.model.optionFlags & ~mask) | (bits & mask);
  markInputsDirty(plugin, kDirtyAllInputs);
}

void chooseInfluence(PannerPlugin& plugin, HWND dialog) {
  const UpdatingControls updating;
  if (isChecked(dialog, item::kRelative)) {
    setOptionBits(plugin, kOptionRelativeInfluence, kOptionRelativeInfluence);
  } else if (isChecked(dialog, item::kAbsolute)) {
    setOptionBits(plugin, kOptionRelativeInfluence, 0);
  }
  const std::uint32_t flags = plugin.model.optionFlags;
  const std::uint32_t normalizeBits = kOptionNormalizeOff | kOptionRelativeInfluence;
  checkItem(dialog, item::kNormalize, (flags & normalizeBits) != kOptionNormalizeOff);
  enableItem(dialog, item::kNormalize, (flags & kOptionRelativeInfluence) == 0);
}

void toggleNormalize(PannerPlugin& plugin, HWND dialog) {
  const UpdatingControls updating;
  setOptionBits(plugin, kOptionNormalizeOff,
                isChecked(dialog, item::kNormalize) ? 0u : std::uint32_t{kOptionNormalizeOff});
}

void chooseFaderMode(PannerPlugin& plugin, int selection, std::uint32_t mask, int shift) {
  if (selection != 0 && selection != 1) return;
  setOptionBits(plugin, mask, static_cast<std::uint32_t>(selection) << shift);
  plugin.model.changeFlags.fetch_or(kChangeLevels);
}

void chooseFirstRow(PannerPlugin& plugin, std::int32_t EditorState::*offset, int selection) {
  {
    ModelLock lock(plugin);
    plugin.editor.*offset = kDisplayStep * selection;
  }
  plugin.model.changeFlags.fetch_or(kChangeCounts);
}

int groupRowOf(int id, int first) {
  return id >= first && id < first + kGroupRows ? id - first : -1;
}

void turnGroupKnob(const Command& c) {
  const int value = static_cast<int>(c.lParam & kKnobValueMask);
  const double d = groupKnobDelta(value, isKeyHeld(VK_CONTROL), isKeyHeld(VK_SHIFT));
  const int row = c.id - item::kGroupKnob;
  groupKnob(c.plugin, c.plugin.editor.groupKnobModes[row], d, (c.lParam & kKnobGestureEndBit) != 0);
}

// The controls that act also while the dialog sets values itself; true when `c` was one.
bool unguardedCommand(const Command& c) {
  PannerPlugin& p = c.plugin;
  if (const int row = groupRowOf(c.id, item::kGroupKnob); row >= 0) {
    turnGroupKnob(c);
    return true;
  }
  if (c.code != BN_CLICKED) return false;
  if (const int row = groupRowOf(c.id, item::kGroupInvert); row >= 0) {
    groupInvert(p, p.editor.groupKnobModes[row]);
  } else if (const int resetRow = groupRowOf(c.id, item::kGroupReset); resetRow >= 0) {
    groupReset(p, p.editor.groupKnobModes[resetRow]);
  } else if (c.id == item::kLock) {
    setLockInputs(p, p.editor.lockInputs == 0);
  } else {
    return onStripButton(p, c.id);
  }
  return true;
}

void editChanged(const Command& c) {
  if (c.code != EN_CHANGE) return;
  if (c.id == item::kInputCount) restartTimer(c, kInputCountTimerId);
  if (c.id == item::kSpeakerCount) restartTimer(c, kSpeakerCountTimerId);
  if (c.id == item::kCenterTrimText) restartTimer(c, kTrimTypedTimerId);
}

void comboChosen(const Command& c) {
  if (c.code != CBN_SELCHANGE) return;
  const int selection = comboSelection(c);
  if (selection < 0) return;
  PannerPlugin& p = c.plugin;
  if (const int row = groupRowOf(c.id, item::kGroupMode); row >= 0) {
    p.editor.groupKnobModes[row] = selection;
  }
  switch (c.id) {
    case item::kLayout:
      return chooseLayout(p, selection);
    case item::kInputFaderMode:
      return chooseFaderMode(p, selection, kOptionInputFaderModeMask, 0);
    case item::kSpeakerFaderMode:
      return chooseFaderMode(p, selection, kOptionSpeakerFaderModeMask, 8);
    case item::kInputDisplay:
      return chooseFirstRow(p, &EditorState::inputFaderOffset, selection);
    case item::kSpeakerDisplay:
      return chooseFirstRow(p, &EditorState::speakerFaderOffset, selection);
    default:
      return;
  }
}

void buttonClicked(const Command& c) {
  switch (c.id) {
    case item::kLfe:
      return toggleLfe(c.plugin);
    case item::kRelative:
    case item::kAbsolute:
      return chooseInfluence(c.plugin, c.dialog);
    case item::kNormalize:
      return toggleNormalize(c.plugin, c.dialog);
    default:
      return;
  }
}

}  // namespace

void markArrangementPending(PannerPlugin& plugin) {
  const auto before = static_cast<std::uint32_t>(plugin.speakerCount() << 8 | plugin.inputCount());
  plugin.host.pendingArrangement = before | kArrangementFromEditor;
}

void onDialogCommand(PannerPlugin& plugin, HWND dialog, WPARAM wParam, LPARAM lParam) {
  const Command c{plugin, dialog, lowWord(wParam), highWord(wParam), lParam};
  if (unguardedCommand(c) || updatingControls != 0) return;
  const EditorControl* control = findEditorControl(c.id);
  if (control == nullptr) return;
  switch (control->cls) {
    case ControlClass::Edit:
      return editChanged(c);
    case ControlClass::Combo:
      return comboChosen(c);
    case ControlClass::Button:
      return buttonClicked(c);
    default:
      return;
  }
}
