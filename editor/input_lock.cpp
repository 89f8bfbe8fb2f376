// The input lock in the dialog: what moves or mutes inputs is disabled while it holds. The space
// view reads lockInputs itself.
#include "editor/dialog_calls.h"
#include "editor/dialog_handlers.h"
#include "editor/editor_dialog.h"

void applyInputLock(PannerPlugin& plugin) {
  const HWND dialog = plugin.host.editorWindow;
  if (dialog == nullptr) return;
  const bool locked = plugin.editor.lockInputs != 0;
  for (int row = 0; row < kGroupRows; ++row) {
    for (const int first : {item::kGroupMode, item::kGroupInvert, item::kGroupReset}) {
      enableItem(dialog, first + row, !locked);
    }
    sendToItem(dialog, item::kGroupKnob + row, WM_KESTEL_SETPROPERTY, kKestelPropertyLock,
               locked ? 1 : 0);
  }
  for (int row = 0; row < kStripRows; ++row) {
    for (const int first :
         {item::kInputMute, item::kInputSolo, item::kInputReverse, item::kInputFader}) {
      enableItem(dialog, first + row, !locked);
    }
  }
  const UpdatingControls updating;
  checkItem(dialog, item::kLock, locked);
}
