// The in-place rename field of a channel name: opened over the name strip, committed or dropped,
// and watched every 100 ms so that a click elsewhere commits it. One field in the process.
#include <cstdint>

#include "editor/dialog_calls.h"
#include "editor/dialog_handlers.h"
#include "editor/editor_dialog.h"
#include "model/layouts.h"
#include "plugin/host_api.h"

namespace {

constexpr auto kRenameFieldMark = static_cast<LONG_PTR>(std::uintptr_t{0xDEADF00B});
constexpr int kRenameStyle = ES_AUTOHSCROLL | ES_WANTRETURN;
constexpr int kRenameTextBytes = 512;
constexpr int kFieldLift = 2;    // pixels above the row, unscaled
constexpr int kFieldGrowth = 4;  // pixels taller than the row, unscaled

struct RenameTarget {
  Strip strip = Strip::None;
  int channel = -1;
};

RenameTarget targetOf(const PannerPlugin& plugin, int index) {
  if (index < 0) return {};
  if (index < plugin.inputCount()) return {Strip::Inputs, index};
  const int speaker = index - plugin.inputCount();
  if (speaker < plugin.speakerCount() && plugin.model.layoutPreset == kLayoutUserSetup) {
    return {Strip::Speakers, speaker};
  }
  return {};
}

using ChannelName = char[kNameCapacity];

ChannelName& nameOf(PannerPlugin& plugin, const RenameTarget& target) {
  return target.strip == Strip::Inputs ? plugin.model.inputs[target.channel].name
                                       : plugin.model.speakers[target.channel].name;
}

HWND makeRenameField(PannerPlugin& plugin, HWND dialog, const RenameTarget& target) {
  const StripGeometry g{plugin.view.viewScale};
  const int offset = target.strip == Strip::Inputs ? plugin.editor.inputFaderOffset
                                                   : plugin.editor.speakerFaderOffset;
  const int row = target.channel - offset;
  const int y = columnOrigins.stripTop + (row + 1) * g.rowHeight() - kFieldLift;
  plaskCall<PlaskId::PLASK_MakeSetCurParms>(1.0f, 1.0f, 0, 0, dialog, false, false);
  return plaskCall<PlaskId::PLASK_MakeEditField>(static_cast<const char*>(nameOf(plugin, target)),
                                                 0, g.namesX(target.strip), y, g.namesWidth(),
                                                 g.rowHeight() + kFieldGrowth, kRenameStyle);
}

void closeAnyRename() {
  if (renameState.renameOwner != nullptr) cancelRenameOf(*renameState.renameOwner);
}

}  // namespace

void beginRename(PannerPlugin& plugin, HWND dialog, int channel) {
  plaskCall<PlaskId::KillTimer>(dialog, kRenameWatchdogTimerId);
  closeAnyRename();
  renameState.renameIndex = channel;
  const RenameTarget target = targetOf(plugin, channel);
  if (target.strip == Strip::None || plugin.host.editorWindow != dialog) return;
  renameState.renameOwner = &plugin;
  if (hostApi.plugin_register != nullptr) {
    hostApi.plugin_register("<accelerator", &renameState.renameAccelerator);
  }
  const HWND field = makeRenameField(plugin, dialog, target);
  renameState.renameEdit = field;
  plaskCall<PlaskId::SetWindowLong>(field, GWL_USERDATA, kRenameFieldMark);
  plaskCall<PlaskId::SendMessage>(field, EM_SETSEL, WPARAM{0}, LPARAM{-1});
  plaskCall<PlaskId::ShowWindow>(field, int{SW_SHOW});
  plaskCall<PlaskId::SetFocus>(field);
  plaskCall<PlaskId::SetTimer>(dialog, kRenameWatchdogTimerId, kRenameWatchdogMs,
                               TIMERPROC{nullptr});
}

void endRename(PannerPlugin& plugin, HWND dialog, bool commit) {
  plaskCall<PlaskId::KillTimer>(dialog, kRenameWatchdogTimerId);
  if (renameState.renameEdit == nullptr || renameState.renameOwner != &plugin) return;
  const RenameTarget target = targetOf(plugin, renameState.renameIndex);
  if (commit && target.strip != Strip::None) {
    char text[kRenameTextBytes] = {};
    plaskCall<PlaskId::SendMessage>(renameState.renameEdit, WM_GETTEXT, WPARAM{kRenameTextBytes},
                                    pointerParam(text));
    {
      ModelLock lock(plugin);
      copyChannelName(nameOf(plugin, target), text);
    }
    const bool input = target.strip == Strip::Inputs;
    plugin.model.changeFlags.fetch_or(kChangeEditor | (input ? kChangeInputs : kChangeSpeakers));
  }
  cancelRenameOf(plugin);
}

// A click elsewhere (focus or capture taken) ends the rename, keeping the text.
void checkRenameFocus(HWND dialog) {
  const HWND field = renameState.renameEdit;
  if (field == nullptr) return;
  const HWND focus = plaskCall<PlaskId::GetFocus>();
  const bool focused =
      focus != nullptr && (focus == field || plaskCall<PlaskId::IsChild>(field, focus) != 0);
  const HWND capture = plaskCall<PlaskId::GetCapture>();
  const bool captureFree = capture == nullptr || capture == field || capture == dialog;
  if (focused && captureFree) return;
  plaskCall<PlaskId::SendMessage>(dialog, WM_EDITOR_ENDRENAME, WPARAM{1}, LPARAM{0});
}
