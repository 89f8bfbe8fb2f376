// The keyboard hook of the rename field: the host would take Tab, Return and Escape for its own
// shortcuts, so while a field exists these keys end the rename here.
#include "editor/dialog_calls.h"
#include "editor/dialog_handlers.h"
#include "editor/editor_dialog.h"
#include "model/host_link.h"

namespace {

constexpr int kNotConsumed = 0;
constexpr int kConsumed = 1;
constexpr int kNotConsumedControlHeld = -1;

bool isRenameKey(WPARAM key) {
  return key == VK_TAB || key == VK_RETURN || key == VK_ESCAPE;
}

void sendTo(HWND window, UINT message, WPARAM wParam) {
  plaskCall<PlaskId::SendMessage>(window, message, wParam, LPARAM{0});
}

}  // namespace

// [UI thread] Called by the host for each key message while the record is registered. Ending the
// rename unregisters the record from inside the call; Tab may register it again.
int translateRenameKey(MSG* message, AcceleratorRegister* /*record*/) {
  const HWND field = renameState.renameEdit;
  if (field == nullptr || message == nullptr) return kNotConsumed;
  if (message->hwnd != field && plaskCall<PlaskId::IsChild>(field, message->hwnd) == 0) {
    return kNotConsumed;
  }
  const HWND dialog = plaskCall<PlaskId::GetParent>(field);
  if (dialog == nullptr || (message->message != WM_KEYDOWN && message->message != WM_CHAR)) {
    return kNotConsumed;
  }
  const WPARAM key = message->wParam;
  if (!isRenameKey(key)) return isKeyHeld(VK_CONTROL) ? kNotConsumedControlHeld : kNotConsumed;
  sendTo(dialog, WM_EDITOR_ENDRENAME, key == VK_ESCAPE ? 0 : 1);
  if (key != VK_TAB) return kConsumed;
  const bool backwards = isKeyHeld(VK_SHIFT);
  const int index = renameState.renameIndex;
  if (backwards && index < 1) return kConsumed;
  sendTo(dialog, WM_EDITOR_BEGINRENAME, static_cast<WPARAM>(backwards ? index - 1 : index + 1));
  return kConsumed;
}
