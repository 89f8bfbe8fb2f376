// The editor dialog's procedure: the entry finds the instance in the window's user data, the
// procedure hands each message to the part that handles it. Every message answers 0, so the
// window layer's default handling follows.
#include "editor/dialog_calls.h"
#include "editor/dialog_handlers.h"
#include "editor/editor_dialog.h"
#include "editor/view/position_readout.h"
#include "editor/view/space_render.h"
#include "plugin/editor_link.h"

namespace {

void onTimer(PannerPlugin& plugin, HWND dialog, UINT_PTR timer) {
  switch (timer) {
    case kRefreshTimerId:
      return editorRefreshTick(plugin, dialog);
    case kInfoClearTimerId:
      return setInfoText(plugin, "");
    case kTrimTypedTimerId:
    case kInputCountTimerId:
    case kSpeakerCountTimerId:
      return applyTypedEdit(plugin, dialog, timer);
    case kRenameWatchdogTimerId:
      return checkRenameFocus(dialog);
    default:
      return;
  }
}

void dialogProcedure(PannerPlugin& plugin, HWND dialog, UINT message, WPARAM wParam,
                     LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      return openEditorDialog(plugin, dialog);
    case WM_DESTROY:
      return closeEditorDialog(plugin);
    case WM_TIMER:
      return onTimer(plugin, dialog, wParam);
    case WM_PAINT:
      return paintNameStrips(plugin, dialog);
    case WM_COMMAND:
      return onDialogCommand(plugin, dialog, wParam, lParam);
    case WM_HSCROLL:
    case WM_VSCROLL:
      return onDialogFader(plugin, dialog, wParam, lParam);
    case WM_LBUTTONDOWN:
      return onNamesClick(plugin, lParam);
    case WM_LBUTTONDBLCLK:
      return onNamesDoubleClick(plugin, dialog, lParam);
    case WM_CONTEXTMENU:
      return showOptionsMenu(dialog, lParam);
    case WM_EDITOR_REFRESH:
      return refreshEditorDialog(plugin, dialog);
    case WM_EDITOR_RELAYOUT:
      return relayoutEditorDialog(plugin, dialog);
    case WM_EDITOR_BEGINRENAME:
      return beginRename(plugin, dialog, static_cast<int>(wParam));
    case WM_EDITOR_ENDRENAME:
      return endRename(plugin, dialog, wParam != 0);
    default:
      return;
  }
}

PannerPlugin* instanceOf(HWND dialog) {
  const LONG_PTR userData = plaskCall<PlaskId::GetWindowLong>(dialog, GWL_USERDATA);
  return reinterpret_cast<PannerPlugin*>(userData);  // NOLINT(performance-no-int-to-ptr)
}

// [UI thread] The window layer's entry: WM_INITDIALOG brings the instance as its parameter.
INT_PTR editorDialogEntry(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  try {
    if (message == WM_INITDIALOG) plaskCall<PlaskId::SetWindowLong>(dialog, GWL_USERDATA, lParam);
    if (PannerPlugin* plugin = instanceOf(dialog)) {
      dialogProcedure(*plugin, dialog, message, wParam, lParam);
    }
  } catch (...) {
    // Nothing crosses into the host.
  }
  return 0;
}

void deleteBitmap(DAUB_IBitmap*& bitmap) {
  delete bitmap;  // the host's deleting destructor
  bitmap = nullptr;
}

}  // namespace

// The lock never outlives the dialog; the bitmaps are made again at the next opening.
void closeEditorDialog(PannerPlugin& plugin) {
  cancelRenameOf(plugin);
  plugin.editor.lockInputs = 0;
  plugin.host.editorWindow = nullptr;
  deleteBitmap(plugin.editor.namesBitmap);
  deleteBitmap(plugin.view.viewFront);
  deleteBitmap(plugin.view.viewBack);
}

DLGPROC editorDialogProcedure() {
  return &editorDialogEntry;
}
