// The editor dialog's procedure: the entry finds the instance in the window's user data, the
// procedure hands each message to the part that handles it. Every message answers 0, so the
// window layer's default handling follows.
#include "editor/dialog_calls.h"
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
    default:
      return;  // the delayed edits and the rename watchdog: the command handlers' timers
  }
}

// The controls' notifications and the mouse on the dialog itself (the name strips, the options
// menu) belong to the command handlers; until they come the dialog shows without reacting.
void onCommand(PannerPlugin& /*plugin*/, HWND /*dialog*/, WPARAM /*wParam*/, LPARAM /*lParam*/) {}
void onFaderScroll(PannerPlugin& /*plugin*/, HWND /*dialog*/, WPARAM /*wParam*/,
                   LPARAM /*lParam*/) {}
void onNamesClick(PannerPlugin& /*plugin*/, HWND /*dialog*/, LPARAM /*lParam*/) {}
void onNamesDoubleClick(PannerPlugin& /*plugin*/, HWND /*dialog*/, LPARAM /*lParam*/) {}
void onContextMenu(PannerPlugin& /*plugin*/, HWND /*dialog*/, LPARAM /*lParam*/) {}
void onBeginRename(PannerPlugin& /*plugin*/, HWND /*dialog*/, WPARAM /*channel*/) {}
void onEndRename(PannerPlugin& plugin, WPARAM /*commit*/) {
  cancelRenameOf(plugin);
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
      return onCommand(plugin, dialog, wParam, lParam);
    case WM_HSCROLL:
    case WM_VSCROLL:
      return onFaderScroll(plugin, dialog, wParam, lParam);
    case WM_LBUTTONDOWN:
      return onNamesClick(plugin, dialog, lParam);
    case WM_LBUTTONDBLCLK:
      return onNamesDoubleClick(plugin, dialog, lParam);
    case WM_CONTEXTMENU:
      return onContextMenu(plugin, dialog, lParam);
    case WM_EDITOR_REFRESH:
      return refreshEditorDialog(plugin, dialog);
    case WM_EDITOR_RELAYOUT:
      return relayoutEditorDialog(plugin, dialog);
    case WM_EDITOR_BEGINRENAME:
      return onBeginRename(plugin, dialog, wParam);
    case WM_EDITOR_ENDRENAME:
      return onEndRename(plugin, wParam);
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
